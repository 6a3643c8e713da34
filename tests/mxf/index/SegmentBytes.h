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
    if (!spec.deltas.empty()) {
        Bytes array = numberOf(std::uint64_t{spec.deltas.size()} << 32 | 6, 8);
        for (const DeltaSpec& delta : spec.deltas) {
            putNumber(array, static_cast<std::uint8_t>(delta.posTable), 1);
            putNumber(array, delta.slice, 1);
            putNumber(array, delta.delta, 4);
        }
        putItem(value, 0x3F09, array);
    }
    if (!spec.entries.empty()) {
        const std::size_t size = 11 + 4U * spec.slices + 8U * spec.posTables + spec.surplus;
        Bytes array = numberOf(std::uint64_t{spec.entries.size()} << 32 | size, 8);
        for (const EntrySpec& entry : spec.entries) {
            const std::size_t end = array.size() + size;
            putNumber(array, static_cast<std::uint8_t>(entry.temporal), 1);
            putNumber(array, static_cast<std::uint8_t>(entry.key), 1);
            putNumber(array, entry.flags, 1);
            putNumber(array, entry.offset, 8);
            for (const std::uint32_t slice : entry.slices)
                putNumber(array, slice, 4);
            for (std::uint8_t i = 0; i < spec.posTables; ++i)
                putNumber(array, (i + 1ULL) << 32 | 7, 8);
            array.resize(end, 0xAA);
        }
        putItem(value, 0x3F0A, array);
    }
    // Behind the arrays that depend on them, where writers may put them as well.
    if (spec.slices > 0) putItem(value, 0x3F08, numberOf(spec.slices, 1));
    if (spec.posTables > 0) putItem(value, 0x3F0E, numberOf(spec.posTables, 1));
    return value;
}

inline Bytes segmentKlv(const SegmentSpec& spec)
{
    return MxfBuilder{}.klv(kIndexKey, segmentValue(spec)).bytes;
}

} // namespace TamrelMxf::test
