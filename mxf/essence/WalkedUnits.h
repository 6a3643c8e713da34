#pragma once

#include "../Limits.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TamrelMxf {

/// One edit unit that was met on a walk through the essence.
struct SWalkedUnit {
    std::int64_t unit = 0;
    std::int64_t position = 0;
    std::int64_t streamOffset = 0;
    std::int32_t shift = 0; ///< displayed position less stored one
    bool isKey = true;
};

/// The edit units of a container from the first one on, for files without an index table. Units that are lost take no
/// room, however many a damaged file claims.
class CWalkedUnits {
public:
    /// \pre met.unit >= Count()
    /// \return false when there are kMaxWalkedUnits already
    bool Add(const SWalkedUnit& met)
    {
        if (units_.size() >= kMaxWalkedUnits) return false;
        units_.push_back(met);
        return true;
    }
    /// Units that were walked over, with the lost ones.
    std::int64_t Count() const { return units_.empty() ? 0 : units_.back().unit + 1; }
    /// The one that was added last. \pre there is one
    SWalkedUnit& Last() { return units_.back(); }
    /// \return the unit, or the one behind it when it was lost; null beyond the last one. Valid until the next Add
    const SWalkedUnit* Find(std::int64_t unit) const
    {
        const std::size_t at = IndexOf(unit);
        return unit >= 0 && at < units_.size() ? &units_[at] : nullptr;
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
    /// Of the first one that is not before `unit`.
    std::size_t IndexOf(std::int64_t unit) const;

    std::vector<SWalkedUnit> units_; ///< in ascending order
};

} // namespace TamrelMxf
