#pragma once

#include "../labels/Ul.h"
#include "../metadata/Values.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace TamrelMxf {

/// Where an element of the content package starts (SMPTE ST 377-1, 11.1.6).
struct SDeltaEntry {
    std::int8_t posTableIndex = 0; ///< -1: temporal reordering applies; 0: neither; above: number of the position table
    std::uint8_t slice = 0;
    std::uint32_t elementDelta = 0; ///< bytes from the start of the slice
};

/// One entry of the table, taken apart on demand.
struct SIndexEntry {
    static constexpr std::uint8_t kRandomAccess = 0x80;
    static constexpr std::uint8_t kPredicted = 0x30;  ///< forward, backward or both
    static constexpr std::uint8_t kOutOfRange = 0x08; ///< an offset does not fit its 8 bits

    std::int8_t temporalOffset = 0;
    std::int8_t keyFrameOffset = 0;
    std::uint8_t flags = 0;
    std::uint64_t streamOffset = 0;

    /// True for a picture that is decoded alone: it allows random access, or it is predicted from no other one and
    /// names none in front of it (flags of SMPTE ST 377-1 and ST 381-1). The I picture of an open group is such a one
    /// without the flag of random access; writers that leave all flags at zero mean key frames.
    bool IsKey() const { return (flags & kRandomAccess) != 0 || (keyFrameOffset == 0 && (flags & kPredicted) == 0); }
};

/// One index table segment (SMPTE ST 377-1, 11). It keeps its entries as they are stored.
class CMxfIndexSegment {
public:
    /// \param value  of the segment's KLV, a local set with 2-byte tags and lengths
    /// \return 0; -9 when an item or an array is cut short (what is there whole is kept); -1 when an array states an
    ///   item size that is too small for what it holds. What is missing stands at its default.
    int Import(std::span<const std::uint8_t> value);

    bool HasConstantSize() const { return editUnitByteCount > 0; }
    /// Edit units that the segment speaks of; kUnbounded when their size is constant and no duration is stated.
    std::int64_t UnitCount() const;
    static constexpr std::int64_t kUnbounded = std::numeric_limits<std::int64_t>::max();

    /// Entries at hand, one an edit unit; 0 when sizes are constant. There may be more than UnitCount(): the first of
    /// those tells where the last edit unit ends.
    std::size_t EntryCount() const { return entryCount_; }
    /// \param i  below EntryCount()
    SIndexEntry Entry(std::size_t i) const;
    /// The same as Entry(i).temporalOffset.
    std::int8_t TemporalOffset(std::size_t i) const;
    /// Bytes from the start of the edit unit to slice `slice`; 0 for slice 0 and for one that does not exist.
    std::uint32_t SliceOffset(std::size_t entry, std::uint8_t slice) const;
    /// Entry `number` of the position tables: a fraction of an edit unit.
    /// \param number  from 1, as SDeltaEntry::posTableIndex counts; 0/0 for one that does not exist
    SRational PosTable(std::size_t entry, std::uint8_t number) const;

    SRational editRate;
    std::int64_t startPosition = 0;
    std::int64_t duration = 0; ///< edit units; 0 of constant size: to the end
    std::uint32_t editUnitByteCount = 0;
    std::uint32_t indexSid = 0;
    std::uint32_t bodySid = 0;
    std::uint8_t sliceCount = 0;
    std::uint8_t posTableCount = 0;
    std::vector<SDeltaEntry> deltas; ///< empty: one element, at 0

private:
    std::vector<std::uint8_t> entries_;
    std::size_t entryCount_ = 0;
    std::size_t entrySize_ = 0; ///< bytes as stored
    std::size_t entryStep_ = 1; ///< stored entries an edit unit
};

} // namespace TamrelMxf
