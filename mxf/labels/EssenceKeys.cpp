#include "mxf/labels/EssenceKeys.h"

#include <algorithm>
#include <iterator>

namespace TamrelMxf {
namespace {

// clang-format off
constexpr SEssenceKey kKeys[] = {
#include "mxf/labels/generated/EssenceKeys.inc"
};
// clang-format on

/// Ones where a byte of the pattern counts.
constexpr std::uint64_t Mask(std::uint64_t pattern)
{
    std::uint64_t mask = 0;
    for (int shift = 0; shift < 64; shift += 8)
        if ((pattern >> shift & 0xFF) != 0x7F) mask |= std::uint64_t{0xFF} << shift;
    return mask;
}

constexpr bool Fits(std::uint64_t pattern, std::uint64_t bytes)
{
    return ((pattern ^ bytes) & Mask(pattern)) == 0;
}

} // namespace

const SEssenceKey* FindEssenceKey(const SUl& key)
{
    constexpr std::uint64_t kAnyVersion = ~std::uint64_t{0xFF};
    std::uint64_t head = 0;
    for (std::size_t i = 0; i < 8; ++i)
        head = head << 8 | key.bytes[i];
    const std::uint64_t item = key.Item();
    const auto row = std::ranges::find_if(kKeys, [&](const SEssenceKey& candidate) {
        return Fits(candidate.item, item) && Fits(candidate.head & kAnyVersion, head & kAnyVersion);
    });
    return row == std::end(kKeys) ? nullptr : row;
}

} // namespace TamrelMxf
