#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace zanfcp {

/// Forward-only, big-endian view of the bytes of one box, set or table.
/// A read past the end returns zeros and marks the reader failed for good, so a fixed layout is
/// read top to bottom and checked once. A sub-reader holds only its own bytes: a child cannot
/// reach into its sibling or past its parent. The bytes are borrowed and must outlive the reader.
class ByteReader {
public:
    ByteReader() = default;
    /// \param bytes       borrowed
    /// \param fileOffset  where `bytes` begins in the file; only used to report errors.
    explicit ByteReader(std::span<const std::byte> bytes, std::uint64_t fileOffset = 0)
        : bytes_{bytes}, begin_{fileOffset}
    {}

    /// The next sizeof(T) bytes as a big-endian number; 0 once failed.
    template <std::unsigned_integral T> T read()
    {
        std::uint64_t value = 0;
        for (const std::byte b : take(sizeof(T)))
            value = (value << 8) | std::to_integer<std::uint64_t>(b);
        return static_cast<T>(value);
    }
    /// The next sizeof(T) bytes as a big-endian two's complement number; 0 once failed.
    template <std::signed_integral T> T read() { return static_cast<T>(read<std::make_unsigned_t<T>>()); }

    /// The next `count` bytes; empty, and failed, when there are fewer.
    std::span<const std::byte> take(std::size_t count)
    {
        if (failed_ || count > remaining()) { // compared this way round: pos_ + count could wrap
            failed_ = true;
            return {};
        }
        return bytes_.subspan(std::exchange(pos_, pos_ + count), count);
    }
    void skip(std::size_t count) { (void)take(count); }

    /// A reader over the next `count` bytes alone; failed when there are fewer.
    ByteReader sub(std::size_t count)
    {
        const std::uint64_t at = offset();
        ByteReader part{take(count), at};
        part.failed_ = failed_;
        return part;
    }
    /// Reads a 32-bit entry count; fails unless that many entries of `entrySize` > 0 bytes follow.
    std::uint32_t readCount(std::size_t entrySize)
    {
        const auto count = read<std::uint32_t>();
        failed_ = failed_ || count > remaining() / entrySize;
        return failed_ ? 0 : count;
    }

    bool ok() const { return !failed_; }
    std::size_t remaining() const { return bytes_.size() - pos_; }
    /// Position in the file of the next byte.
    std::uint64_t offset() const { return begin_ + pos_; }
    /// All that has not been read yet, without moving on.
    std::span<const std::byte> rest() const { return bytes_.subspan(pos_); }

private:
    std::span<const std::byte> bytes_;
    std::uint64_t begin_ = 0;
    std::size_t pos_ = 0;
    bool failed_ = false;
};

} // namespace zanfcp
