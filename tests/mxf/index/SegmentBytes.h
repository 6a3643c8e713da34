#pragma once

#include "mxf/klv/Klv.h"
#include "tests/support/MxfBuilder.h"

#include <optional>
#include <vector>

namespace TamrelMxf::test {

/// One index entry, written as it stands.
struct EntrySpec {
    std::uint64_t offset = 0;
    int temporal = 0;
    int key = 0;
    std::uint8_t flags = 0x80;
    std::vector<std::uint32_t> slices = {};
};

struct DeltaSpec {
    int posTable = 0;
    std::uint8_t slice = 0;
    std::uint32_t delta = 0;
};

/// One index table segment; what is not set is not written.
struct SegmentSpec {
    std::optional<std::uint64_t> start = {};
    std::optional<std::uint64_t> duration = {};
    std::optional<std::uint32_t> unitSize = {};
    std::optional<std::uint32_t> indexSid = 2;
    std::uint8_t slices = 0;
    std::uint8_t posTables = 0;
    std::vector<DeltaSpec> deltas = {};
    std::vector<EntrySpec> entries = {};
    std::size_t surplus = 0; ///< bytes behind each entry
};

inline void putItem(Bytes& to, unsigned tag, const Bytes& value)
{
    putNumber(to, tag, 2);
    putNumber(to, value.size(), 2);
    putBytes(to, value);
}

inline Bytes numberOf(std::uint64_t value, int size)
{
    Bytes bytes;
    putNumber(bytes, value, size);
    return bytes;
}

inline Bytes segmentValue(const SegmentSpec& spec)
{
    Bytes value;
    putItem(value, 0x3F0B, numberOf(25ULL << 32 | 1, 8));
    if (spec.start) putItem(value, 0x3F0C, numberOf(*spec.start, 8));
    if (spec.duration) putItem(value, 0x3F0D, numberOf(*spec.duration, 8));
    if (spec.unitSize) putItem(value, 0x3F05, numberOf(*spec.unitSize, 4));
    if (spec.indexSid) putItem(value, 0x3F06, numberOf(*spec.indexSid, 4));
    Bytes deltas = numberOf(std::uint64_t{spec.deltas.size()} << 32 | 6, 8);
    for (const auto& [posTable, slice, delta] : spec.deltas)
        putNumber(deltas, static_cast<std::uint64_t>(posTable & 0xFF) << 40 | std::uint64_t{slice} << 32 | delta, 6);
    if (!spec.deltas.empty()) putItem(value, 0x3F09, deltas);
    const std::size_t size = 11 + 4U * spec.slices + 8U * spec.posTables + spec.surplus;
    Bytes entries = numberOf(std::uint64_t{spec.entries.size()} << 32 | size, 8);
    for (const EntrySpec& entry : spec.entries) {
        const std::size_t end = entries.size() + size;
        putBytes(entries,
                 {static_cast<std::uint8_t>(entry.temporal), static_cast<std::uint8_t>(entry.key), entry.flags});
        putNumber(entries, entry.offset, 8);
        for (const std::uint32_t slice : entry.slices)
            putNumber(entries, slice, 4);
        for (std::uint64_t i = 1; i <= spec.posTables; ++i)
            putNumber(entries, i << 32 | 7, 8);
        entries.resize(end, 0xAA);
    }
    if (!spec.entries.empty()) putItem(value, 0x3F0A, entries);
    // Behind the arrays that depend on them, where writers may put them as well.
    if (spec.slices > 0) putItem(value, 0x3F08, {spec.slices});
    if (spec.posTables > 0) putItem(value, 0x3F0E, {spec.posTables});
    return value;
}

inline Bytes segmentKlv(const SegmentSpec& spec)
{
    return MxfBuilder{}.klv(kIndexKey, segmentValue(spec)).bytes;
}

} // namespace TamrelMxf::test
