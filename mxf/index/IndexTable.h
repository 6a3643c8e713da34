#pragma once

#include "IndexedUnit.h"
#include "MxfIndexSegment.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace TamrelMxf {

/// The segments of one IndexSID, put together. Of two segments that speak of the same edit unit the one with the higher
/// rank is believed; a segment that is hidden altogether is dropped.
class CIndexTable {
public:
    /// \param segment  speaks of at least one edit unit, see Accepts
    /// \param rank     grows with the place in the file; a segment of the same rank is replaced
    void Add(std::unique_ptr<CMxfIndexSegment> segment, std::int64_t rank);
    /// Drops the segments that speak of nothing but edit units in front of `editUnit`. Where sizes are constant they
    /// are kept: what lies behind is counted from there.
    void DropBefore(std::int64_t editUnit);
    /// True for a segment that speaks of edit units, and of such that can be counted.
    static bool Accepts(const CMxfIndexSegment& segment);

    /// By start position, then by rank; good until the next Add.
    const std::vector<const CMxfIndexSegment*>& Segments();
    std::optional<std::int64_t> CoveredUnits();
    std::optional<std::uint32_t> ConstantSize();
    /// True when no edit unit from `first` to `last` is missing, those below 0 aside.
    bool Covers(std::int64_t first, std::int64_t last);

    std::optional<SIndexedUnit> Find(std::int64_t editUnit);
    std::optional<std::int64_t> StoredAt(std::int64_t position);
    std::int64_t ReorderDelay() const { return mostAhead_; }
    std::optional<std::int64_t> UnitAtOffset(std::int64_t streamOffset);
    std::optional<std::int64_t> ElementOffset(std::int64_t editUnit, std::size_t element);

private:
    struct SHeld {
        std::unique_ptr<CMxfIndexSegment> segment;
        std::int64_t rank = 0;
        std::size_t pieces = 0; ///< that are left of it
    };
    /// A run of edit units that one segment speaks for.
    struct SPiece {
        std::int64_t end = 0;
        SHeld* held = nullptr;
    };
    using Pieces = std::map<std::int64_t, SPiece>; ///< by first edit unit, none overlap

    void Measure(const CMxfIndexSegment& segment);
    void PutOnTop(SHeld& held);
    void Release(SHeld& held);
    const Pieces& Settled();
    Pieces::const_iterator PieceOf(std::int64_t editUnit);
    std::optional<std::int64_t> OffsetOf(Pieces::const_iterator piece, std::int64_t editUnit) const;
    std::optional<std::int64_t> StartOfConstant(Pieces::const_iterator piece) const;
    std::int64_t SizeOf(Pieces::const_iterator piece, std::int64_t editUnit, std::int64_t offset) const;
    std::optional<SIndexEntry> EntryOf(std::int64_t editUnit, Pieces::const_iterator& near);
    std::int64_t DisplayedAt(std::int64_t editUnit, Pieces::const_iterator near);
    std::int64_t KeyFrameOf(std::int64_t editUnit, const SIndexEntry& entry, Pieces::const_iterator near);

    std::map<std::int64_t, SHeld> held_; // by rank
    Pieces pieces_;
    std::vector<const CMxfIndexSegment*> byStart_;
    std::optional<std::uint32_t> constantSize_; // of the first segment of constant size that came
    std::int64_t mostAhead_ = 0;                // the largest temporal offset that came
    std::int64_t mostBehind_ = 0;               // the smallest one
    std::optional<std::int64_t> coveredTo_;     // where the first gap begins; nothing until that is asked for
    bool isMixed_ = false;                      // segments of constant size are not alone, or not of one size
    bool isSettled_ = true;                     // pieces_ are those of held_
    bool isListed_ = true;                      // byStart_ are those of held_
};

} // namespace TamrelMxf
