#include "xml/Horspool.h"
#include "xml/LabelFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes{reinterpret_cast<const char*>(data), size};
    if (const auto names = zanfcp::parseLabelNames(bytes))
        for (const std::string& name : *names)
            if (name.size() > zanfcp::kMaxLabelBytes || bytes.find(name) == std::string_view::npos) std::abort();

    const std::string_view needle = bytes.substr(0, size % 9);
    const std::string_view haystack = bytes.substr(needle.size());
    const std::size_t expected = needle.empty() ? std::string_view::npos : haystack.find(needle);
    if (zanfcp::horspoolSearch(haystack, needle).value_or(std::string_view::npos) != expected) std::abort();
    return 0;
}
