#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace zanfcp {

/// Where `needle` first begins in `haystack`; nothing when it is not there, and for an empty needle.
/// Source: R. N. Horspool, "Practical fast searching in strings", 1980.
std::optional<std::size_t> horspoolSearch(std::string_view haystack, std::string_view needle);

} // namespace zanfcp
