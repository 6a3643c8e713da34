#pragma once

#include "bench/Measure.h"
#include "mxf/mxfDemux.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// Counts bytes, and touches none.
struct Counter final : SMediaStream {
    int TakeSample(const mxf_sample& sample) override
    {
        bytes += sample.size;
        return 0;
    }
    std::uint64_t bytes = 0;
};

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

/// An MXF file of 500,000 small pictures with variable sizes, so that its index tables are long.
inline constexpr std::int64_t kManyUnits = 500'000;
inline void makeManyUnits(const std::string& path)
{
    const std::string source = quoted(scratchFile("tiny.mov"));
    shell("ffmpeg -v fatal -y -f lavfi -i testsrc2=s=32x32:r=25 -t 4 -c:v mpeg2video -bf 0 -g 5 -b:v 100k " + source);
    shell("ffmpeg -v fatal -y -stream_loop -1 -i " + source + " -c copy -frames:v " + std::to_string(kManyUnits) + " " +
          quoted(path));
}

} // namespace bench
