#pragma once

#include "../Limits.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TamrelMxf {

/// One edit unit that was met on a walk through the essence.
struct SWalkedUnit {
    std::int64_t position = 0;
    std::int64_t streamOffset = 0;
    std::int32_t shift = 0; ///< displayed position less stored one
    bool isKey = true;
};

/// The edit units of a container from the first one on, for files without an index table.
class CWalkedUnits {
public:
    /// \return false when there are kMaxWalkedUnits already
    bool Add(const SWalkedUnit& unit)
    {
        if (units_.size() >= kMaxWalkedUnits) return false;
        units_.push_back(unit);
        return true;
    }
    std::int64_t Count() const { return static_cast<std::int64_t>(units_.size()); }
    /// \return null beyond the last one
    SWalkedUnit* Find(std::int64_t unit)
    {
        return unit >= 0 && unit < Count() ? &units_[static_cast<std::size_t>(unit)] : nullptr;
    }
    /// The stored unit that is shown at `displayed`, of those that lie no further from it than pictures are moved; -1
    /// without one.
    std::int64_t StoredAt(std::int64_t displayed) const;
    /// The stored unit that decoding of `unit` starts from: the key frame before it, or one earlier when the picture is
    /// shown in front of that and may need both.
    std::int64_t KeyFrameOf(std::int64_t unit) const;

    /// How far a picture can be moved: the range of the temporal reference of MPEG-2.
    static constexpr std::int64_t kMostShift = 1024;

private:
    std::vector<SWalkedUnit> units_;
};

} // namespace TamrelMxf
