#include "mxf/Status.h"
#include "mxf/stream/MxfStreamDemuxer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using namespace TamrelMxf;

void require(bool holds)
{
    if (!holds) std::abort();
}

/// Adds up what it is given, so that every byte is looked at; refuses now and then.
struct Receiver : SMediaStream {
    int TakeSample(const mxf_sample& sample) override
    {
        if (++calls % 5 == 0) return 1;
        for (std::uint32_t i = 0; i < sample.size; ++i)
            sum += sample.data[i];
        require(sample.duration > 0);
        return 0;
    }
    std::uint32_t calls = 0;
    std::uint64_t sum = 0;
};

constexpr std::uint32_t kMostStreams = 16;

/// Runs the steps of the parse thread itself, or leaves them to that thread.
class Demuxer : public CMxfStreamDemuxer {
public:
    explicit Demuxer(bool hasThread) : hasThread_{hasThread}
    {
        mxf_stream_demuxer_config config{};
        config.context = this;
        config.state_callback = [](void* context, std::int32_t event, std::int32_t) {
            static_cast<Demuxer*>(context)->onEvent(event);
        };
        require((hasThread ? Open(&config, nullptr) : Prepare(&config, nullptr)) == 0);
    }
    ~Demuxer() override { Close(); }

    void feed(const std::uint8_t* data, std::size_t size)
    {
        std::vector<std::uint8_t> slice(data, data + size);
        const int length = static_cast<int>(size);
        require(CopyData(slice.data(), length) == length); // no input is as large as the queue
        for (int steps = 0; !hasThread_ && Step(); ++steps)
            require(steps < 1'000'000);
    }

private:
    void onEvent(std::int32_t event)
    {
        require(event > last_ && (event == 1 || last_ < 2)); // 1 comes first, 2 or 3 last, each once
        last_ = event;
        if (event != mxf_stream_header_parsed) return;
        mxf_file_info info{};
        require(GetFileInfo(&info) == 0);
        for (std::uint32_t i = 0; i < std::min(info.stream_count, kMostStreams); ++i) {
            mxf_stream_format format{};
            require(GetStreamFormat(static_cast<int>(i), &format, true, true) == 0);
            (void)AddStream(0, static_cast<int>(i), &receivers_[i]);
        }
    }

    bool hasThread_;
    std::int32_t last_ = 0;
    Receiver receivers_[kMostStreams];
};

} // namespace

/// The first byte chooses the thread, the next eight the sizes of the slices, in turn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kSizes = 8;
    constexpr std::size_t kSmallSlices = 4096; // each may take a change of thread to and fro; then they get larger
    if (size < 1 + kSizes) return 0;
    const std::uint8_t* const sizes = data + 1;
    Demuxer demuxer{data[0] % 16 == 1};
    std::size_t slice = 0;
    for (std::size_t at = 1 + kSizes; at < size;) {
        const std::uint8_t choice = sizes[slice++ % kSizes];
        std::size_t wanted = choice < 128 ? choice : std::size_t{1} << (choice % 20);
        if (slice > kSmallSlices) wanted = std::max(wanted, kSmallSlices);
        const std::size_t count = std::min(wanted, size - at);
        demuxer.feed(data + at, count);
        at += count;
        if (count == 0 && slice % kSizes == 0 && std::all_of(sizes, sizes + kSizes, [](int s) { return s == 0; }))
            break;
    }
    return 0;
}
