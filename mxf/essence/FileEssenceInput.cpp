#include "mxf/essence/FileEssenceInput.h"

#include "mxf/Limits.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace TamrelMxf {
namespace {

constexpr std::size_t kFirstRead = std::size_t{64} << 10; // after a jump: what a header and a small element need

} // namespace

CEssenceInput::~CEssenceInput() = default;

std::int64_t CFileEssenceInput::Size()
{
    if (knownSize_ >= 0 || reader_.Source() == nullptr) return knownSize_;
    const std::int64_t size = reader_.Source()->GetSize();
    if (reader_.IsComplete()) knownSize_ = size;
    return size;
}

std::span<const std::uint8_t> CFileEssenceInput::InWindow(std::int64_t position, std::size_t count) const
{
    if (position < begin_ || position - begin_ > static_cast<std::int64_t>(filled_)) return {};
    const auto from = static_cast<std::size_t>(position - begin_);
    return std::span{buffer_.get(), filled_}.subspan(from, std::min(count, filled_ - from));
}

std::span<const std::uint8_t> CFileEssenceInput::View(std::int64_t position, std::size_t count)
{
    count = std::min(count, kMaxSampleBytes);
    const auto held = Peek(position, count);
    if (held.size() == count || position < 0 || reader_.Source() == nullptr || reader_.IsComplete()) return held;
    WaitFor(count);
    return InWindow(position, count);
}

std::span<const std::uint8_t> CFileEssenceInput::Peek(std::int64_t position, std::size_t count)
{
    if (position < 0 || reader_.Source() == nullptr) return {};
    count = std::min(count, kMaxSampleBytes);
    const auto held = InWindow(position, count);
    if (held.size() == count) return held;
    MoveTo(position);
    ReadAhead(count);
    return InWindow(position, count);
}

/// Makes the window begin at `position` and keeps what it holds from there on.
void CFileEssenceInput::MoveTo(std::int64_t position)
{
    const auto kept = InWindow(position, filled_);
    const bool isOnward = position >= begin_ && position - begin_ <= static_cast<std::int64_t>(filled_) && filled_ > 0;
    if (!kept.empty() && kept.data() != buffer_.get()) std::memmove(buffer_.get(), kept.data(), kept.size());
    filled_ = kept.size();
    begin_ = position;
    nextAhead_ = isOnward ? std::min(2 * nextAhead_, kReadAheadBytes) : kFirstRead;
}

bool CFileEssenceInput::Reserve(std::size_t count)
{
    if (count <= capacity_) return true;
    count = std::max(count, capacity_ + capacity_ / 2); // a window that creeps up is not copied each time
    std::unique_ptr<std::uint8_t[]> larger{new (std::nothrow) std::uint8_t[count]};
    if (!larger) return false;
    if (filled_ > 0) std::memcpy(larger.get(), buffer_.get(), filled_);
    buffer_ = std::move(larger);
    capacity_ = count;
    return true;
}

/// Reads what is there: at least `count` bytes from the beginning of the window on, and some more.
void CFileEssenceInput::ReadAhead(std::size_t count)
{
    CMediaSource& source = *reader_.Source();
    const std::int64_t size = Size();
    while (filled_ < count) {
        std::size_t target = std::max(count, filled_ + nextAhead_);
        if (size >= 0)
            target = std::min(target, static_cast<std::size_t>(std::max<std::int64_t>(size - begin_, 0)));
        else
            target = std::min(target, filled_ + kReadAheadBytes);
        if (target <= filled_ || !Reserve(target)) return;
        if (source.Seek(begin_ + static_cast<std::int64_t>(filled_)) != 0) return;
        const std::size_t wanted = target - filled_;
        const std::int64_t got = source.Read(buffer_.get() + filled_, wanted);
        if (got <= 0) return;
        filled_ += std::min(static_cast<std::size_t>(got), wanted);
        if (static_cast<std::size_t>(got) < wanted) return;
    }
}

/// Waits for what is still to be written, in steps that a promise of much more than ever comes cannot make large.
void CFileEssenceInput::WaitFor(std::size_t count)
{
    while (filled_ < count) {
        const std::size_t step = std::min(count - filled_, kReadStepBytes);
        if (!Reserve(filled_ + step)) return;
        // With the last byte that is held: the reader asks whether the file is complete only where it reads something.
        const std::size_t again = filled_ > 0 ? 1 : 0;
        const std::size_t from = filled_ - again;
        const int got = reader_.ReadSource(buffer_.get() + from, begin_ + static_cast<std::int64_t>(from),
                                           static_cast<int>(step + again));
        if (got <= 0) return;
        filled_ = std::max(filled_, from + std::min(static_cast<std::size_t>(got), step + again));
        if (static_cast<std::size_t>(got) < step + again) return;
    }
}

} // namespace TamrelMxf
