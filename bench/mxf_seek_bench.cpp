// What opening and the first seek cost in a file with long index tables, beside libavformat, which reads them when it
// opens.

#include "bench/Measure.h"
#include "bench/MxfDemuxer.h"
#include "bench/MxfPlaces.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

extern "C" {
#include <libavformat/avformat.h>
}

namespace {

using namespace bench;

constexpr int kRounds = 9;

/// What was read until now, as seen by callbacks.
struct Reads {
    std::uint64_t bytes = 0;
    std::uint64_t calls = 0;
    std::vector<Range> ranges = {};
};

inline external_io countingIo(Reads& counted)
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
        const auto place = static_cast<std::uint64_t>(std::ftell(static_cast<FILE*>(handle)));
        const std::size_t got = std::fread(buffer, 1, count, static_cast<FILE*>(handle));
        auto& reads = *static_cast<Reads*>(context);
        reads.bytes += got;
        reads.calls += 1;
        reads.ranges.push_back({place, got});
        return static_cast<std::int32_t>(got);
    };
    io.close = [](void*, void** handle) { return std::fclose(static_cast<FILE*>(*handle)); };
    io.get_size = [](void*, void* handle) {
        struct stat info {};
        return ::fstat(fileno(static_cast<FILE*>(handle)), &info) == 0 ? std::int64_t{info.st_size} : std::int64_t{-1};
    };
    io.context = &counted;
    return io;
}

/// Bytes of `tables` among what was read, as often as they were read.
std::uint64_t bytesOf(const std::vector<Range>& tables, const std::vector<Range>& reads)
{
    std::uint64_t sum = 0;
    for (const Range& read : reads) {
        auto table =
            std::upper_bound(tables.begin(), tables.end(), read.first,
                             [](std::uint64_t place, const Range& one) { return place < one.first + one.size; });
        for (; table != tables.end() && table->first < read.first + read.size; ++table)
            sum += std::min(read.first + read.size, table->first + table->size) - std::max(read.first, table->first);
    }
    return sum;
}

struct Step {
    const char* name;
    std::vector<double> ours = {}, theirs = {}; ///< milliseconds
    Reads reads = {};
    std::int64_t theirBytes = 0;
};

/// The steps of this library with a file of many edit units.
void walk(const std::string& path, std::int64_t units, std::vector<Step>& steps)
{
    Reads reads;
    const external_io io = countingIo(reads);
    std::unique_ptr<Demuxer> demuxer;
    const std::function<void()> works[] = {[&] { demuxer = std::make_unique<Demuxer>(path, &io); },
                                           [&] { demuxer->start(); }, [&] { demuxer->seek(units - 1000); },
                                           [&] { demuxer->seek(units / 3); }};
    for (std::size_t i = 0; i < steps.size(); ++i) {
        reads = {};
        steps[i].ours.push_back(1e3 * seconds(works[i]));
        steps[i].reads = reads;
    }
}

/// The same steps with libavformat, which has no parser to make.
void walkLibavformat(const std::string& path, std::int64_t units, std::vector<Step>& steps)
{
    AVFormatContext* context = nullptr;
    AVPacket* packet = av_packet_alloc();
    const auto seek = [&](std::int64_t unit) {
        if (av_seek_frame(context, 0, unit, AVSEEK_FLAG_ANY) < 0 || av_read_frame(context, packet) < 0)
            fail("libavformat: could not seek");
        av_packet_unref(packet);
    };
    const std::function<void()> works[] = {[&] {
                                               if (avformat_open_input(&context, path.c_str(), nullptr, nullptr) < 0)
                                                   fail("libavformat: " + path);
                                           },
                                           [] {}, [&] { seek(units - 1000); }, [&] { seek(units / 3); }};
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const std::int64_t before = context == nullptr ? 0 : context->pb->bytes_read;
        steps[i].theirs.push_back(1e3 * seconds(works[i]));
        steps[i].theirBytes = context->pb->bytes_read - before;
    }
    av_packet_free(&packet);
    avformat_close_input(&context);
}

void longFile(const std::string& path, std::int64_t units)
{
    const MxfPlaces places = placesOf(path);
    const auto index = static_cast<double>(places.indexBytes());
    std::vector<Step> steps{
        {"open"}, {"make the parser"}, {"first seek, one edit unit"}, {"second seek, one edit unit"}};
    for (int round = 0; round <= kRounds; ++round) {
        if (round == 1)
            for (Step& step : steps)
                step.ours.clear(), step.theirs.clear();
        if (round % 2 == 0) walk(path, units, steps);
        walkLibavformat(path, units, steps);
        if (round % 2 == 1) walk(path, units, steps);
    }
    std::printf(
        "A file of %lld edit units, %.2f GB, %.1f MB of index tables in %zu partitions; milliseconds, in process\n\n",
        static_cast<long long>(units), static_cast<double>(std::filesystem::file_size(path)) / 1e9, index / 1e6,
        places.indexTables.size());
    std::printf("%-42s %14s %8s %12s %12s %7s %12s\n", "", "x libavformat", "zanfcp", "libavformat", "bytes read",
                "reads", "its bytes");
    Step sum{"all of it until the first seek is done"};
    const auto print = [](const Step& step, double ours, double theirs) {
        std::printf("%-42s", step.name);
        theirs > 0 ? std::printf(" %14.1f %8.2f %12.2f", theirs / ours, ours, theirs)
                   : std::printf(" %14s %8.2f %12s", "", ours, "");
        std::printf(" %12llu %7llu %12lld\n", static_cast<unsigned long long>(step.reads.bytes),
                    static_cast<unsigned long long>(step.reads.calls), static_cast<long long>(step.theirBytes));
    };
    double ours = 0, theirs = 0;
    for (const Step& step : steps) {
        print(step, median(step.ours), step.theirBytes > 0 ? median(step.theirs) : 0);
        if (&step == &steps.back()) break; // what comes before it has the tables
        ours += median(step.ours);
        theirs += median(step.theirs);
        sum.reads.bytes += step.reads.bytes;
        sum.reads.calls += step.reads.calls;
        sum.theirBytes += step.theirBytes;
        sum.reads.ranges.insert(sum.reads.ranges.end(), step.reads.ranges.begin(), step.reads.ranges.end());
    }
    print(sum, ours, theirs);
    const auto ofIndex = static_cast<double>(bytesOf(places.indexTables, sum.reads.ranges));
    atMost("500,000 edit units: index tables read until the first seek is done, times", 1.05, ofIndex / index);
    atMost("500,000 edit units: all that is read until then, of the index tables", 1,
           static_cast<double>(sum.reads.bytes) / index);
}

} // namespace

int main()
{
    av_log_set_level(AV_LOG_ERROR);
    needRoom(0.7);
    const std::string path = scratchFile("long.mxf");
    makeManyUnits(path);
    longFile(path, kManyUnits);
}
