#include "mxf/avc/BitsWriter.h"

#include <bit>

namespace TamrelMxf {

void CBitsWriter::Bit(std::uint32_t bit)
{
    if (used_ == 8) {
        bytes_.push_back(0);
        used_ = 0;
    }
    ++used_;
    bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | (bit << (8 - used_)));
}

void CBitsWriter::Ue(std::uint32_t value)
{
    const std::uint32_t code = value + 1;
    const auto width = static_cast<unsigned>(std::bit_width(code));
    Bits(0, width - 1);
    Bits(code, width);
}

void CBitsWriter::Se(std::int32_t value)
{
    const auto magnitude = static_cast<std::uint32_t>(value < 0 ? -value : value);
    Ue(value > 0 ? 2 * magnitude - 1 : 2 * magnitude);
}

void CBitsWriter::TrailingBits()
{
    Bit(1);
    used_ = 8;
}

std::vector<std::uint8_t> CBitsWriter::NalUnit(std::uint8_t header) const
{
    std::vector<std::uint8_t> unit{header};
    int zeros = 0;
    for (const std::uint8_t byte : bytes_) {
        if (zeros >= 2 && byte <= 3) {
            unit.push_back(3);
            zeros = 0;
        }
        unit.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    return unit;
}

} // namespace TamrelMxf
