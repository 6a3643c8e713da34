#include "fcp/ProjectDocument.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// Two documents, with a NUL between them. Whatever is taken as a project must still be one when another is joined to
// it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes{reinterpret_cast<const char*>(data), size};
    const std::string_view first = bytes.substr(0, bytes.find('\0'));
    const std::string_view second = first.size() < size ? bytes.substr(first.size() + 1) : first;
    const auto layout = zanfcp::layOutProject(first);
    const auto added = zanfcp::layOutProject(second);
    if (!layout || !added) return 0;
    const auto joined = zanfcp::appendToProject(first, *layout, second, *added);
    if (joined && !zanfcp::layOutProject(*joined)) std::abort();
    return 0;
}
