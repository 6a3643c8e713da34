#include "mxf/essence/Aes3Unpacking.h"

#include <array>
#include <bit>
#include <cstddef>

namespace TamrelMxf::Aes3 {
namespace {

constexpr std::size_t kHeaderBytes = 4; // flags, count of samples (2), valid channels
constexpr std::size_t kChannels = 8;
constexpr std::size_t kWordBytes = 4;

struct SChannels {
    std::array<std::size_t, kChannels> at{}; // places of their words
    std::size_t count = 0;
};

SChannels ChannelsOf(std::uint8_t valid, std::uint32_t wanted)
{
    SChannels channels;
    const auto marked = static_cast<std::uint32_t>(std::popcount(valid));
    if (wanted == 0) wanted = marked;
    if (wanted != marked) valid = 0xFF;
    for (std::size_t i = 0; i < kChannels && channels.count < wanted; ++i)
        if ((valid >> i & 1) != 0) channels.at[channels.count++] = i;
    return channels;
}

} // namespace

bool IsEightChannelElement(const SUl& key)
{
    return key.bytes[12] == 0x06 && key.bytes[14] == 0x10;
}

void Unpack(std::span<const std::uint8_t> element, const SStreamFormat& format, std::vector<std::uint8_t>& samples)
{
    if (element.size() < kHeaderBytes) return;
    const SChannels channels = ChannelsOf(element[3], format.channelCount);
    const std::size_t bytes = format.bitsPerSample > 16 ? 3 : 2;
    const std::size_t shift = bytes == 3 ? 4 : 12; // the sample lies in bits 4 to 27, its last bit on top
    const std::size_t count = (element.size() - kHeaderBytes) / (kChannels * kWordBytes);
    const std::size_t begin = samples.size();
    samples.resize(begin + count * channels.count * bytes);
    std::uint8_t* out = samples.data() + begin;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* const words = element.data() + kHeaderBytes + i * kChannels * kWordBytes;
        for (std::size_t c = 0; c < channels.count; ++c) {
            const std::uint8_t* const in = words + channels.at[c] * kWordBytes;
            const std::uint32_t word = static_cast<std::uint32_t>(in[0]) | static_cast<std::uint32_t>(in[1]) << 8 |
                                       static_cast<std::uint32_t>(in[2]) << 16 |
                                       static_cast<std::uint32_t>(in[3]) << 24;
            for (std::size_t b = 0; b < bytes; ++b)
                *out++ = static_cast<std::uint8_t>(word >> (shift + 8 * b));
        }
    }
}

} // namespace TamrelMxf::Aes3
