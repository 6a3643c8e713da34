#include "cli/WavHeader.h"

#include <concepts>
#include <limits>
#include <string_view>

namespace zanfcp::cli {
namespace {

constexpr std::uint32_t kNotHere = 0xFFFFFFFF; ///< a size that stands in the ds64 chunk, or is not known
constexpr std::uint16_t kTagPcm = 1;
constexpr std::uint16_t kTagALaw = 6;
constexpr std::uint16_t kTagExtensible = 0xFFFE;
/// A format tag as a GUID, behind its first two bytes.
constexpr std::string_view kTagGuidRest{"\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14};
constexpr std::uint32_t kDs64Bytes = 28;
constexpr std::size_t kChunkHeader = 8;

template <std::unsigned_integral T> void append(std::string& out, T value)
{
    for (std::size_t i = 0; i < sizeof(T); ++i)
        out += static_cast<char>(value >> (8 * i) & 0xFF);
}

void appendChunk(std::string& out, std::string_view name, std::string_view content)
{
    out += name;
    append(out, static_cast<std::uint32_t>(content.size()));
    out += content;
}

std::string formatChunk(const WavFormat& format)
{
    constexpr std::uint16_t kExtensionBytes = 22;
    const bool isPcm = format.coding == WavFormat::Coding::pcm;
    const auto containerBits = static_cast<std::uint16_t>(format.bytesPerSample * 8);
    // What the plain header leaves open: the order of more than two channels, samples of more than 16 bits and those
    // that do not fill their bytes.
    const bool isExtensible = isPcm && (format.channels > 2 || containerBits > 16 || format.bits != containerBits);
    const std::uint16_t tag = isPcm ? kTagPcm : kTagALaw;
    const auto blockAlign = static_cast<std::uint16_t>(format.channels * format.bytesPerSample);
    std::string out;
    append(out, isExtensible ? kTagExtensible : tag);
    append(out, format.channels);
    append(out, format.sampleRate);
    append(out, static_cast<std::uint32_t>(format.sampleRate * blockAlign));
    append(out, blockAlign);
    append(out, containerBits);
    if (isExtensible) {
        append(out, kExtensionBytes);
        append(out, format.bits);
        append(out, std::uint32_t{0}); // channel mask: the file says nothing of loudspeakers
        append(out, tag);
        out += kTagGuidRest;
    } else if (!isPcm) {
        append(out, std::uint16_t{0});
    }
    return out;
}

} // namespace

std::string wavHeader(const WavFormat& format, std::optional<std::uint64_t> dataBytes)
{
    const std::uint64_t block = std::uint64_t{format.channels} * format.bytesPerSample;
    const std::uint64_t samples = dataBytes && block != 0 ? *dataBytes / block : 0;

    std::string chunks; // between ds64 and the samples
    appendChunk(chunks, "fmt ", formatChunk(format));
    if (format.coding != WavFormat::Coding::pcm) {
        std::string count;
        append(count, static_cast<std::uint32_t>(samples < kNotHere && dataBytes ? samples : kNotHere));
        appendChunk(chunks, "fact", count);
    }
    constexpr std::size_t kWave = 4;
    const std::uint64_t riffBytes = kWave + kChunkHeader + kDs64Bytes + chunks.size() + kChunkHeader +
                                    dataBytes.value_or(0) + wavPadding(dataBytes.value_or(0));
    const bool isLong = dataBytes && riffBytes >= kNotHere;
    const bool is32Bit = dataBytes && !isLong;

    std::string out{isLong ? "RF64" : "RIFF"};
    append(out, is32Bit ? static_cast<std::uint32_t>(riffBytes) : kNotHere);
    out += "WAVE";
    std::string sizes;
    append(sizes, isLong ? riffBytes : std::uint64_t{0});
    append(sizes, isLong ? *dataBytes : std::uint64_t{0});
    append(sizes, isLong ? samples : std::uint64_t{0});
    append(sizes, std::uint32_t{0}); // further chunks above 4 GiB
    appendChunk(out, isLong ? "ds64" : "JUNK", sizes);
    out += chunks;
    out += "data";
    append(out, is32Bit ? static_cast<std::uint32_t>(*dataBytes) : kNotHere);
    return out;
}

} // namespace zanfcp::cli
