// From a path to all properties of a movie, start timecode and reel included, beside what libavformat needs to open the
// same file, on files that the system has at hand. The long movies have tables as long as real ones; their media data
// is a hole in the file.

#include "bench/Measure.h"
#include "media/MovieReading.h"
#include "tests/support/MovieBuilder.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

extern "C" {
#include <libavformat/avformat.h>
}

namespace {

using namespace bench;

using namespace zanfcp;
using namespace zanfcp::test;

constexpr std::uint32_t kSeconds = 3 * 3600;
constexpr std::uint32_t kFramesPerSecond = 25;
constexpr std::uint32_t kFrames = kSeconds * kFramesPerSecond;
constexpr int kSoundTracks = 7;

enum class Sound { pcm, aac };

/// A camera's three hours: pictures with key frames and reordering, seven sound tracks, timecode; a chunk a second.
void writeLongMovie(const std::string& path, Sound sound)
{
    constexpr std::uint32_t kFrameBytes = 30000;
    const std::uint32_t soundSamples = sound == Sound::pcm ? 48000 : 47; // a second
    const std::uint32_t soundBytes = sound == Sound::pcm ? 3 : 340;      // a sample

    MovieTrack video;
    video.timescale = kFramesPerSecond * 1000;
    video.duration = kFrames * 1000;
    video.times = {{kFrames, 1000}};
    video.sizes.resize(kFrames);
    for (std::uint32_t i = 0; i < kFrames; ++i)
        video.sizes[i] = kFrameBytes - i % 1000;
    video.chunks = {{1, kFramesPerSecond, 1}};
    Bytes keyFrames = Bytes{}.u32(0).u32(kFrames / 12);
    Bytes reordering = Bytes{}.u32(0).u32(kFrames);
    for (std::uint32_t i = 0; i < kFrames; ++i) {
        if (i % 12 == 0) keyFrames.u32(i + 1);
        reordering.u32(1).u32(i % 3 * 1000);
    }
    video.otherTables = atom("stss", keyFrames).add(atom("ctts", reordering));

    std::vector<MovieTrack> tracks{video};
    for (int i = 0; i < kSoundTracks; ++i) {
        MovieTrack track =
            soundTrack(soundEntry(sound == Sound::pcm ? SoundEntry{.format = "in24", .version = 1, .channels = 1}
                                                      : SoundEntry{.format = "mp4a", .channels = 1}));
        track.duration = 48000 * kSeconds;
        track.times = {{soundSamples * kSeconds, sound == Sound::pcm ? 1U : 1024U}};
        track.commonSize = sound == Sound::pcm ? soundBytes : 0;
        track.sampleCount = track.commonSize > 0 ? soundSamples * kSeconds : 0;
        if (track.commonSize == 0) track.sizes.assign(std::size_t{soundSamples} * kSeconds, soundBytes);
        track.chunks = {{1, soundSamples, 1}};
        tracks.push_back(std::move(track));
    }
    tracks.push_back(timecodeTrack({.extensions = sourceReference("A001")}));

    std::uint64_t at = 16 + 16 + 4; // file type, media data header, timecode sample
    for (MovieTrack& track : tracks) {
        track.hasLongOffsets = true;
        track.offsets.clear();
    }
    tracks.back().offsets = {32};
    for (std::uint32_t second = 0; second < kSeconds; ++second)
        for (std::size_t i = 0; i + 1 < tracks.size(); ++i) {
            tracks[i].offsets.push_back(at);
            at += i == 0 ? kFramesPerSecond * kFrameBytes : std::uint64_t{soundSamples} * soundBytes;
        }
    const Bytes moov = movieAtom({.timescale = 600, .duration = 600 * kSeconds, .tracks = std::move(tracks)});
    std::ofstream out{path, std::ios::binary};
    const auto put = [&out](const Bytes& bytes) {
        out.write(bytes.str().data(), static_cast<std::streamsize>(bytes.size()));
    };
    put(atom("ftyp", Bytes{}.text("qt  ").u32(0)));
    put(Bytes{}.u32(1).text("mdat").u64(at - 16).u32(90000));
    out.seekp(static_cast<std::streamoff>(at));
    put(moov);
    if (!out.flush()) fail("could not write " + path);
}

void writeShortMovie(const std::string& path)
{
    shell("ffmpeg -v error -nostdin -f lavfi -i testsrc=s=1280x720:r=25 -f lavfi -i sine=r=48000 -t 1 -timecode "
          "01:00:00:00 -metadata:s:v reel_name=A001 -c:v libx264 -pix_fmt yuv420p -c:a pcm_s24le " +
          quoted(path));
}

ByteSource::Counts countReads(const std::string& path)
{
    const auto asset = quicktime::Asset::open(path);
    if (!asset) fail(asset.error().text());
    PELMovieProperties properties;
    PEL_ReadTimecodeTrack(properties, *asset);
    return asset->counts();
}

struct Row {
    const char* name;
    std::string path;
    int rounds;
    double wanted; ///< times as fast as the peer
};

void compare(const Row& row)
{
    const FileURL url = FileURL::fileURLWithPath(row.path);
    std::int64_t theirBytes = 0;
    std::vector<Contestant> contestants{
        {"zanfcp",
         [&] {
             PELMovieProperties properties;
             const double time = seconds([&] {
                 if (PELGetPropertiesOfMovieAtURL(url, properties, {}) != 0) fail("could not inspect " + row.path);
             });
             if (!properties.hasVideo || !properties.hasTimecode || properties.timecode.frames != 90000)
                 fail("wrong properties of " + row.path);
             return 1e6 * time;
         }},
        {"libavformat", [&] {
             AVFormatContext* context = nullptr;
             const double time = seconds([&] {
                 if (avformat_open_input(&context, row.path.c_str(), nullptr, nullptr) < 0)
                     fail("libavformat: " + row.path);
             });
             theirBytes = context->pb->bytes_read;
             avformat_close_input(&context);
             return 1e6 * time;
         }}};
    race(contestants, row.rounds);
    const ByteSource::Counts counts = countReads(row.path);
    const double ours = contestants[0].median(), theirs = contestants[1].median();
    std::printf("%-30s %9.1f %10.1f %12.1f %11llu %6llu %12lld %12llu\n", row.name, theirs / ours, ours, theirs,
                static_cast<unsigned long long>(counts.bytes), static_cast<unsigned long long>(counts.reads),
                static_cast<long long>(theirBytes),
                static_cast<unsigned long long>(std::filesystem::file_size(row.path)));
    atLeast(std::string("inspecting ") + row.name + ", times as fast as avformat_open_input", row.wanted,
            theirs / ours);
    atMost(std::string("inspecting ") + row.name + ", bytes read", 65536, static_cast<double>(counts.bytes));
}

} // namespace

int main()
{
    av_log_set_level(AV_LOG_ERROR);
    needRoom(0.1);
    const std::string second = scratchFile("second.mov");
    const std::string pcm = scratchFile("pcm.mov");
    const std::string aac = scratchFile("aac.mov");
    writeShortMovie(second);
    writeLongMovie(pcm, Sound::pcm);
    writeLongMovie(aac, Sound::aac);
    std::printf(
        "In process, microseconds, files in the page cache: one second of H.264 at 720p25 with sound, timecode and "
        "reel, made\nby ffmpeg; three hours with pictures, seven sounds and timecode: sample tables of true "
        "size around a hole in the file.\n\n");
    std::printf("%-30s %9s %10s %12s %11s %6s %12s %12s\n", "", "times as", "zanfcp", "libavformat", "bytes read",
                "reads", "its bytes", "file bytes");
    compare({"one second", second, 2000, 5});
    compare({"three hours, 9 tracks, PCM", pcm, 25, 500});
    compare({"three hours, 9 tracks, AAC", aac, 15, 500});
}
