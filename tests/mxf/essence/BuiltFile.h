#pragma once

#include "tests/mxf/model/StandardFile.h"
#include "tests/support/MxfBuilder.h"

#include <cstdint>
#include <functional>
#include <numeric>
#include <vector>

namespace TamrelMxf::test {

inline const Bytes kPictureElement = ulOf(0x060E2B3401020101, 0x0D01030115010501);
inline const Bytes kSoundElement = ulOf(0x060E2B3401020101, 0x0D01030116010301);
inline const Bytes kSystemItem = ulOf(0x060E2B3402050101, 0x0D01030104010100);

/// Bytes that no two seeds share, and that look like nothing.
inline Bytes Value(std::size_t size, std::uint8_t seed)
{
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), seed);
    return bytes;
}

/// A local set item.
inline Bytes Item(std::uint16_t tag, const Bytes& value)
{
    return Join(BigEndian(tag, 2), BigEndian(value.size(), 2), value);
}

struct Index {
    std::uint32_t unitBytes = 0;           ///< constant size
    std::vector<std::uint64_t> units = {}; ///< or where each begins
    SRational rate{25, 1};
    std::uint32_t indexSid = 129, bodySid = 1;
};
inline Bytes IndexSegment(const Index& index)
{
    std::vector<Bytes> entries;
    for (const std::uint64_t offset : index.units)
        entries.push_back(Join(Bytes{0, 0, 0x80}, BigEndian(offset, 8)));
    Bytes set = Join(Item(0x3C0A, Bytes(16, 7)), Item(0x3F0B, Ratio(index.rate.num, index.rate.den)),
                     Item(0x3F0C, BigEndian(0, 8)), Item(0x3F0D, BigEndian(index.units.size(), 8)),
                     Item(0x3F05, BigEndian(index.unitBytes, 4)), Item(0x3F06, BigEndian(index.indexSid, 4)),
                     Item(0x3F07, BigEndian(index.bodySid, 4)));
    if (!entries.empty()) set = Join(set, Item(0x3F0A, Batch(entries)));
    return MxfBuilder{}.klv(kIndexKey, set).bytes;
}

/// The file of StandardFile, its essence between header and footer.
struct Built {
    StandardFile standard = {.pictureRate = {25, 1}, .soundRate = {25, 1}};
    std::function<void(MxfBuilder&)> essence;
    Bytes headerIndex = {}, footerIndex = {};
    Bytes runIn = {};
    bool isClosed = true; ///< with a footer and a random index pack

    Bytes File() const
    {
        MxfBuilder builder{runIn};
        builder.partition({.status = static_cast<std::uint8_t>(isClosed ? 4 : 1),
                           .bodySID = 1,
                           .indexSID = 129,
                           .metadata = standard.Bytes(),
                           .index = headerIndex});
        essence(builder);
        if (!isClosed) return builder.bytes;
        builder.partition({.kind = 4, .indexSID = 129, .index = footerIndex});
        return builder.stateFooter().randomIndexPack().bytes;
    }
};

constexpr int kPictures = 0, kSounds = 1; ///< the streams of such a file

} // namespace TamrelMxf::test
