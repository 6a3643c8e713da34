#include "mxf/io/WindowSource.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

CWindowSource::CWindowSource(CMediaSource& source) : source_{source}, block_{source.GetBufferSize()}
{
    if (block_ > 0) (void)source_.SetBufferSize(0);
}

CWindowSource::~CWindowSource()
{
    if (block_ > 0) (void)source_.SetBufferSize(static_cast<std::uint32_t>(block_));
}

void CWindowSource::Expect(std::int64_t position, std::size_t count)
{
    place_ = expectedAt_ = position;
    expected_ = count;
    reached_ = 0;
    filled_ = 0;
}

int CWindowSource::Seek(std::int64_t position)
{
    if (position < 0) return -1;
    place_ = position;
    return 0;
}

std::int64_t CWindowSource::GetSize()
{
    if (size_ < 0) size_ = source_.GetSize();
    return size_;
}

/// \return the bytes at the place of the next read that are held, and moves that place behind them
std::size_t CWindowSource::TakeHeld(std::uint8_t* to, std::size_t count)
{
    const std::int64_t from = place_ - begin_;
    if (from < 0 || std::cmp_greater_equal(from, filled_)) return 0;
    count = std::min(count, filled_ - static_cast<std::size_t>(from));
    if (count > 0) std::memcpy(to, window_.data() + from, count);
    place_ += static_cast<std::int64_t>(count);
    return count;
}

/// Makes the window begin at the place of the next read. \return the bytes in it, or the source's negative answer
std::int64_t CWindowSource::Fetch(std::size_t count)
{
    filled_ = 0;
    begin_ = place_;
    if (window_.size() < count) window_.resize(count);
    if (source_.Seek(place_) != 0) return 0;
    const std::int64_t got = source_.Read(window_.data(), count);
    filled_ = static_cast<std::size_t>(std::clamp<std::int64_t>(got, 0, static_cast<std::int64_t>(count)));
    return got;
}

std::int64_t CWindowSource::Read(void* buffer, std::size_t count)
{
    auto* const to = static_cast<std::uint8_t*>(buffer);
    const auto most = static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max() - place_);
    count = std::min(count, most);
    reached_ = std::max(reached_, place_ - expectedAt_ + static_cast<std::int64_t>(count));
    std::size_t have = TakeHeld(to, count);
    if (have == count) return static_cast<std::int64_t>(count);

    const auto block = static_cast<std::size_t>(std::max(block_, 0));
    const std::size_t ahead = expected_ > 0 ? std::exchange(expected_, 0) : block;
    const std::size_t missing = count - have;
    std::int64_t got = 0;
    if (missing < ahead) {
        got = Fetch(ahead);
        have += TakeHeld(to + have, missing);
    } else if (source_.Seek(place_) == 0) {
        got = source_.Read(to + have, missing);
        const std::size_t read = got < 0 ? 0 : std::min(static_cast<std::size_t>(got), missing);
        place_ += static_cast<std::int64_t>(read);
        have += read;
    }
    return have == 0 && got < 0 ? got : static_cast<std::int64_t>(have);
}
