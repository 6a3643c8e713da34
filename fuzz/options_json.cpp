#include "cli/Json.h"
#include "cli/OptionReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

/// Errors are shown in one line, and every option that was taken can be looked at again.
template <typename T> void check(const zanfcp::Result<T>& result)
{
    if (!result && zanfcp::cli::lineOf(result.error()).empty()) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zanfcp;
    using namespace zanfcp::cli;
    const std::string_view text{reinterpret_cast<const char*>(data), size};

    const auto options = optionsFromJson(text);
    check(options);
    if (options) {
        (void)checkFileIndices(*options, 3);
        (void)checkTimecodes(*options, PELRate{30, true});
    }
    const auto cuts = cutsFromJson(text);
    check(cuts);
    if (cuts) (void)checkTimecodes(PELDictionary{{"cuts", *cuts}}, PELRate{25, false});
    check(markersFromJson(text));

    PELDictionary set;
    if (!setOption(set, text) && !set.empty()) std::abort();
    return 0;
}
