#pragma once

#include "NalUnit.h"
#include "SliceHeader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace TamrelMxf {

/// Cuts a byte stream (ITU-T H.264, Annex B) that arrives in pieces into access units (7.4.1.2.3 and 7.4.1.2.4), or
/// into frames, where a frame coded as two fields has two access units. Redundant and auxiliary pictures and filler
/// stay with their primary picture. Keeps a few bytes of each unit, and parameter sets, not the stream.
class CAccessUnitSplitter {
public:
    enum class EUnit : std::uint8_t {
        picture, ///< each access unit for itself
        frame,   ///< two fields of one frame together (SAvcSliceHeader::CompletesFrame)
    };

    explicit CAccessUnitSplitter(EUnit unit = EUnit::picture) : unit_{unit} {}

    /// Gives parameter sets that stand outside the stream. \return as CAvcParameterSets::Add
    int AddParameterSet(std::span<const std::uint8_t> nal) { return sets_.Add(nal); }

    /// Takes the next bytes of the stream, as many or as few as there are.
    /// \return where units begin that are now known to begin, in bytes from the start of the stream, ascending; the
    ///   first is 0. A unit begins with its start code, the zero byte in front of it included. Good until the next
    ///   call.
    std::span<const std::uint64_t> Push(std::span<const std::uint8_t> bytes);

    /// Tells that the stream has ended. What stands behind the last picture is part of its unit.
    /// \return the units that only now are known, as from Push()
    std::span<const std::uint64_t> Finish();

    /// Bytes pushed so far: the end of the last unit once the stream has ended.
    std::uint64_t Position() const { return position_; }

private:
    void Collect(std::span<const std::uint8_t> bytes);
    void LookAhead();
    void BeginNal(std::uint64_t start);
    void LookAtHead();
    void LookAtWhole();
    void LookAtSlice();
    void BeginUnit(std::uint64_t start);

    EUnit unit_;
    CAvcParameterSets sets_;
    std::vector<std::uint64_t> found_;
    std::uint64_t position_ = 0;
    unsigned zeros_ = 0; ///< at the end of the bytes so far, counted up to 3

    std::vector<std::uint8_t> nal_; ///< of the current NAL unit, as much as is needed of its kind
    std::uint64_t nalStart_ = 0;    ///< place of its start code
    bool isInNal_ = false;
    bool isLookedAt_ = false;

    bool hasUnit_ = false;                 ///< a unit has begun
    std::optional<SAvcSliceHeader> last_;  ///< of the primary picture before
    std::optional<std::uint64_t> pending_; ///< start of what stands in front of the next slices
    bool isPendingFirm_ = false;           ///< it can only stand in front of a picture, not between two of its slices
    bool isPairOpen_ = false;              ///< the last picture is a field that waits for its partner
};

} // namespace TamrelMxf
