#pragma once

#include "../../platform/ByteReader.h"
#include "../../platform/ByteSource.h"
#include "limits.h"

#include <array>
#include <cstdint>

namespace zanfcp::quicktime {

/// A range of bytes in the file.
struct Extent {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;

    std::uint64_t end() const { return offset + size; }
    /// The first `count` bytes, or all when there are fewer.
    Extent first(std::uint64_t count) const { return {offset, count < size ? count : size}; }
    /// All but the first `count` bytes; empty when there are no more.
    Extent after(std::uint64_t count) const
    {
        const std::uint64_t skipped = count < size ? count : size;
        return {offset + skipped, size - skipped};
    }

    friend bool operator==(const Extent&, const Extent&) = default;
};

/// The piece of a file that is looked at: headers that lie close together cost one read.
class Window {
public:
    /// \param source  borrowed; must outlive the window.
    explicit Window(ByteSource& source) : source_{source} {}

    std::uint64_t fileSize() const { return source_.size(); }
    /// A reader over the bytes of `range`, valid until the next call.
    /// \param range  at most kMaxPieceBytes long
    /// \return truncated when the file ends before, io when it cannot be read
    Result<ByteReader> read(Extent range);

private:
    ByteSource& source_;
    std::array<std::byte, kMaxPieceBytes> bytes_;
    std::uint64_t begin_ = 0;
    std::size_t filled_ = 0;
};

} // namespace zanfcp::quicktime
