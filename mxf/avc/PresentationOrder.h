#pragma once

#include "AvcAnalyser.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <vector>

/// Presentation times from picture order. Units are numbered from 0 in both orders; times count edit units:
///
///   pts  the unit's number in presentation order: sequence by sequence (from one IDR picture or operation 5 to the
///        next), inside a sequence by order count, where counts are equal by decoding order
///   dts  its number in decoding order less the reorder delay, so that dts <= pts; the first ones are below 0
///
/// Pictures that were never sent leave no holes: the numbers are ranks, not counts.
namespace TamrelMxf {

/// The times of one unit.
struct SAvcTimes {
    std::int64_t decodeIndex = 0;
    std::int64_t dts = 0;
    std::int64_t pts = 0;
    bool operator==(const SAvcTimes&) const = default;
};

/// Gives the times of units as soon as they are certain, in decoding order. A unit's place is certain once more units
/// wait than may be reordered (SAvcPicture::reorderFrames), or the sequence has ended. It then never changes: where a
/// stream breaks its own promise, the late unit takes the next free number, and more are held back from there on.
class CPresentationOrder {
public:
    /// \param firstIndex  decoding index of the first unit; numbering in presentation order begins there too, which
    ///   is right behind a seek to a key frame
    explicit CPresentationOrder(std::int64_t firstIndex = 0) : next_{firstIndex} {}

    /// Takes the next unit in decoding order.
    void Push(const SAvcPicture& picture);
    /// No more units come: all that wait get their places. Push() may go on with another sequence.
    void Flush();
    /// \return the next unit in decoding order whose times are certain; nothing when more units are needed
    std::optional<SAvcTimes> Pop();

    /// Units that came later than their sequence promised.
    std::int64_t LateUnits() const { return lateUnits_; }
    /// The reorder delay in units, that of the first unit that is not damaged: dts is never above pts unless a unit
    /// came late or a later sequence reorders more.
    std::int64_t Delay() const { return delay_.value_or(0); }

private:
    void PlaceFirst();

    std::set<std::pair<std::int32_t, std::uint64_t>> waiting_; ///< order count and place among all units pushed
    std::deque<SAvcTimes> units_; ///< in decoding order, from the first not delivered on; dts is set on delivery
    std::uint64_t delivered_ = 0;
    std::int64_t next_; ///< number in presentation order
    std::int64_t sequence_ = 0;
    std::optional<std::int32_t> lastCount_; ///< of the unit placed last in this sequence
    std::optional<std::int64_t> delay_;
    std::size_t moreHeldBack_ = 0;
    std::int64_t lateUnits_ = 0;
};

/// The pts of every unit of a stream, the first of which is number 0 in both orders.
std::vector<std::int64_t> PresentationIndexes(std::span<const SAvcPicture> pictures);

/// The smallest reorder delay with which dts <= pts holds for these pts in decoding order, >= 0.
std::int64_t ReorderDelay(std::span<const std::int64_t> presentationIndexes);

} // namespace TamrelMxf
