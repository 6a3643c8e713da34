#include "mxf/labels/UlDict.h"

#include <algorithm>
#include <array>
#include <functional>

namespace TamrelMxf {

namespace {

// clang-format off
constexpr SUlEntry kEntries[] = {
#include "mxf/labels/generated/UlTable.inc"
};
constexpr std::uint16_t kOrder[] = {
#include "mxf/labels/generated/UlOrder.inc"
};
// clang-format on

constexpr std::uint64_t KeyOf(std::uint16_t index)
{
    return kEntries[index].key;
}

static_assert(std::size(kEntries) == 2674);
// Ascending without repeats: a search that finds nothing would otherwise look like an unknown label.
static_assert(std::ranges::adjacent_find(kOrder, std::greater_equal{}, KeyOf) == std::end(kOrder));

} // namespace

std::span<const SUlEntry> CMxfUlDict::Entries()
{
    return kEntries;
}

int CMxfUlDict::Init()
{
    order_ = kOrder;
    return 0;
}

const SUlEntry* CMxfUlDict::Find(std::uint64_t key) const
{
    const auto found = std::ranges::lower_bound(order_, key, {}, KeyOf);
    return found != order_.end() && KeyOf(*found) == key ? &kEntries[*found] : nullptr;
}

} // namespace TamrelMxf
