#include "media/quicktime/SoundDescription.h"

#include "media/quicktime/Box.h"

#include <array>
#include <bit>

namespace zanfcp::quicktime {
namespace {

constexpr std::uint64_t kVersion0Bytes = 28; ///< after size and format
constexpr std::uint64_t kVersion1Bytes = kVersion0Bytes + 16;
constexpr std::uint64_t kVersion2Bytes = 64;

/// Formats that store plain samples.
struct PlainFormat {
    FourCC format;
    std::uint32_t bits; ///< of one sample; 0: as the description says
};
constexpr auto kPlainFormats = std::to_array<PlainFormat>({
    {FourCC{"sowt"}, 0},
    {FourCC{"twos"}, 0},
    {FourCC{"raw "}, 0},
    {FourCC{"NONE"}, 0},
    {FourCC{"lpcm"}, 0},
    {FourCC{"ipcm"}, 0},
    {FourCC{"fpcm"}, 0},
    {FourCC{}, 0}, // an old way to write 'NONE'
    {FourCC{"in24"}, 24},
    {FourCC{"in32"}, 32},
    {FourCC{"fl32"}, 32},
    {FourCC{"fl64"}, 64},
});

/// The sample size in a 'pcmC' box. Source: ISO/IEC 23003-5, 5.2.
std::uint32_t configuredBits(Window& window, Extent extensions, std::uint32_t otherwise)
{
    std::uint32_t bits = otherwise;
    constexpr FourCC kWanted[] = {FourCC{"pcmC"}};
    const Status walked = forEachBox(window, extensions, kWanted, [&](const Box& box) -> Result<Walk> {
        Result<ByteReader> bytes = window.read(box.body.first(6));
        if (!bytes) return Error{bytes.error()};
        bytes->skip(4 + 1); // version and flags, byte order
        const auto size = bytes->read<std::uint8_t>();
        if (bytes->ok()) bits = size;
        return Walk::stop;
    });
    (void)walked.has_value(); // broken extensions cost no more than themselves
    return bits;
}

/// The size of one sample; `stated` is what the description's own field holds.
std::uint32_t bitsPerChannel(FourCC format, std::uint32_t stated)
{
    const auto* plain = std::ranges::find(kPlainFormats, format, &PlainFormat::format);
    if (plain == kPlainFormats.end()) return 0;
    return plain->bits != 0 ? plain->bits : stated;
}

} // namespace

Result<SoundDescription> parseSoundDescription(Window& window, const Box& entry, std::uint8_t tableVersion)
{
    Result<ByteReader> bytes = window.read(entry.body.first(kVersion2Bytes));
    if (!bytes) return Error{bytes.error()};
    SoundDescription sound{.format = entry.type};
    bytes->skip(6 + 2); // reserved, data reference
    const auto version = bytes->read<std::uint16_t>();
    bytes->skip(2 + 4); // revision, vendor
    sound.channelCount = bytes->read<std::uint16_t>();
    std::uint32_t sampleSize = bytes->read<std::uint16_t>();
    bytes->skip(2 + 2); // compression, packet size
    sound.sampleRate = bytes->read<std::uint32_t>() / 65536.0;
    std::uint64_t extensionsAt = kVersion0Bytes;
    if (version == 1 && tableVersion == 0) {
        bytes->skip(16); // samples and bytes a packet, bytes a frame, bytes a sample
        extensionsAt = kVersion1Bytes;
    } else if (version == 2) {
        // The fields above hold fixed numbers here.
        bytes->skip(4); // size of this record
        sound.sampleRate = std::bit_cast<double>(bytes->read<std::uint64_t>());
        sound.channelCount = bytes->read<std::uint32_t>();
        bytes->skip(4); // 0x7F000000
        sampleSize = bytes->read<std::uint32_t>();
        bytes->skip(4 + 4 + 4); // flags, bytes and frames a packet
        extensionsAt = kVersion2Bytes;
    }
    if (!bytes->ok()) return Error{Fault::truncated, "sound sample description is cut short", entry.offset};

    if (entry.type == FourCC{"ipcm"} || entry.type == FourCC{"fpcm"})
        sampleSize = configuredBits(window, entry.body.after(extensionsAt), sampleSize);
    sound.bitsPerChannel = bitsPerChannel(entry.type, sampleSize);
    return sound;
}

} // namespace zanfcp::quicktime
