#include "media/quicktime/Window.h"

#include <algorithm>
#include <cassert>

namespace zanfcp::quicktime {

Result<ByteReader> Window::read(Extent range)
{
    assert(range.size <= kMaxPieceBytes);
    const bool atHand =
        range.offset >= begin_ && range.offset - begin_ <= filled_ && range.size <= filled_ - (range.offset - begin_);
    if (!atHand) {
        const std::uint64_t left = fileSize() - std::min(range.offset, fileSize());
        const std::uint64_t wanted = std::max(range.size, std::min<std::uint64_t>(kReadAheadBytes, left));
        filled_ = 0;
        if (Status s = source_.readAt(range.offset, std::span{bytes_}.first(static_cast<std::size_t>(wanted))); !s)
            return Error{s.error()};
        begin_ = range.offset;
        filled_ = static_cast<std::size_t>(wanted);
    }
    const auto piece = std::span<const std::byte>{bytes_}.subspan(static_cast<std::size_t>(range.offset - begin_),
                                                                  static_cast<std::size_t>(range.size));
    return ByteReader{piece, range.offset};
}

} // namespace zanfcp::quicktime
