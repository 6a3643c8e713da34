#include "mxf/avc/BitsReader.h"

#include <algorithm>
#include <cstring>

namespace {

std::uint64_t LoadBigEndian(const std::uint8_t* bytes)
{
    std::uint64_t word = 0;
    for (int i = 0; i < 8; ++i)
        word = (word << 8) | bytes[i];
    return word;
}

/// True when one of the eight bytes is 03.
bool HasThree(std::uint64_t word)
{
    const std::uint64_t x = word ^ 0x0303030303030303U;
    return ((x - 0x0101010101010101U) & ~x & 0x8080808080808080U) != 0;
}

} // namespace

// Bytes that were removed need no memory of their own: no byte 03 that is left follows two zeros.
bool CBitsReader::Refill(unsigned needed)
{
    if (failed_) return false;
    while (cached_ <= 56 && next_ != end_) {
        if (end_ - next_ >= 8) {
            const std::uint64_t word = LoadBigEndian(next_);
            if (!removes_ || !HasThree(word)) {
                const unsigned count = (64 - cached_) / 8;
                cache_ |= (word & (~std::uint64_t{0} << (64 - 8 * count))) >> cached_;
                cached_ += 8 * count;
                next_ += count;
                continue;
            }
        }
        const std::uint8_t* const at = next_++;
        if (IsEmulationByte(at)) continue;
        cache_ |= std::uint64_t{*at} << (56 - cached_);
        cached_ += 8;
    }
    if (cached_ >= needed) return true;
    Fail();
    return false;
}

void CBitsReader::Skip(std::uint64_t count)
{
    if (count > 64) {
        // Over whole bytes where they lie, once the cache is used up.
        count -= cached_;
        read_ += cached_;
        cache_ = 0;
        cached_ = 0;
        while (count >= 8 && next_ != end_) {
            std::uint64_t step = std::min<std::uint64_t>(count / 8, static_cast<std::uint64_t>(end_ - next_));
            const void* three = removes_ ? std::memchr(next_, 3, static_cast<std::size_t>(step)) : nullptr;
            if (three == next_) {
                step = IsEmulationByte(next_) ? 0 : 1;
                ++next_;
            } else {
                if (three != nullptr)
                    step = static_cast<std::uint64_t>(static_cast<const std::uint8_t*>(three) - next_);
                next_ += step;
            }
            count -= 8 * step;
            read_ += 8 * step;
        }
        if (count >= 8) Fail();
    }
    for (; count > 32 && !failed_; count -= 32)
        Bits(32);
    if (!failed_) Bits(static_cast<unsigned>(count));
}

std::uint32_t CBitsReader::Fail()
{
    failed_ = true;
    cache_ = 0;
    cached_ = 0;
    next_ = end_;
    return 0;
}

bool CBitsReader::MoreRbspData()
{
    if (failed_) return false;
    Refill(0);
    const std::uint8_t* last = end_; // behind the byte with the stop bit; zero words may follow it (7.3.2.10)
    while (last != begin_ && (last[-1] == 0 || (last[-1] == 3 && last - begin_ >= 3 && last[-2] == 0 && last[-3] == 0)))
        --last;
    if (next_ < last) return true;
    return (cache_ << 1) != 0;
}
