#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

/// Reads the bits of a picture bitstream, most significant first, with the codes of ITU-T H.264 (9.1).
///
/// A read past the end answers 0 and marks the reader failed for good, so a fixed layout is read from top to
/// bottom and checked once. The bytes are borrowed and must outlive the reader. A copy goes on from the same
/// place, on its own.
class CBitsReader {
public:
    /// What becomes of the bytes 03 behind 00 00, which keep start codes out of a NAL unit (ITU-T H.264, 7.4.1).
    enum class EEmulationBytes : std::uint8_t { removed, kept };

    explicit CBitsReader(std::span<const std::uint8_t> bytes, EEmulationBytes emulation = EEmulationBytes::removed)
        : next_{bytes.data()}, begin_{bytes.data()}, end_{bytes.data() + bytes.size()}, removes_{
                                                                                            emulation ==
                                                                                            EEmulationBytes::removed}
    {}

    /// u(n).
    /// \param count  0 to 32
    std::uint32_t Bits(unsigned count)
    {
        if (count == 0) return 0;
        if (cached_ < count && !Refill(count)) return 0;
        const auto value = static_cast<std::uint32_t>(cache_ >> (64 - count));
        Consume(count);
        return value;
    }

    /// u(1).
    bool Flag() { return Bits(1) != 0; }

    /// ue(v), 0 to 2^32 - 2. A code with more than 31 leading zeros fails.
    std::uint32_t Ue()
    {
        if (cached_ < 32) Refill(0);
        const auto zeros = static_cast<unsigned>(std::countl_zero(cache_));
        if (zeros > 31 || zeros >= cached_) return Fail();
        Consume(zeros);
        const std::uint32_t code = Bits(zeros + 1);
        return failed_ ? 0 : code - 1;
    }

    /// se(v), -(2^31 - 1) to 2^31 - 1.
    std::int32_t Se()
    {
        const std::uint32_t code = Ue();
        const auto half = static_cast<std::int32_t>((code >> 1) + (code & 1)); // at most 2^31 - 1
        return (code & 1) != 0 ? half : -half;
    }

    /// Steps over `count` bits; takes no longer than the bytes there are.
    void Skip(std::uint64_t count);

    /// more_rbsp_data(): true while something stands in front of the stop bit, the last 1 in the bytes.
    bool MoreRbspData();

    bool IsOk() const { return !failed_; }
    /// Bits delivered so far, bytes that were removed not counted.
    std::uint64_t BitsRead() const { return read_; }
    bool IsByteAligned() const { return read_ % 8 == 0; }

private:
    /// Fills the cache; fails when it then holds fewer than `needed` bits.
    bool Refill(unsigned needed);
    void Consume(unsigned count)
    {
        cache_ <<= count;
        cached_ -= count;
        read_ += count;
    }
    std::uint32_t Fail();
    bool IsEmulationByte(const std::uint8_t* at) const
    {
        return removes_ && *at == 3 && at - begin_ >= 2 && at[-1] == 0 && at[-2] == 0;
    }

    std::uint64_t cache_ = 0; ///< the next `cached_` bits on top, zeros below
    unsigned cached_ = 0;
    const std::uint8_t* next_; ///< first byte behind the cache
    const std::uint8_t* begin_;
    const std::uint8_t* end_;
    std::uint64_t read_ = 0;
    bool removes_;
    bool failed_ = false;
};
