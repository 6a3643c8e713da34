#include "xml/Horspool.h"

#include <array>

namespace zanfcp {

std::optional<std::size_t> horspoolSearch(std::string_view haystack, std::string_view needle)
{
    if (needle.empty() || haystack.size() < needle.size()) return std::nullopt;

    const std::size_t last = needle.size() - 1;
    std::array<std::size_t, 256> skip;
    skip.fill(needle.size());
    for (std::size_t i = 0; i < last; ++i)
        skip[static_cast<unsigned char>(needle[i])] = last - i;

    for (std::size_t at = 0; at <= haystack.size() - needle.size();) {
        std::size_t compared = last;
        while (haystack[at + compared] == needle[compared]) {
            if (compared == 0) return at;
            --compared;
        }
        at += skip[static_cast<unsigned char>(haystack[at + last])];
    }
    return std::nullopt;
}

} // namespace zanfcp
