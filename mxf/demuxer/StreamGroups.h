#pragma once

#include "../model/Links.h"

#include <cstddef>
#include <span>
#include <vector>

namespace TamrelMxf {

/// Streams that a player sees as one: the tracks of several file packages that one material track plays one after the
/// other (OP2a, OP3a). Everything else stands alone.
struct SStreamGroups {
    using CGroup = std::vector<std::size_t>; ///< indexes of streams, in their order

    CGroup pictures;            ///< of the first joined picture track; empty, or two and more
    CGroup sounds;              ///< of the first joined sound track; empty, or two and more
    std::vector<CGroup> others; ///< a group of one for a stream that stands alone

    /// The stream that stands for each group, in the order of the file. All streams when nothing is joined.
    std::vector<std::size_t> Leaders() const;
};

SStreamGroups JoinStreams(std::span<const SStreamLink> streams);

} // namespace TamrelMxf
