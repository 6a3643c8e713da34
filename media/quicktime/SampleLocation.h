#pragma once

#include <cstdint>

namespace zanfcp::quicktime {

/// Where one sample lies.
struct SampleLocation {
    std::uint32_t description = 1; ///< 1-based entry of the sample descriptions
    std::uint64_t offset = 0;      ///< bytes from the start of the file
    std::uint64_t size = 0;        ///< bytes
};

} // namespace zanfcp::quicktime
