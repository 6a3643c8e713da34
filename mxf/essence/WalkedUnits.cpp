#include "mxf/essence/WalkedUnits.h"

#include <algorithm>

namespace TamrelMxf {

std::int64_t CWalkedUnits::StoredAt(std::int64_t displayed) const
{
    // From the position itself outwards: most pictures are not moved far.
    for (std::int64_t distance = 0; distance <= kMostShift; ++distance) {
        for (const std::int64_t unit : {displayed + distance, displayed - distance}) {
            if (unit < 0 || unit >= Count()) continue;
            if (unit + units_[static_cast<std::size_t>(unit)].shift == displayed) return unit;
        }
    }
    return -1;
}

std::int64_t CWalkedUnits::KeyFrameOf(std::int64_t unit) const
{
    if (unit < 0 || unit >= Count()) return unit;
    const auto shownAt = [&](std::int64_t at) { return at + units_[static_cast<std::size_t>(at)].shift; };
    const auto keyBefore = [&](std::int64_t at) {
        while (at > 0 && !units_[static_cast<std::size_t>(at)].isKey)
            --at;
        return at;
    };
    const std::int64_t key = keyBefore(unit);
    return key > 0 && shownAt(unit) < shownAt(key) ? keyBefore(key - 1) : key;
}

} // namespace TamrelMxf
