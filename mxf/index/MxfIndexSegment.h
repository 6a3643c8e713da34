#pragma once

#include "../labels/Ul.h"
#include "../metadata/Values.h"

#include <cstddef>
#include <cstdint>
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
    std::int8_t temporalOffset = 0;
    std::int8_t keyFrameOffset = 0;
    std::uint8_t flags = 0;
    std::uint64_t streamOffset = 0;
};

/// One index table segment (SMPTE ST 377-1, 11). It keeps its entries as they are stored.
class CMxfIndexSegment {
public:
    /// \param value  of the segment's KLV, a local set with 2-byte tags and lengths
    /// \return 0; -9 when an item is cut short (what stands in front of it is kept); -1 when an array states an item
    ///   size that is too small for what it holds, or too many items. What is missing stands at its default.
    int Import(std::span<const std::uint8_t> value);

    bool HasConstantSize() const { return editUnitByteCount > 0; }
    std::size_t EntryCount() const { return entryCount_; }
    /// \param i  below EntryCount()
    SIndexEntry Entry(std::size_t i) const;
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
    std::size_t entrySize_ = 0;
};

} // namespace TamrelMxf
