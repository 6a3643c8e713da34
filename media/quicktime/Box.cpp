#include "media/quicktime/Box.h"

namespace zanfcp::quicktime {

Result<std::optional<Box>> readBox(Window& window, Extent rest)
{
    constexpr std::uint64_t kShortHeader = 8;
    constexpr std::uint64_t kLongHeader = 16;
    if (rest.size < kShortHeader) return std::optional<Box>{};
    Result<ByteReader> bytes = window.read(rest.first(kLongHeader));
    if (!bytes) return Error{bytes.error()};

    std::uint64_t size = bytes->read<std::uint32_t>();
    Box box{.type = FourCC{bytes->read<std::uint32_t>()}, .offset = rest.offset, .body = {}};
    const bool isLong = size == 1;
    if (isLong) size = bytes->read<std::uint64_t>();
    const std::uint64_t header = isLong ? kLongHeader : kShortHeader;
    if (size == 0) size = rest.size;
    box.fits = bytes->ok() && size >= header && size <= rest.size;
    box.missing = bytes->ok() && size > rest.size ? size - rest.size : 0;
    box.body = rest.first(std::max(size, header)).after(header);
    return std::optional{box};
}

bool isPlausibleType(FourCC type)
{
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto byte = static_cast<unsigned char>(type.value >> shift);
        if ((byte < 0x20 || byte > 0x7E) && byte != 0xA9) return false;
    }
    return true;
}

} // namespace zanfcp::quicktime
