#include "media/quicktime/EditList.h"

#include <algorithm>

namespace zanfcp::quicktime {

std::optional<std::uint64_t> findMediaStart(Window& window, Extent body)
{
    Result<ByteReader> head = window.read(body.first(8));
    if (!head) return {};
    const auto version = head->read<std::uint8_t>();
    head->skip(3);
    const auto count = head->read<std::uint32_t>();
    if (!head->ok() || version > 1) return {};

    const std::uint64_t entrySize = version == 1 ? 20 : 12;
    Extent rest = body.after(8);
    for (std::uint32_t i = 0; i < std::min(count, kMaxEntriesToFirstSample) && rest.size >= entrySize; ++i) {
        Result<ByteReader> entry = window.read(rest.first(entrySize));
        if (!entry) return {};
        entry->skip(version == 1 ? 8 : 4); // duration
        const std::int64_t mediaTime = version == 1 ? entry->read<std::int64_t>() : entry->read<std::int32_t>();
        if (mediaTime >= 0) return static_cast<std::uint64_t>(mediaTime);
        rest = rest.after(entrySize);
    }
    return {};
}

} // namespace zanfcp::quicktime
