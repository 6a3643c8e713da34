// Essence out of MXF files: throughput beside a plain read of the same bytes and beside ffmpeg, from files and pushed;
// what opening and the first seek cost in a long file; peak memory. Everything runs in turn in each round; medians are
// shown. The files are made with ffmpeg, some gigabytes in the folder for temporary files, and lie in the page cache.

#include "bench/Measure.h"
#include "mxf/mxfDemux.h"
#include "mxf/mxfDemuxStream.h"
#include "tests/support/TempFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace bench;

constexpr int kRounds = 5;
constexpr std::size_t kBlock = std::size_t{1} << 20;
constexpr std::size_t kSlice = std::size_t{256} << 10; ///< that is pushed at a time, as by the command

void shell(const std::string& line)
{
    if (std::system((line + " </dev/null").c_str()) != 0) fail("failed: " + line);
}

/// Counts bytes, and touches none.
struct Counter final : SMediaStream {
    int TakeSample(const mxf_sample& sample) override
    {
        bytes += sample.size;
        return 0;
    }
    std::uint64_t bytes = 0;
};

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

/// What opening cost until now, as seen by callbacks.
struct Reads {
    std::uint64_t bytes = 0;
    std::uint64_t calls = 0;
};

external_io countingIo(Reads& reads)
{
    external_io io{};
    io.open = [](void*, const char* path, void** handle) {
        *handle = std::fopen(path, "rb");
        if (*handle != nullptr) std::setvbuf(static_cast<FILE*>(*handle), nullptr, _IONBF, 0);
        return *handle == nullptr ? -1 : 0;
    };
    io.seek = [](void*, void* handle, std::int64_t position) {
        return std::fseek(static_cast<FILE*>(handle), position < 0 ? 0 : position, position < 0 ? SEEK_END : SEEK_SET);
    };
    io.read = [](void* context, void* handle, void* buffer, std::size_t count) {
        const std::size_t got = std::fread(buffer, 1, count, static_cast<FILE*>(handle));
        static_cast<Reads*>(context)->bytes += got;
        static_cast<Reads*>(context)->calls += 1;
        return static_cast<std::int32_t>(got);
    };
    io.close = [](void*, void** handle) { return std::fclose(static_cast<FILE*>(*handle)); };
    io.get_size = [](void*, void* handle) {
        struct stat info {};
        return ::fstat(fileno(static_cast<FILE*>(handle)), &info) == 0 ? std::int64_t{info.st_size} : std::int64_t{-1};
    };
    io.context = &reads;
    return io;
}

/// An open file with a receiver at every stream of its first container.
class Demuxer {
public:
    explicit Demuxer(const std::string& path, const external_io* io = nullptr)
    {
        mxf_demuxer_config config{};
        config.lazy_index_loading = 1;
        if (io != nullptr) {
            config.use_external_io = 1;
            config.io = *io;
        }
        mxf_file_info info{};
        if (mxfDemuxOpen(handle_, path.c_str(), &config, nullptr) != 0 || mxfDemuxGetFileInfo(handle_, &info) != 0)
            fail("could not open " + path);
        counters_.resize(info.stream_count);
    }
    ~Demuxer() { mxfDemuxFree(handle_); }
    Demuxer(const Demuxer&) = delete;
    Demuxer& operator=(const Demuxer&) = delete;

    void start()
    {
        if (mxfDemuxCreateParser(handle_, 0) != 0) fail("no parser");
        for (std::size_t stream = 0; stream < counters_.size(); ++stream)
            if (mxfDemuxAddStream(handle_, 0, static_cast<int>(stream), &counters_[stream]) != 0) fail("no stream");
    }
    std::uint64_t deliver()
    {
        while (mxfDemuxPush(handle_, 0) == 0) {
        }
        std::uint64_t bytes = 0;
        for (const Counter& counter : counters_)
            bytes += counter.bytes;
        return bytes;
    }
    void seek(std::int64_t unit)
    {
        mxf_dmuxer_seek place{};
        place.position = unit;
        if (mxfDemuxSeek(handle_, 0, &place) != 0 || mxfDemuxPush(handle_, 0) != 0) fail("could not seek");
    }

private:
    TamrelMxf::CMxfDemuxer* handle_ = mxfDemuxNew();
    std::vector<Counter> counters_;
};

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

struct Way {
    const char* name;
    std::function<void()> work;
    std::vector<double> times = {};
};

void throughput(const char* title, const std::string& path, bool canBePushed)
{
    const auto size = static_cast<double>(std::filesystem::file_size(path));
    std::uint64_t essence = 0;
    std::vector<Way> ways;
    ways.push_back({"plain read", [&] { readWhole(path, kBlock, [](unsigned char*, int) {}); }});
    ways.push_back({"demuxed in process", [&] {
                        Demuxer demuxer{path};
                        demuxer.start();
                        essence = demuxer.deliver();
                    }});
    if (canBePushed)
        ways.push_back({"pushed in process", [&] {
                            if (push(path) != essence) fail("the pushed file delivered other bytes");
                        }});
    ways.push_back({"zanfcp mxf extract, pictures", [&] {
                        runProgram({ZANFCP_PROGRAM, "mxf", "extract", "-q", path, "--stream", "0", "-o", "/dev/null"});
                    }});
    if (canBePushed)
        ways.push_back(
            {"zanfcp mxf stream, pictures", [&] {
                 runProgram({ZANFCP_PROGRAM, "mxf", "stream", "-q", path, "--stream", "0", "-o", "/dev/null"});
             }});
    ways.push_back({"ffmpeg -c copy, all", [&] {
                        runProgram({"ffmpeg", "-v", "error", "-i", path, "-map", "0", "-c", "copy", "-f", "null", "-"});
                    }});
    ways.push_back(
        {"ffmpeg -c copy, pictures", [&] {
             runProgram({"ffmpeg", "-v", "error", "-i", path, "-map", "0:0", "-c", "copy", "-f", "null", "-"});
         }});
    for (int round = 0; round <= kRounds; ++round)
        for (Way& way : ways) {
            const double time = seconds(way.work);
            if (round > 0) way.times.push_back(time);
        }
    std::printf("\n%s, %.2f GB, %.2f GB of it essence\n%-30s %8s %8s %14s\n", title, size / 1e9,
                static_cast<double>(essence) / 1e9, "", "s", "GB/s", "of plain read");
    const double plain = median(ways.front().times);
    for (const Way& way : ways) {
        const double time = median(way.times);
        std::printf("%-30s %8.3f %8.2f %14.2f\n", way.name, time, size / time / 1e9, plain / time);
    }
}

void longFile(const std::string& path, std::int64_t units)
{
    const auto size = static_cast<double>(std::filesystem::file_size(path));
    Reads reads;
    const external_io io = countingIo(reads);
    std::printf("\na file of %lld edit units, %.2f GB\n%-30s %10s %12s %8s\n", static_cast<long long>(units),
                size / 1e9, "", "ms", "bytes read", "reads");
    const auto report = [&reads](const char* name, const std::function<void()>& work) {
        reads = {};
        const double time = seconds(work);
        std::printf("%-30s %10.2f %12llu %8llu\n", name, time * 1e3, static_cast<unsigned long long>(reads.bytes),
                    static_cast<unsigned long long>(reads.calls));
    };
    std::unique_ptr<Demuxer> demuxer;
    report("open", [&] { demuxer = std::make_unique<Demuxer>(path, &io); });
    report("make the parser", [&] { demuxer->start(); });
    report("first seek, one edit unit", [&] { demuxer->seek(units - 1000); });
    report("second seek, one edit unit", [&] { demuxer->seek(units / 3); });
}

void memory(const std::vector<std::pair<const char*, std::string>>& files)
{
    std::printf("\n%-30s %12s %12s\n", "peak memory, MB", "extract", "stream");
    for (const auto& [name, path] : files)
        std::printf("%-30s %12.1f %12.1f\n", name,
                    runProgram({ZANFCP_PROGRAM, "mxf", "extract", "-q", path, "--stream", "0", "-o", "/dev/null"})
                        .peakMegabytes,
                    runProgram({ZANFCP_PROGRAM, "mxf", "stream", "-q", path, "--stream", "0", "-o", "/dev/null"})
                        .peakMegabytes);
}

} // namespace

int main()
{
    const zanfcp::test::TempFolder folder;
    const std::string quiet = "ffmpeg -v fatal -y ";
    const std::string loop = quiet + "-stream_loop -1 -i ";
    const auto file = [&folder](const char* name) { return folder.file(name); };

    shell(quiet +
          "-f lavfi -i testsrc2=s=1920x1080:r=25,noise=alls=30 -f lavfi -i sine=sample_rate=48000 -f lavfi -i "
          "sine=sample_rate=48000 -map 0 -map 1 -map 2 -t 2 -c:v mpeg2video -b:v 50M -maxrate 50M -bufsize 18M "
          "-bf 2 -g 12 -c:a pcm_s24le " +
          file("short.mxf"));
    shell(loop + file("short.mxf") + " -map 0 -c copy -t 310 " + file("interleaved.mxf"));
    shell(quiet + "-f lavfi -i testsrc2=s=1920x1080:r=25,noise=alls=30 -t 1 -c:v dnxhd -b:v 120M -pix_fmt yuv422p " +
          file("vc3.mxf"));
    shell(loop + file("vc3.mxf") + " -c copy -t 132 -f mxf_opatom " + file("clip.mxf"));
    constexpr std::int64_t kUnits = 500'000;
    shell(quiet + "-f lavfi -i testsrc2=s=32x32:r=25 -t 4 -c:v mpeg2video -bf 0 -g 5 -b:v 100k " + file("tiny.mov"));
    shell(loop + file("tiny.mov") + " -c copy -frames:v " + std::to_string(kUnits) + " " + file("long.mxf"));
    shell(quiet + "-i " + file("long.mxf") + " -c copy -frames:v 500 " + file("part.mxf"));

    // First, while this process is small: a child's peak counts what its parent held when it was started.
    memory({{"2 s, interleaved", file("short.mxf")},
            {"310 s, interleaved", file("interleaved.mxf")},
            {"500 edit units", file("part.mxf")},
            {"500,000 edit units", file("long.mxf")}});
    throughput("interleaved, long-GOP MPEG-2 and two sound tracks", file("interleaved.mxf"), true);
    throughput("clip-wrapped, VC-3", file("clip.mxf"), false);
    longFile(file("long.mxf"), kUnits);
}
