#include "tests/support/MovieBuilder.h"

#include <bit>

namespace zanfcp::test {
namespace {

/// Version 0, no flags, an entry count.
Bytes tableHead(std::size_t count)
{
    return Bytes{}.u32(0).u32(static_cast<std::uint32_t>(count));
}

/// Size, format, reserved, first data reference.
Bytes sampleEntry(std::string_view format, const Bytes& body)
{
    return atom(format, Bytes{}.zeros(6).u16(1).add(body));
}

Bytes sizeEntries(const MovieTrack& track)
{
    Bytes entries;
    std::uint8_t half = 0; // of a byte that two sizes share
    for (std::size_t i = 0; i < track.sizes.size(); ++i) {
        const std::uint32_t size = track.sizes[i];
        const auto byte = static_cast<std::uint8_t>(size);
        if (track.sizeBits == 32) entries.u32(size);
        if (track.sizeBits == 16) entries.u16(static_cast<std::uint16_t>(size));
        if (track.sizeBits == 8) entries.u8(byte);
        if (track.sizeBits == 4 && i % 2 == 1) entries.u8(half | byte);
        half = static_cast<std::uint8_t>(byte << 4U);
    }
    if (track.sizeBits == 4 && track.sizes.size() % 2 == 1) entries.u8(half);
    return entries;
}

Bytes sampleTable(const MovieTrack& track)
{
    Bytes descriptions = tableHead(track.descriptions.size());
    for (const Bytes& description : track.descriptions)
        descriptions.add(description);
    Bytes times = tableHead(track.times.size());
    for (const auto& [count, duration] : track.times)
        times.u32(count).u32(duration);
    Bytes chunks = tableHead(track.chunks.size());
    for (const auto& [first, perChunk, description] : track.chunks)
        chunks.u32(first).u32(perChunk).u32(description);
    const auto listed = static_cast<std::uint32_t>(track.sizes.size());
    const bool isCompact = track.sizeBits < 32;
    Bytes sizes = Bytes{}
                      .u32(0)
                      .u32(isCompact ? track.sizeBits : track.commonSize)
                      .u32(track.sampleCount > 0 ? track.sampleCount : listed);
    if (track.commonSize == 0) sizes.add(sizeEntries(track));
    Bytes offsets = tableHead(track.offsets.size());
    for (const std::uint64_t offset : track.offsets)
        track.hasLongOffsets ? offsets.u64(offset) : offsets.u32(static_cast<std::uint32_t>(offset));
    return atom("stbl", Bytes{}
                            .add(atom("stsd", descriptions))
                            .add(atom("stts", times))
                            .add(track.otherTables)
                            .add(atom("stsc", chunks))
                            .add(atom(isCompact ? "stz2" : "stsz", sizes))
                            .add(atom(track.hasLongOffsets ? "co64" : "stco", offsets)));
}

} // namespace

Bytes atom(std::string_view type, const Bytes& body)
{
    return lyingAtom(type, static_cast<std::uint32_t>(body.size() + 8), body);
}

Bytes longAtom(std::string_view type, const Bytes& body)
{
    return Bytes{}.u32(1).text(type).u64(body.size() + 16).add(body);
}

Bytes lyingAtom(std::string_view type, std::uint32_t size, const Bytes& body)
{
    return Bytes{}.u32(size).text(type).add(body);
}

Bytes videoEntry(const VideoEntry& entry)
{
    Bytes body = Bytes{}.u16(0).u16(0).text(entry.vendor).u32(entry.temporalQuality).u32(entry.spatialQuality);
    body.u16(entry.width).u16(entry.height).u32(72U << 16).u32(72U << 16).u32(0).u16(1);
    body.u8(static_cast<std::uint8_t>(entry.name.size())).text(entry.name).zeros(31 - entry.name.size());
    body.u16(24).u16(0xFFFF).add(entry.extensions);
    return sampleEntry(entry.format, body);
}

Bytes cleanAperture(std::uint32_t width, std::uint32_t height)
{
    return atom("clap", Bytes{}.u32(width).u32(1).u32(height).u32(1).u32(0).u32(1).u32(0).u32(1));
}

Bytes soundEntry(const SoundEntry& entry)
{
    Bytes body = Bytes{}.u16(entry.version).u16(0).u32(0).u16(entry.channels).u16(entry.sampleSize);
    body.u16(0).u16(0).u32(entry.sampleRate);
    if (entry.version == 1) body.u32(1).u32(2).u32(4).u32(2);
    return sampleEntry(entry.format, body.add(entry.extensions));
}

Bytes soundEntry2(std::string_view format, double sampleRate, std::uint32_t bits)
{
    Bytes body = Bytes{}.u16(2).u16(0).u32(0).u16(3).u16(16).u16(0xFFFE).u16(0).u32(65536).u32(72);
    body.u64(std::bit_cast<std::uint64_t>(sampleRate)).u32(2).u32(0x7F000000).u32(bits).u32(0).u32(0).u32(1);
    return sampleEntry(format, body);
}

Bytes timecodeEntry(const TimecodeEntry& entry)
{
    Bytes body = Bytes{}.u32(0).u32(entry.flags).u32(entry.timescale).u32(entry.frameDuration);
    return sampleEntry(entry.format, body.u8(entry.frameQuanta).u8(0).add(entry.extensions));
}

Bytes sourceReference(std::string_view name, std::uint16_t language)
{
    return atom("name", Bytes{}.u16(static_cast<std::uint16_t>(name.size())).u16(language).text(name));
}

MovieTrack soundTrack(const Bytes& description)
{
    MovieTrack track;
    track.mediaType = "soun";
    track.timescale = 48000;
    track.duration = 192000;
    track.descriptions = {description};
    track.times = {{192000, 1}};
    track.commonSize = 4;
    track.sizes.resize(0);
    return track;
}

MovieTrack timecodeTrack(const TimecodeEntry& entry)
{
    MovieTrack track;
    track.mediaType = "tmcd";
    track.descriptions = {timecodeEntry(entry)};
    track.times = {{1, 100000}};
    track.sizes = {4};
    track.chunks = {{1, 1, 1}};
    return track;
}

Bytes editList(const std::vector<std::pair<std::uint32_t, std::int32_t>>& edits)
{
    Bytes body = tableHead(edits.size());
    for (const auto& [duration, mediaTime] : edits)
        body.u32(duration).u32(static_cast<std::uint32_t>(mediaTime)).u32(1U << 16);
    return atom("elst", body);
}

Bytes trackAtom(const MovieTrack& track, std::uint32_t identifier)
{
    const Bytes header = Bytes{}.u32(3).u32(0).u32(0).u32(identifier).u32(0).u32(track.duration).zeros(60);
    const Bytes mediaHeader = Bytes{}.u32(0).u32(0).u32(0).u32(track.timescale).u32(track.duration).u32(0);
    const Bytes handler = Bytes{}.u32(0).text("mhlr").text(track.mediaType).zeros(12).u8(0);
    const Bytes references = tableHead(1).add(atom("url ", Bytes{}.u32(track.referenceFlags)));
    const Bytes information = Bytes{}.add(atom("dinf", atom("dref", references))).add(sampleTable(track));
    const Bytes media =
        Bytes{}.add(atom("mdhd", mediaHeader)).add(atom("hdlr", handler)).add(atom("minf", information));
    Bytes body = atom("tkhd", header);
    if (track.editList.size() > 0) body.add(atom("edts", track.editList));
    return atom("trak", body.add(atom("mdia", media)).add(track.afterMedia));
}

Bytes movieHeader(std::uint32_t timescale, std::uint32_t duration)
{
    return atom("mvhd", Bytes{}.u32(0).u32(0).u32(0).u32(timescale).u32(duration).zeros(80));
}

Bytes movieAtom(const Movie& movie)
{
    Bytes body = movieHeader(movie.timescale, movie.duration);
    std::uint32_t identifier = 0;
    for (const MovieTrack& track : movie.tracks)
        body.add(trackAtom(track, ++identifier));
    return atom("moov", body.add(movie.atTheEnd));
}

Bytes movieFileStart(std::uint32_t frames)
{
    return Bytes{}
        .add(atom("ftyp", Bytes{}.text("qt  ").u32(0).text("qt  ")))
        .add(atom("mdat", Bytes{}.u32(frames).text("more")));
}

Bytes movieFile(const Movie& movie)
{
    return movieFileStart(movie.frames).add(movieAtom(movie));
}

} // namespace zanfcp::test
