#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace TamrelMxf {

/// The bytes that essence is taken from: those of a file, or those that were pushed so far. Positions count from the
/// first byte of the file or of the push. Used by one thread at a time.
class CEssenceInput {
public:
    virtual ~CEssenceInput();

    /// Makes bytes available in one piece, without copying them where they are there already.
    /// \return `count` bytes from `position` on, good until the next call; fewer when there are no more for now
    virtual std::span<const std::uint8_t> View(std::int64_t position, std::size_t count) = 0;
    /// The same without waiting for what is still to come.
    virtual std::span<const std::uint8_t> Peek(std::int64_t position, std::size_t count)
    {
        return View(position, count);
    }
    /// True when nothing will follow the bytes that View can give.
    virtual bool IsComplete() = 0;
    /// The bytes in all as far as known; -1 when that is not known.
    virtual std::int64_t Size() = 0;
    /// Nothing in front of `position` will be asked for again.
    virtual void Release(std::int64_t position) = 0;

protected:
    CEssenceInput() = default;
    CEssenceInput(const CEssenceInput&) = default;
    CEssenceInput& operator=(const CEssenceInput&) = default;
};

} // namespace TamrelMxf
