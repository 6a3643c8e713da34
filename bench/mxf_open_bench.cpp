// From a path to all facts of an MXF file, beside what libavformat and libmediainfo need to open the same file. Each
// peer and this library run in turn, on files that the system has at hand; medians are shown, the first round left out.
// The second table counts what is read: only the header partition, the footer and the random index pack, however long
// the file is.

#include "bench/Measure.h"
#include "mxf/io/BufferedFileSource.h"
#include "mxf/mxfDemux.h"
#include "tests/support/TempFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

extern "C" {
#include <libavformat/avformat.h>
}
#include <MediaInfo/MediaInfo.h>

namespace {

using namespace bench;

using zanfcp::test::TempFolder;

void shell(const std::string& command)
{
    if (std::system(command.c_str()) != 0) fail(command);
}

/// A camera's second: 50 Mbit/s at 1080i50 and eight sounds.
void writeSecond(const std::string& path)
{
    std::string inputs = "-f lavfi -i testsrc2=s=1920x1080:r=25,noise=alls=40:allf=t";
    std::string maps = " -map 0:v";
    for (int i = 1; i <= 8; ++i) {
        inputs += " -f lavfi -i sine=r=48000";
        maps += " -map " + std::to_string(i);
    }
    shell("ffmpeg -v error -nostdin -y " + inputs + maps +
          " -t 1 -c:v mpeg2video -pix_fmt yuv422p -profile:v 0 -level:v 2 -b:v 50M -minrate 50M -maxrate 50M -bufsize "
          "17825792 -flags +ildct+ilme -top 1 -c:a pcm_s24le -timecode 10:11:12:13 " +
          path);
}

/// The same second over and over, real partitions and index tables all the way.
void writeLong(const std::string& second, const std::string& path, std::uint64_t bytes)
{
    const std::uint64_t loops = bytes / std::filesystem::file_size(second);
    shell("ffmpeg -v fatal -nostdin -y -stream_loop " + std::to_string(loops) + " -i " + second +
          " -map 0:v -map 0:a -c copy -timecode 10:11:12:13 " + path);
}

/// A file that counts what is read of it.
class CountingSource final : public CBufferedFileSource {
public:
    std::int64_t Read(void* buffer, std::size_t count) override
    {
        const std::int64_t got = CBufferedFileSource::Read(buffer, count);
        ++reads;
        bytes += got;
        return got;
    }
    int reads = 0;
    std::int64_t bytes = 0;
};

/// Opens and asks everything there is to ask. \return the number of streams
std::uint32_t readAll(const std::string& path, const mxf_demuxer_config& config)
{
    TamrelMxf::CMxfDemuxer* const demuxer = mxfDemuxNew();
    if (mxfDemuxOpen(demuxer, path.c_str(), &config, nullptr) != 0) fail("could not open " + path);
    mxf_file_info info{};
    if (mxfDemuxGetFileInfo(demuxer, &info) != 0) fail("no file information");
    if (info.complete != 1 || info.duration < 25 || info.start_timecode != 916'813) fail("wrong facts of " + path);
    for (std::uint32_t i = 0; i < info.stream_count; ++i) {
        mxf_stream_format format{};
        if (mxfDemuxGetStreamFormat(demuxer, static_cast<int>(i), &format) != 0) fail("no stream format");
    }
    for (std::uint32_t i = 0; i < info.identification_count; ++i) {
        mxf_identification identification{};
        if (mxfDemuxGetIdentification(demuxer, static_cast<int>(i), &identification) != 0) fail("no identification");
    }
    mxf_top_pack pack{};
    if (mxfDemuxGetTopPack(demuxer, 0, &pack, true) != 0 || mxfDemuxGetTopPack(demuxer, 0, &pack, false) != 0)
        fail("no packages");
    std::uint32_t frameworks = 0;
    if (mxfDemuxGetDmFramework(demuxer, 0, nullptr, &frameworks, nullptr) != 0) fail("no frameworks");
    mxfDemuxFree(demuxer);
    return info.stream_count;
}

struct Counts {
    std::int64_t bytes = 0, reads = 0, theirBytes = 0;
};

struct Pair {
    double ours = 0, theirs = 0; ///< medians, microseconds
};

/// Runs both in turn, each as often first as second. What is left of the one is what the other starts with.
Pair compare(int rounds, const std::function<double()>& us, const std::function<double()>& them)
{
    std::vector<double> ours, theirs;
    for (int round = 0; round <= rounds; ++round) {
        const bool isFirst = round % 2 == 0;
        const double one = isFirst ? us() : them();
        const double two = isFirst ? them() : us();
        if (round == 0) continue;
        ours.push_back(isFirst ? one : two);
        theirs.push_back(isFirst ? two : one);
    }
    return {median(ours), median(theirs)};
}

Counts compare(const char* name, const std::string& path, int rounds)
{
    Counts counts;
    std::uint32_t streams = 0;
    mxf_demuxer_config config{};
    config.lazy_index_loading = 1; // as whoever asks for facts only
    const auto us = [&] { return 1e6 * seconds([&] { streams = readAll(path, config); }); };
    const Pair first = compare(10 * rounds, us, [&] {
        AVFormatContext* context = nullptr;
        const double time = 1e6 * seconds([&] {
                                if (avformat_open_input(&context, path.c_str(), nullptr, nullptr) < 0)
                                    fail("libavformat: " + path);
                            });
        if (context->nb_streams != streams) fail("libavformat sees other streams in " + path);
        counts.theirBytes = context->pb->bytes_read;
        avformat_close_input(&context);
        return time;
    });
    const Pair second = compare(rounds, us, [&] {
        MediaInfoLib::MediaInfo info;
        const double time = 1e6 * seconds([&] {
                                if (info.Open(std::wstring(path.begin(), path.end())) == 0)
                                    fail("libmediainfo: " + path);
                            });
        if (info.Count_Get(MediaInfoLib::Stream_Audio) + 1 != streams) fail("libmediainfo sees others in " + path);
        return time;
    });
    std::printf("%-14s %12.1fx %10.1f %12.1f %12.1fx %10.1f %12.1f\n", name, first.theirs / first.ours, first.ours,
                first.theirs, second.theirs / second.ours, second.ours, second.theirs);

    CountingSource source;
    config.use_external_io = 1;
    config.io.context = static_cast<CMediaSource*>(&source);
    (void)readAll(path, config);
    counts.bytes = source.bytes;
    counts.reads = source.reads;
    return counts;
}

void print(const char* name, const std::string& path, const Counts& counts)
{
    std::printf("%-14s %16llu %10lld %6lld %16lld\n", name,
                static_cast<unsigned long long>(std::filesystem::file_size(path)), static_cast<long long>(counts.bytes),
                static_cast<long long>(counts.reads), static_cast<long long>(counts.theirBytes));
}

} // namespace

int main()
{
    constexpr std::uint64_t kLongBytes = std::uint64_t{2} << 30;
    av_log_set_level(AV_LOG_ERROR);
    static const TempFolder folder; // static: removed on every way out
    if (std::filesystem::space(folder.path()).available < kLongBytes + (kLongBytes >> 3))
        fail("the long file needs 2.3 GB in " + folder.path().string());
    const std::string second = folder.file("second.mxf");
    const std::string hours = folder.file("long.mxf");
    writeSecond(second);
    writeLong(second, hours, kLongBytes);

    std::printf("%-14s %13s %10s %12s %13s %10s %12s\n", "microseconds", "x libavformat", "zanfcp", "libavformat",
                "x libmediainfo", "zanfcp", "libmediainfo");
    const Counts ofSecond = compare("one second", second, 100);
    const Counts ofLong = compare("two gigabytes", hours, 30);
    std::printf("\n%-14s %16s %10s %6s %16s\n", "", "file bytes", "read", "reads", "by libavformat");
    print("one second", second, ofSecond);
    print("two gigabytes", hours, ofLong);
    return 0;
}
