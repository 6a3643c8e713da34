#pragma once

#include <cstdint>
#include <vector>

namespace TamrelMxf {

/// Writes bits, most significant first, with the codes of ITU-T H.264 (9.1).
class CBitsWriter {
public:
    /// u(n): the lowest `count` bits of `value`, 0 to 32 of them.
    void Bits(std::uint32_t value, unsigned count)
    {
        while (count > 0)
            Bit((value >> --count) & 1);
    }
    void Flag(bool value) { Bit(value ? 1 : 0); }
    /// ue(v), up to 2^32 - 2.
    void Ue(std::uint32_t value);
    /// se(v), -(2^31 - 1) to 2^31 - 1.
    void Se(std::int32_t value);
    /// rbsp_trailing_bits(): the stop bit and zeros up to the end of the byte.
    void TrailingBits();

    /// The bytes so far as the payload of a NAL unit: behind `header`, with a byte 03 wherever the payload would
    /// otherwise form a start code (7.3.1).
    std::vector<std::uint8_t> NalUnit(std::uint8_t header) const;

private:
    void Bit(std::uint32_t bit);

    std::vector<std::uint8_t> bytes_;
    unsigned used_ = 8; ///< bits of the last byte
};

} // namespace TamrelMxf
