#include "mxf/model/Codings.h"

#include <algorithm>
#include <array>

namespace TamrelMxf {
namespace {

constexpr auto kCodings = std::to_array<SCoding>({
#include "mxf/model/generated/Codings.inc"
});

const SCoding* Find(std::uint64_t item)
{
    const auto found = std::ranges::lower_bound(kCodings, item, {}, &SCoding::item);
    return found == kCodings.end() || found->item != item ? nullptr : &*found;
}

/// Stream 0 for a container of elementary streams: byte 15 is 60h + n for video, 40h + n for audio.
std::uint64_t WithoutStreamNumber(std::uint64_t item)
{
    constexpr std::uint64_t kGenericContainer = 0x0D01030102;
    const auto mapping = static_cast<std::uint8_t>(item >> 16);
    constexpr std::array<std::uint8_t, 8> kStreamMappings{0x04, 0x07, 0x08, 0x09, 0x0F, 0x10, 0x1F, 0x20};
    if (item >> 24 != kGenericContainer || std::ranges::find(kStreamMappings, mapping) == kStreamMappings.end())
        return item;
    const auto stream = static_cast<std::uint8_t>(item >> 8);
    const std::uint64_t first = stream >= 0x60 && stream < 0x70   ? 0x60
                                : stream >= 0x40 && stream < 0x60 ? 0x40
                                                                  : stream;
    return (item & ~std::uint64_t{0xFF00}) | (first << 8);
}

} // namespace

const SCoding* FindCoding(const SUl& label)
{
    constexpr int kBranchBytes = 3; // what byte 12 and the three after it leave to tell

    if (!label.IsSmpte()) return nullptr;
    if (const SCoding* coding = Find(label.Item())) return coding;
    std::uint64_t item = WithoutStreamNumber(label.Item());
    for (int zeroed = 0; zeroed <= kBranchBytes; ++zeroed) {
        if (const SCoding* coding = Find(item)) return coding;
        item &= ~(std::uint64_t{0xFF} << (8 * zeroed));
    }
    return Find(item);
}

} // namespace TamrelMxf
