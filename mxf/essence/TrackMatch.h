#pragma once

#include "../labels/Ul.h"
#include "EssenceParser.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace TamrelMxf {

/// Which track an essence element belongs to. Bytes 13 to 16 of its key are the number of the track; writers that fill
/// in only some of them, or none, are understood where no doubt is left.
class CTrackMatch {
public:
    /// \param tracks  of one container; numbers and kinds are copied
    explicit CTrackMatch(std::span<const SEssenceTrack> tracks);

    /// \return the index of the track; nothing for an element that no track describes
    std::optional<std::size_t> Find(const SUl& key);

private:
    struct STrack {
        std::uint32_t number = 0;
        EStreamType type = EStreamType::other;
    };
    std::optional<std::size_t> Search(const SUl& key) const;

    std::vector<STrack> tracks_;
    std::vector<std::pair<std::uint32_t, std::optional<std::size_t>>> known_; // by the number in the key
};

} // namespace TamrelMxf
