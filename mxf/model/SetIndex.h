#pragma once

#include "mxf/metadata/MetadataSet.h"
#include "mxf/metadata/SetTables.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TamrelMxf {

/// Finds sets by Instance UID, and keeps book of those that have found their owner.
class CSetIndex {
public:
    /// \param sets  borrowed for the life of the index; must not change meanwhile
    explicit CSetIndex(const CMetadataArray& sets);

    enum class EResult : std::uint8_t { found, missing, wrongClass, taken };
    struct SAnswer {
        EResult result = EResult::missing;
        const CMetadataSet* set = nullptr;   ///< when found
        const SSetDef* definition = nullptr; ///< its class, null when unknown
    };

    /// The set that a strong reference names, which from now on has an owner. Writers are met that give one Instance
    /// UID to sets of several classes: the first one of a fitting class is meant.
    /// \param base  the class that the reference asks for
    /// \return a set of `base` or of a class that refines it; else one of a class that the register does not know
    SAnswer Take(const SUUID& uid, ESet base);
    /// The next set of this class, in the order of the file, that has no owner yet.
    /// \param from  index to start at; moved behind the set that is found
    SAnswer TakeNext(ESet base, std::size_t& from);

private:
    /// An Instance UID as two numbers, which compare faster than sixteen bytes, and the index of the set.
    struct SEntry {
        std::uint64_t upper = 0, lower = 0;
        std::uint32_t index = 0;

        SEntry(const SUUID& uid, std::uint32_t setIndex);
        auto operator<=>(const SEntry&) const = default;
        bool SharesUid(const SEntry& other) const { return upper == other.upper && lower == other.lower; }
    };
    SAnswer TakeAt(std::size_t index);

    const CMetadataArray& sets_;
    std::vector<SEntry> byUid_;
    std::vector<const SSetDef*> definitions_; ///< one a set
    std::vector<bool> taken_;
};

} // namespace TamrelMxf
