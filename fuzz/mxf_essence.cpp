#include "fuzz/MemoryFile.h"
#include "mxf/mxfDemux.h"

#include <cstddef>
#include <cstdint>

namespace {

/// Looks at every byte it is given, and holds the samples against each other.
struct Receiver : SMediaStream {
    int TakeSample(const mxf_sample& sample) override
    {
        if (++offered % 7 == 0) return 1;
        require(sample.dts <= sample.pts && sample.duration > 0 && sample.edit_unit >= 0);
        require((sample.flags & mxf_sample_discontinuity) != 0 || sample.edit_unit == next);
        next = sample.edit_unit + sample.duration;
        for (std::size_t i = 0; i < sample.size; ++i)
            sum += sample.data[i];
        bytes += sample.size;
        return 0;
    }
    std::int64_t next = 0;
    std::size_t bytes = 0;
    std::size_t offered = 0;
    unsigned sum = 0;
};

constexpr int kStreams = 8;
constexpr int kFiles = 4;
constexpr int kMostPushes = 2000;

void play(TamrelMxf::CMxfDemuxer* demuxer, std::size_t size)
{
    Receiver receivers[kStreams];
    for (int file = 0; file < kFiles; ++file) {
        if (mxfDemuxCreateParser(demuxer, file) != 0) continue;
        for (int stream = 0; stream < kStreams; ++stream)
            (void)mxfDemuxAddStream(demuxer, file, stream, &receivers[stream]);
        int result = 0;
        for (int i = 0; i < kMostPushes && (result == 0 || result == 1); ++i)
            result = mxfDemuxPush(demuxer, file);
        for (const std::int64_t position : {0, 1, 7, 100, 1, -1}) {
            for (std::uint32_t stream = 0; stream < 2; ++stream) {
                mxf_dmuxer_seek seek{};
                seek.stream = stream;
                seek.position = position;
                seek.flags = static_cast<std::uint32_t>(position) & 3U;
                if (mxfDemuxSeek(demuxer, file, &seek) == 0) (void)mxfDemuxPush(demuxer, file);
                mxf_sample_info info{};
                info.stream = stream;
                if (mxfDemuxGetSampleInfo(demuxer, file, static_cast<int>(position), &info) != 0) continue;
                if (mxfDemuxFillSampleOffset(demuxer, &info) == 0)
                    require(info.position >= 0 && info.position <= static_cast<std::int64_t>(size));
            }
        }
    }
    for (const Receiver& receiver : receivers)
        require(receiver.bytes <= 64 * (size + 1)); // a few passes, with samples that are offered again
    std::int64_t keyLength = 0, valueLength = 0;
    (void)mxfDemuxGetKlvInfo(demuxer, static_cast<std::int64_t>(size / 2), &keyLength, &valueLength);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    MemoryFile memory{data, size};
    mxf_demuxer_config config = memory.config();
    config.lazy_index_loading = size & 1;
    TamrelMxf::CMxfDemuxer* const demuxer = mxfDemuxNew();
    if (mxfDemuxOpen(demuxer, "memory", &config, nullptr) == 0) play(demuxer, size);
    mxfDemuxFree(demuxer);
    return 0;
}
