#pragma once

#include "IndexedUnit.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace TamrelMxf {

/// The edit units of one container that were met while its essence was walked through: 8 bytes each, in stretches
/// without gaps.
class CNotedUnits {
public:
    /// Adds an edit unit. One that is known, or whose offset does not lie between those of its neighbours, is ignored.
    /// \param flags  as in an index entry
    void Note(std::int64_t editUnit, std::int64_t streamOffset, std::uint8_t flags);

    std::optional<SIndexedUnit> Find(std::int64_t editUnit) const;
    bool Has(std::int64_t editUnit) const { return RunOf(editUnit) != nullptr; }
    /// The last edit unit that does not begin behind `streamOffset`.
    std::optional<std::int64_t> UnitAtOffset(std::int64_t streamOffset) const;

private:
    struct SRun {
        std::int64_t start = 0;
        std::vector<std::uint64_t> units; ///< offset in the upper 56 bits, flags in the lower 8

        std::int64_t End() const { return start + static_cast<std::int64_t>(units.size()); }
    };
    const SRun* RunOf(std::int64_t editUnit) const;

    std::vector<SRun> runs_; // by start, none empty, none overlap
    std::size_t count_ = 0;
};

} // namespace TamrelMxf
