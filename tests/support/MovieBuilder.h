#pragma once

#include "tests/support/Bytes.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zanfcp::test {

/// One atom: size, four-character type, body.
Bytes atom(std::string_view type, const Bytes& body);
/// The same with a 64-bit size.
Bytes longAtom(std::string_view type, const Bytes& body);
/// An atom whose size says something else than its body.
Bytes lyingAtom(std::string_view type, std::uint32_t size, const Bytes& body);

struct VideoEntry {
    std::string format = "avc1";
    std::uint16_t width = 1920;
    std::uint16_t height = 1080;
    std::string name = "H.264";
    std::string vendor = "appl";
    std::uint32_t temporalQuality = 512;
    std::uint32_t spatialQuality = 1023;
    Bytes extensions = {};
};
Bytes videoEntry(const VideoEntry& entry);
/// A 'clap' atom with whole numbers over 1.
Bytes cleanAperture(std::uint32_t width, std::uint32_t height);

struct SoundEntry {
    std::string format = "sowt";
    std::uint16_t version = 0; ///< 0 or 1; version 2 has its own function
    std::uint16_t channels = 2;
    std::uint16_t sampleSize = 16;
    std::uint32_t sampleRate = 48000U << 16; ///< 16.16 fixed point
    Bytes extensions = {};
};
Bytes soundEntry(const SoundEntry& entry);
/// A sound description of version 2.
Bytes soundEntry2(std::string_view format, double sampleRate, std::uint32_t bits);

struct TimecodeEntry {
    std::string format = "tmcd";
    std::uint32_t flags = 0;
    std::uint32_t timescale = 25000;
    std::uint32_t frameDuration = 1000;
    std::uint8_t frameQuanta = 25;
    Bytes extensions = {};
};
Bytes timecodeEntry(const TimecodeEntry& entry);
/// A 'name' atom in international text form.
Bytes sourceReference(std::string_view name, std::uint16_t language = 0);

struct MovieTrack {
    std::string mediaType = "vide";
    std::uint32_t timescale = 25000;
    std::uint32_t duration = 100000;
    std::vector<Bytes> descriptions = {videoEntry({})};
    std::vector<std::pair<std::uint32_t, std::uint32_t>> times = {{100, 1000}}; ///< count, duration
    std::uint32_t commonSize = 0;                                               ///< bytes; 0: `sizes`
    std::vector<std::uint32_t> sizes = std::vector<std::uint32_t>(100, 40);
    std::uint32_t sizeBits = 32;   ///< of each of `sizes`; 4, 8 or 16: written as 'stz2'
    std::uint32_t sampleCount = 0; ///< samples of the common size; 0: as many as `sizes`
    std::vector<std::array<std::uint32_t, 3>> chunks = {{1, 100, 1}};
    std::vector<std::uint64_t> offsets = {28}; ///< of the chunks
    bool hasLongOffsets = false;               ///< written as 'co64'
    Bytes otherTables = {};                    ///< atoms behind the times
    Bytes editList = {};                       ///< an 'elst' atom
    Bytes afterMedia = {};                     ///< atoms at the end of the track
    std::uint32_t referenceFlags = 1;          ///< 1: data lies in the same file
};
/// A sound track of four seconds at 48 kHz.
MovieTrack soundTrack(const Bytes& description = soundEntry({}));
/// A timecode track with one sample of four bytes at offset 28.
MovieTrack timecodeTrack(const TimecodeEntry& entry = {});

struct Movie {
    std::uint32_t timescale = 600;
    std::uint32_t duration = 2400;
    std::vector<MovieTrack> tracks = {MovieTrack{}};
    Bytes atTheEnd = {};      ///< atoms behind the tracks
    std::uint32_t frames = 0; ///< the 32-bit timecode sample in the media data
};
Bytes editList(const std::vector<std::pair<std::uint32_t, std::int32_t>>& edits); ///< duration, media time
Bytes trackAtom(const MovieTrack& track, std::uint32_t identifier);
Bytes movieHeader(std::uint32_t timescale, std::uint32_t duration);
/// The 'moov' atom.
Bytes movieAtom(const Movie& movie);
/// 'ftyp', 'mdat' with the timecode sample at offset 28 and four bytes behind it, 'moov'.
Bytes movieFile(const Movie& movie);
/// What lies before the 'moov' in movieFile.
Bytes movieFileStart(std::uint32_t frames);

} // namespace zanfcp::test
