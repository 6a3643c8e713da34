#include "mxf/essence/WalkedUnits.h"

#include <algorithm>

namespace TamrelMxf {

std::size_t CWalkedUnits::IndexOf(std::int64_t unit) const
{
    const auto at = static_cast<std::size_t>(unit);
    if (at < units_.size() && units_[at].unit == unit) return at; // nothing is lost before it
    const auto found = std::ranges::lower_bound(units_, unit, {}, &SWalkedUnit::unit);
    return static_cast<std::size_t>(found - units_.begin());
}

std::int64_t CWalkedUnits::StoredAt(std::int64_t displayed) const
{
    // From the position itself outwards: most pictures are not moved far.
    for (std::int64_t distance = 0; distance <= kMostShift; ++distance) {
        for (const std::int64_t unit : {displayed + distance, displayed - distance}) {
            const SWalkedUnit* const met = Find(unit);
            if (met != nullptr && met->unit == unit && unit + met->shift == displayed) return unit;
        }
    }
    return -1;
}

std::int64_t CWalkedUnits::KeyFrameOf(std::int64_t unit) const
{
    const SWalkedUnit* const met = Find(unit);
    if (met == nullptr) return unit;
    const SWalkedUnit* const first = units_.data();
    const auto keyBefore = [first](const SWalkedUnit* at) {
        while (at > first && !at->isKey)
            --at;
        return at;
    };
    const SWalkedUnit* const key = keyBefore(met);
    const bool isShownBefore = met->unit + met->shift < key->unit + key->shift;
    return key > first && isShownBefore ? keyBefore(key - 1)->unit : key->unit;
}

} // namespace TamrelMxf
