// Essence out of MXF files: throughput beside a plain read of the same bytes and beside ffmpeg, from files and pushed;
// what opening and the first seek cost in a long file; peak memory. The files are made with ffmpeg, some gigabytes in
// the scratch folder, and lie in the page cache.

#include "bench/Measure.h"
#include "bench/MxfDemuxer.h"
#include "bench/MxfPlaces.h"
#include "mxf/mxfDemuxStream.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace bench;

constexpr int kRounds = 5;
constexpr std::size_t kBlock = std::size_t{1} << 20;
constexpr std::size_t kSlice = std::size_t{1} << 20; ///< that is pushed at a time, as by the command

/// Calls `take` with all of a file, a block at a time.
void readWhole(const std::string& path, std::size_t blockBytes, const std::function<void(unsigned char*, int)>& take)
{
    std::vector<unsigned char> block(blockBytes);
    const int file = ::open(path.c_str(), O_RDONLY);
    if (file < 0) fail("could not open " + path);
    ssize_t count = 0;
    while ((count = ::read(file, block.data(), block.size())) > 0)
        take(block.data(), static_cast<int>(count));
    ::close(file);
}

struct Pushed {
    TamrelMxf::CMxfStreamDemuxer* handle = mxfDemuxStreamNew();
    std::vector<Counter> counters = std::vector<Counter>(16);
};

std::uint64_t push(const std::string& path)
{
    Pushed pushed;
    mxf_stream_demuxer_config config{};
    config.context = &pushed;
    config.state_callback = [](void* context, std::int32_t event, std::int32_t) {
        auto& self = *static_cast<Pushed*>(context);
        for (int stream = 0; event == mxf_stream_header_parsed && stream < 16; ++stream)
            (void)mxfDemuxStreamAddStream(self.handle, stream, &self.counters[static_cast<std::size_t>(stream)]);
    };
    TamrelMxf::SMemoryStream* stream = nullptr;
    if (mxfDemuxStreamOpen(pushed.handle, &config, nullptr, &stream) != 0) fail("could not push");
    readWhole(path, kSlice, [stream](unsigned char* data, int count) {
        while (stream->CopyData(data, count) == TamrelMxf::SMemoryStream::kNoRoom)
            ::usleep(100);
    });
    (void)mxfDemuxStreamDrain(pushed.handle);
    mxfDemuxStreamFree(pushed.handle);
    std::uint64_t bytes = 0;
    for (const Counter& counter : pushed.counters)
        bytes += counter.bytes;
    return bytes;
}

double timeOfProgram(const std::vector<std::string>& command)
{
    return runProgram(command).seconds;
}

std::vector<std::string> zanfcp(const char* command, const std::string& path)
{
    return {ZANFCP_PROGRAM, "mxf", command, "-q", path, "--stream", "0", "-o", "/dev/null"};
}

std::vector<std::string> ffmpeg(const std::string& path, const char* map)
{
    return {"ffmpeg", "-v", "error", "-i", path, "-map", map, "-c", "copy", "-f", "null", "-"};
}

/// \param small  a file like it that is so short that ffmpeg does nothing but start
void throughput(const char* title, const std::string& path, const std::string& small, bool canBePushed)
{
    const auto size = static_cast<double>(std::filesystem::file_size(path));
    std::uint64_t essence = 0;
    enum Way : std::size_t { plain, all, extract, ffmpegAll, ffmpegPictures, ffmpegStart, pushedAll, stream };
    std::vector<Contestant> ways(pushedAll);
    ways[plain] = {"plain read", [&] { return seconds([&] { readWhole(path, kBlock, [](unsigned char*, int) {}); }); }};
    ways[all] = {"all streams, in process", [&] {
                     return seconds([&] {
                         Demuxer demuxer{path};
                         demuxer.start();
                         essence = demuxer.deliver();
                     });
                 }};
    ways[extract] = {"zanfcp mxf extract, pictures", [&] { return timeOfProgram(zanfcp("extract", path)); }};
    ways[ffmpegAll] = {"ffmpeg -c copy -f null, all", [&] { return timeOfProgram(ffmpeg(path, "0")); }};
    ways[ffmpegPictures] = {"ffmpeg -c copy -f null, pictures", [&] { return timeOfProgram(ffmpeg(path, "0:0")); }};
    ways[ffmpegStart] = {"ffmpeg on two seconds: its start", [&] { return timeOfProgram(ffmpeg(small, "0")); }};
    if (canBePushed) {
        ways.push_back({"all streams pushed, in process", [&] {
                            std::uint64_t bytes = 0;
                            const double time = seconds([&] { bytes = push(path); });
                            if (bytes != essence) fail("the pushed file delivered other bytes");
                            return time;
                        }});
        ways.push_back({"zanfcp mxf stream, pictures", [&] { return timeOfProgram(zanfcp("stream", path)); }});
    }
    race(ways, kRounds);

    std::printf("%s, %.2f GB, %.2f GB of it essence\n\n%-36s %14s %8s %8s\n", title, size / 1e9,
                static_cast<double>(essence) / 1e9, "", "of plain read", "s", "GB/s");
    const auto time = [&ways](Way way) { return ways[way].median(); };
    for (const Contestant& way : ways)
        if (&way == &ways[ffmpegStart])
            std::printf("%-36s %14s %8.3f\n", way.name.c_str(), "", way.median());
        else
            std::printf("%-36s %14.2f %8.3f %8.2f\n", way.name.c_str(), time(plain) / way.median(), way.median(),
                        size / way.median() / 1e9);
    const std::string what = std::string(title).substr(0, std::string(title).find(','));
    atLeast(what + ": all streams in process, of a plain read's speed", 0.7, time(plain) / time(all));
    atLeast(what + ": mxf extract, of a plain read's speed", 0.7, time(plain) / time(extract));
    atLeast(what + ": mxf extract, times as fast as ffmpeg", 1, time(ffmpegPictures) / time(extract));
    if (!canBePushed) return;
    atLeast(what + ": pushed in process, of a plain read's speed", 0.7, time(plain) / time(pushedAll));
    atLeast(what + ": mxf stream, of a plain read's speed", 0.7, time(plain) / time(stream));
    atLeast(what + ": mxf stream, times as fast as ffmpeg", 1, time(ffmpegPictures) / time(stream));
}

/// Sound as a file beside the pictures: both write the same.
void sound(const std::string& path)
{
    const std::string output = scratchFile("sound.wav");
    std::vector<Contestant> ways{
        {"zanfcp mxf extract",
         [&] {
             return timeOfProgram({ZANFCP_PROGRAM, "mxf", "extract", "-q", path, "--stream", "1", "-o", output});
         }},
        {"ffmpeg -c copy", [&] {
             return timeOfProgram({"ffmpeg", "-y", "-v", "error", "-i", path, "-map", "0:1", "-c", "copy", output});
         }}};
    race(ways, kRounds);
    std::printf(
        "One sound of it into a WAV file of %.1f MB: zanfcp mxf extract %.3f s, flushed to the disk; ffmpeg %.3f s, "
        "%.1f times\n\n",
        static_cast<double>(std::filesystem::file_size(output)) / 1e6, ways[0].median(), ways[1].median(),
        ways[1].median() / ways[0].median());
    std::filesystem::remove(output);
    atLeast("interleaved: a sound into a WAV file, times as fast as ffmpeg", 1, ways[1].median() / ways[0].median());
}

struct Peaks {
    double extract, stream; ///< megabytes
};

Peaks peaksOf(const char* name, const std::string& path)
{
    const auto peak = [&path](const char* command) {
        std::vector<double> peaks;
        for (int round = 0; round < 3; ++round)
            peaks.push_back(runProgram(zanfcp(command, path)).peakMegabytes);
        return median(peaks);
    };
    const Peaks peaks{peak("extract"), peak("stream")};
    std::printf("%-36s %14.1f %14.1f\n", name, peaks.extract, peaks.stream);
    return peaks;
}

} // namespace

int main()
{
    needRoom(6);
    const std::string quiet = "ffmpeg -v fatal -y ";
    const std::string loop = quiet + "-stream_loop -1 -i ";
    const auto file = [](const char* name) { return scratchFile(name); };

    shell(quiet +
          "-f lavfi -i testsrc2=s=1920x1080:r=25,noise=alls=30 -f lavfi -i sine=sample_rate=48000 -f lavfi -i "
          "sine=sample_rate=48000 -map 0 -map 1 -map 2 -t 2 -c:v mpeg2video -b:v 50M -maxrate 50M -bufsize 18M "
          "-bf 2 -g 12 -c:a pcm_s24le " +
          quoted(file("short.mxf")));
    shell(loop + quoted(file("short.mxf")) + " -map 0 -c copy -t 310 " + quoted(file("interleaved.mxf")));
    shell(quiet + "-f lavfi -i testsrc2=s=1920x1080:r=25,noise=alls=30 -t 2 -c:v dnxhd -b:v 120M -pix_fmt yuv422p " +
          quoted(file("vc3.mxf")));
    shell(loop + quoted(file("vc3.mxf")) + " -c copy -t 132 -f mxf_opatom " + quoted(file("clip.mxf")));
    makeManyUnits(file("long.mxf"));
    shell(quiet + "-i " + quoted(file("long.mxf")) + " -c copy -frames:v 500 " + quoted(file("part.mxf")));

    std::printf("Files in the page cache, made by ffmpeg. Programs are whole processes that write to /dev/null.\n\n"
                "%-36s %14s %14s\n",
                "peak memory, MB", "mxf extract", "mxf stream");
    const Peaks ofSeconds = peaksOf("2 s, interleaved", file("short.mxf"));
    const Peaks ofMinutes = peaksOf("310 s, interleaved", file("interleaved.mxf"));
    const Peaks ofPart = peaksOf("500 edit units", file("part.mxf"));
    const Peaks ofLong = peaksOf("500,000 edit units", file("long.mxf"));
    std::printf("\n");
    throughput("interleaved, long-GOP MPEG-2 and two sounds", file("interleaved.mxf"), file("short.mxf"), true);
    sound(file("interleaved.mxf"));
    throughput("clip-wrapped, VC-3", file("clip.mxf"), file("vc3.mxf"), false);
    const double index = static_cast<double>(placesOf(file("long.mxf")).indexBytes()) / 1e6;
    atMost("mxf extract, memory that 308 s more of interleaved essence take, MB", 1,
           ofMinutes.extract - ofSeconds.extract);
    atMost("mxf stream, memory that 308 s more of interleaved essence take, MB", 1,
           ofMinutes.stream - ofSeconds.stream);
    atMost("mxf extract, memory that 499,500 more edit units take, of their index tables", 2,
           (ofLong.extract - ofPart.extract) / index);
    atMost("mxf stream, memory that 499,500 more edit units take, of their index tables", 2,
           (ofLong.stream - ofPart.stream) / index);
}
