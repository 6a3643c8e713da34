#include "mxf/metadata/SetTables.h"

#include "mxf/labels/BigEndian.h"
#include "mxf/metadata/SetTablesData.h"

#include <algorithm>
#include <tuple>

namespace TamrelMxf {
namespace {

using namespace Tables;

constexpr std::uint64_t kWithoutVersion = 0xFFFFFFFFFFFFFF00;
constexpr std::uint64_t kWithoutCodingAndVersion = 0xFFFFFFFFFF00FF00;

SRegisteredUl Split(const SUl& label)
{
    SRegisteredUl split;
    split.head = BigEndian64(label.bytes.data());
    split.item = BigEndian64(label.bytes.data() + 8);
    return split;
}

/// The part of a sorted index in which `key(entry)` equals `wanted`.
template <typename Wanted, typename Key>
std::span<const std::uint16_t> EqualRange(std::span<const std::uint16_t> index, const Wanted& wanted, Key key)
{
    const auto first = std::ranges::lower_bound(index, wanted, {}, key);
    const auto last = std::ranges::upper_bound(first, index.end(), wanted, {}, key);
    return {first, last};
}

/// The candidate that belongs to `set` or the nearest of its parents, else the first one.
const SPropertyDef* Nearest(const SSetDef* set, std::span<const std::uint16_t> candidates)
{
    for (; set != nullptr; set = set->Parent()) {
        for (const std::uint16_t index : candidates)
            if (&kSets[kProperties[index].set] == set) return &kProperties[index];
    }
    return candidates.empty() ? nullptr : &kProperties[candidates.front()];
}

} // namespace

const SSetDef* SSetDef::Parent() const
{
    return parent < 0 ? nullptr : &kSets[static_cast<std::size_t>(parent)];
}

bool SSetDef::Is(const SSetDef& base) const
{
    const SSetDef* set = this;
    while (set != nullptr && set != &base)
        set = set->Parent();
    return set != nullptr;
}

bool SSetDef::Is(ESet base) const
{
    return Is(SetOf(base));
}

std::span<const SPropertyDef> SSetDef::Properties() const
{
    return std::span(kProperties).subspan(firstProperty, propertyCount);
}

const SSetDef* SPropertyDef::Target() const
{
    return target < 0 ? nullptr : &kSets[static_cast<std::size_t>(target)];
}

std::span<const SSetDef> AllSets()
{
    return kSets;
}

const SSetDef& SetOf(ESet set)
{
    return kSets[static_cast<std::size_t>(set)];
}

const SSetDef* FindSet(const SUl& key)
{
    const auto order = [](const SRegisteredUl& ul) { return std::tuple(ul.head & kWithoutCodingAndVersion, ul.item); };
    const auto keyOf = [&](std::uint16_t index) { return order(kSets[index].key); };
    const auto wanted = order(Split(key));
    const auto found = std::ranges::lower_bound(kSetsByKey, wanted, {}, keyOf);
    return found == std::ranges::end(kSetsByKey) || keyOf(*found) != wanted ? nullptr : &kSets[*found];
}

const SSetDef* FindSet(std::string_view name)
{
    const auto found = std::ranges::find(kSets, name, [](const SSetDef& set) { return set.name.View(); });
    return found == kSets.end() ? nullptr : &*found;
}

const SPropertyDef* FindProperty(const SSetDef* set, std::uint16_t localTag)
{
    return Nearest(set,
                   EqualRange(kPropertiesByTag, localTag, [](std::uint16_t index) { return kProperties[index].tag; }));
}

const SPropertyDef* FindProperty(const SSetDef* set, const SUl& label)
{
    const SRegisteredUl wanted = Split(label);
    const auto range =
        EqualRange(kPropertiesByLabel, wanted.item, [](std::uint16_t index) { return kProperties[index].label.item; });
    if (range.empty() || ((kProperties[range.front()].label.head ^ wanted.head) & kWithoutVersion) != 0) return nullptr;
    return Nearest(set, range);
}

} // namespace TamrelMxf
