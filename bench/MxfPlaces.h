#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// A run of bytes in a file.
struct Range {
    std::uint64_t first = 0;
    std::uint64_t size = 0;
};

/// Where the parts of an MXF file lie, by its random index pack and its partition packs alone (SMPTE ST 377-1).
struct MxfPlaces {
    std::uint64_t headerBytes = 0;  ///< up to the second partition
    std::uint64_t footerBytes = 0;  ///< from the last partition to the end, the random index pack included
    std::vector<Range> indexTables; ///< one for each partition that has any
    std::uint64_t indexBytes() const
    {
        std::uint64_t sum = 0;
        for (const Range& table : indexTables)
            sum += table.size;
        return sum;
    }
};

/// Fails on a file without a random index pack, or with other partitions than it says.
MxfPlaces placesOf(const std::string& path);

} // namespace bench
