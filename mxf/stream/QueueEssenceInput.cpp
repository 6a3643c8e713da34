#include "mxf/stream/QueueEssenceInput.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace TamrelMxf {

std::span<const std::uint8_t> CQueueEssenceInput::View(std::int64_t position, std::size_t count)
{
    DropReleased();
    missing_ = 0;
    const std::int64_t front = Front();
    if (position < front || stop_) return {};
    const std::uint64_t ahead = static_cast<std::uint64_t>(position) - static_cast<std::uint64_t>(front);
    const std::uint64_t own = queue_.Held() - copied_; // bytes in front of the slice
    const std::uint64_t there = own + lent_.size();
    if (ahead + count > there) missing_ = static_cast<std::size_t>(ahead + count - there);
    if (ahead >= there) return {};
    count = std::min(count, static_cast<std::size_t>(there - ahead));
    if (!lent_.empty() && ahead >= own) return lent_.subspan(static_cast<std::size_t>(ahead - own), count);
    if (ahead + count > own + copied_ && !Queue(static_cast<std::size_t>(ahead + count - own))) return {};
    unsigned char* data = nullptr;
    int held = 0;
    if (queue_.RequestData(&data, &held) != 0) return {};
    return {data + ahead, count};
}

void CQueueEssenceInput::Release(std::int64_t position)
{
    released_ = std::max(released_, position);
    DropReleased();
}

/// Also drops what was released before it came.
void CQueueEssenceInput::DropReleased()
{
    const std::int64_t count = released_ - Front();
    if (count <= 0) return;
    const auto queued = static_cast<std::uint32_t>(std::min<std::int64_t>(count, queue_.Held()));
    const std::uint32_t own = queue_.Held() - static_cast<std::uint32_t>(copied_);
    (void)queue_.ReleaseData(static_cast<int>(queued));
    if (count <= own || lent_.empty()) return;
    const auto passed = static_cast<std::size_t>(std::min<std::int64_t>(count - own, std::ssize(lent_)));
    queue_.Pass(static_cast<std::int64_t>(passed - std::min(passed, copied_)));
    copied_ -= std::min(passed, copied_);
    lent_ = lent_.subspan(passed);
}

bool CQueueEssenceInput::Lend(std::span<const std::uint8_t> slice)
{
    // Room for all of it now is room for any part of it later, when no more is held than now.
    if (!queue_.CanHaveRoom(static_cast<int>(slice.size()))) return false;
    lent_ = slice;
    copied_ = 0;
    if (queue_.Held() > 0) (void)Queue(std::min(missing_, slice.size()));
    return true;
}

void CQueueEssenceInput::Settle()
{
    DropReleased();
    (void)Queue(lent_.size());
    Forget();
}

void CQueueEssenceInput::Forget()
{
    queue_.Pass(std::ssize(lent_) - static_cast<std::int64_t>(copied_));
    lent_ = {};
    copied_ = 0;
}

/// Sees to it that the first `count` bytes of what is left of the slice are queued.
bool CQueueEssenceInput::Queue(std::size_t count)
{
    if (count <= copied_) return true;
    const auto fresh = lent_.subspan(copied_, count - copied_);
    unsigned char* const room = queue_.RequestFree(static_cast<int>(fresh.size()));
    if (room == nullptr) return false;
    std::memcpy(room, fresh.data(), fresh.size());
    if (queue_.ConfirmData(static_cast<int>(fresh.size())) != 0) return false;
    copied_ = count;
    return true;
}

} // namespace TamrelMxf
