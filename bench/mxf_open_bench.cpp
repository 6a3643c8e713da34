// From a path to all facts of an MXF file, beside what libavformat and libmediainfo need to open the same file, on
// files that the system has at hand. What is read is counted: only the header partition, the footer and the random
// index pack, however long the file is.

#include "bench/Measure.h"
#include "bench/MxfPlaces.h"
#include "mxf/io/BufferedFileSource.h"
#include "mxf/mxfDemux.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

extern "C" {
#include <libavformat/avformat.h>
}
#include <MediaInfo/MediaInfo.h>

namespace {

using namespace bench;

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
          quoted(path));
}

/// The same second over and over, real partitions and index tables all the way.
void writeLong(const std::string& second, const std::string& path, std::uint64_t bytes)
{
    const std::uint64_t loops = bytes / std::filesystem::file_size(second);
    shell("ffmpeg -v fatal -nostdin -y -stream_loop " + std::to_string(loops) + " -i " + quoted(second) +
          " -map 0:v -map 0:a -c copy -timecode 10:11:12:13 " + quoted(path));
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

/// What is read to open a file, and what there is to read: its two ends, in the blocks that files are read in.
void printReads(const char* name, const std::string& path, mxf_demuxer_config config, std::int64_t theirs)
{
    CountingSource source;
    config.use_external_io = 1;
    config.io.context = static_cast<CMediaSource*>(&source);
    (void)readAll(path, config);
    constexpr std::uint64_t kBlock = 8192;
    const MxfPlaces places = placesOf(path);
    const auto inBlocks = [](std::uint64_t bytes) { return (bytes + kBlock - 1) / kBlock * kBlock; };
    const std::uint64_t needed = inBlocks(places.headerBytes) + inBlocks(places.footerBytes);
    std::printf("%-14s %14llu %14llu %14llu %12lld %7d %14lld\n", name,
                static_cast<unsigned long long>(std::filesystem::file_size(path)),
                static_cast<unsigned long long>(places.headerBytes),
                static_cast<unsigned long long>(places.footerBytes), static_cast<long long>(source.bytes), source.reads,
                static_cast<long long>(theirs));
    atMost(std::string("opening MXF, ") + name + ", bytes read, of both ends in blocks of 8 KiB", 1,
           static_cast<double>(source.bytes) / static_cast<double>(needed));
}

/// \return the bytes that libavformat reads
std::int64_t compare(const char* name, const std::string& path, const mxf_demuxer_config& config, int rounds)
{
    std::uint32_t streams = 0;
    std::int64_t theirBytes = 0;
    const auto us = [&] { return 1e6 * seconds([&] { streams = readAll(path, config); }); };
    std::vector<Contestant> first{{"zanfcp", us},
                                  {"libavformat", [&] {
                                       AVFormatContext* context = nullptr;
                                       const double time = seconds([&] {
                                           if (avformat_open_input(&context, path.c_str(), nullptr, nullptr) < 0)
                                               fail("libavformat: " + path);
                                       });
                                       if (context->nb_streams != streams)
                                           fail("libavformat sees other streams in " + path);
                                       theirBytes = context->pb->bytes_read;
                                       avformat_close_input(&context);
                                       return 1e6 * time;
                                   }}};
    std::vector<Contestant> second{{"zanfcp", us}, {"libmediainfo", [&] {
                                                        MediaInfoLib::MediaInfo info;
                                                        const double time = seconds([&] {
                                                            if (info.Open(std::wstring(path.begin(), path.end())) == 0)
                                                                fail("libmediainfo: " + path);
                                                        });
                                                        if (info.Count_Get(MediaInfoLib::Stream_Audio) + 1 != streams)
                                                            fail("libmediainfo sees others in " + path);
                                                        return 1e6 * time;
                                                    }}};
    race(first, 10 * rounds);
    race(second, rounds);
    const double faster = first[1].median() / first[0].median(), fasterYet = second[1].median() / second[0].median();
    std::printf("%-14s %14.1f %10.1f %12.1f %15.1f %10.1f %13.1f\n", name, faster, first[0].median(), first[1].median(),
                fasterYet, second[0].median(), second[1].median());
    atLeast(std::string("opening MXF, ") + name + ", times as fast as avformat_open_input", 3, faster);
    atLeast(std::string("opening MXF, ") + name + ", times as fast as libmediainfo", 50, fasterYet);
    return theirBytes;
}

} // namespace

int main()
{
    constexpr std::uint64_t kLongBytes = std::uint64_t{2} << 30;
    av_log_set_level(AV_LOG_ERROR);
    needRoom(2.3);
    const std::string second = scratchFile("second.mxf");
    const std::string hours = scratchFile("long.mxf");
    writeSecond(second);
    writeLong(second, hours, kLongBytes);
    mxf_demuxer_config config{};
    config.lazy_index_loading = 1; // as whoever asks for facts only

    std::printf(
        "From a path to all facts, in process, microseconds, files in the page cache: MPEG-2 of 50 Mbit/s at 1080i50 "
        "with eight\nsounds, one second made by ffmpeg, and the same second over and over. libavformat only "
        "opens, which tells less.\nEach peer in turn with this library; what it leaves in the caches is what "
        "this library starts with.\n\n");
    std::printf("%-14s %14s %10s %12s %15s %10s %13s\n", "", "x libavformat", "zanfcp", "libavformat", "x libmediainfo",
                "zanfcp", "libmediainfo");
    const std::int64_t ofSecond = compare("one second", second, config, 100);
    const std::int64_t ofLong = compare("two gigabytes", hours, config, 30);
    std::printf("\n%-14s %14s %14s %14s %12s %7s %14s\n", "", "file bytes", "header part", "footer + index",
                "bytes read", "reads", "by libavformat");
    printReads("one second", second, config, ofSecond);
    printReads("two gigabytes", hours, config, ofLong);
}
