#include "media/quicktime/Asset.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zanfcp;
    const auto bytes = std::as_bytes(std::span{data, size});
    const auto asset = quicktime::Asset::read(std::make_unique<MemoryByteSource>(bytes));
    if (!asset) {
        if (asset.error().offset > size || asset.error().what.empty()) std::abort();
        return 0;
    }
    if (asset->duration().timescale == 0) std::abort();
    std::array<std::byte, 8> sample{};
    for (const quicktime::Track& track : asset->tracks())
        if (asset->readFirstSample(track, sample) && track.firstSample->location->offset > size) std::abort();
    return 0;
}
