#include "media/quicktime/DataReference.h"

#include "media/quicktime/Box.h"

namespace zanfcp::quicktime {
namespace {

constexpr std::uint32_t kSelfReference = 1;

DataPlace placeInReferences(Window& window, Extent body, std::uint32_t index)
{
    Extent rest = body.after(8); // version, flags, count
    for (std::uint32_t i = 1; i <= index && i <= kMaxSampleDescriptions; ++i) {
        Result<std::optional<Box>> read = readBox(window, rest);
        if (!read || !*read || !(*read)->fits) return DataPlace::thisFile;
        const Box& reference = **read;
        if (i == index) {
            Result<ByteReader> bytes = window.read(reference.body.first(4));
            if (!bytes || bytes->remaining() < 4) return DataPlace::thisFile;
            const auto flags = bytes->read<std::uint32_t>() & 0xFFFFFF;
            return (flags & kSelfReference) != 0 ? DataPlace::thisFile : DataPlace::elsewhere;
        }
        rest = rest.after(reference.end() - rest.offset);
    }
    return DataPlace::thisFile;
}

} // namespace

DataPlace findDataPlace(Window& window, Extent body, std::uint32_t index)
{
    DataPlace place = DataPlace::thisFile;
    constexpr FourCC kWanted[] = {FourCC{"dref"}};
    const Status walked = forEachBox(window, body, kWanted, [&](const Box& box) -> Result<Walk> {
        place = placeInReferences(window, box.body, index);
        return Walk::stop;
    });
    (void)walked.has_value(); // broken references count as none
    return place;
}

} // namespace zanfcp::quicktime
