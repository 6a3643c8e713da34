#include "mxf/stream/QueueEssenceInput.h"

#include <algorithm>

namespace TamrelMxf {

std::span<const std::uint8_t> CQueueEssenceInput::View(std::int64_t position, std::size_t count)
{
    DropReleased();
    const std::int64_t front = Front();
    if (position < front || stop_) return {};
    const auto ahead = static_cast<std::uint64_t>(position) - static_cast<std::uint64_t>(front);
    unsigned char* data = nullptr;
    int held = 0;
    if (queue_.RequestData(&data, &held) != 0 || ahead >= static_cast<std::uint64_t>(held)) return {};
    const auto from = static_cast<std::size_t>(ahead);
    return {data + from, std::min(count, static_cast<std::size_t>(held) - from)};
}

void CQueueEssenceInput::Release(std::int64_t position)
{
    released_ = std::max(released_, position);
    DropReleased();
}

void CQueueEssenceInput::DropReleased()
{
    const std::int64_t count = std::min<std::int64_t>(released_ - Front(), queue_.Held());
    if (count > 0) (void)queue_.ReleaseData(static_cast<int>(count));
}

} // namespace TamrelMxf
