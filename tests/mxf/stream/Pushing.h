#pragma once

#include "mxf/mxfDemuxStream.h"
#include "mxf/stream/MxfStreamDemuxer.h"
#include "tests/support/MxfBuilder.h"
#include "tests/support/RecordingSnitcher.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <tuple>
#include <vector>

namespace TamrelMxf::test {

/// What is compared of a sample.
struct Taken {
    std::int64_t editUnit, pts, dts, position;
    std::uint32_t flags;
    Bytes bytes;

    friend bool operator==(const Taken&, const Taken&) = default;
};

/// Keeps what it is given.
struct Receiver : SMediaStream {
    int TakeSample(const mxf_sample& sample) override
    {
        const std::lock_guard lock{mutex};
        ++offers;
        if (room == 0) return 1;
        --room;
        taken.push_back({sample.edit_unit, sample.pts, sample.dts, sample.position, sample.flags,
                         Bytes(sample.data, sample.data + sample.size)});
        return 0;
    }
    template <typename Question> auto ask(Question question)
    {
        const std::lock_guard lock{mutex};
        return question(*this);
    }

    std::mutex mutex;
    std::vector<Taken> taken;
    std::size_t room = 1'000'000; ///< samples that it will take
    std::size_t offers = 0;
};

/// An open push-mode demuxer; every stream gets a receiver during event 1.
class Pushing {
public:
    Pushing() : demuxer_{mxfDemuxStreamNew(), mxfDemuxStreamFree} { status = open(); }

    int open()
    {
        mxf_stream_demuxer_config config{};
        config.context = this;
        config.state_callback = [](void* context, std::int32_t event, std::int32_t zero) {
            static_cast<Pushing*>(context)->onEvent(event, zero);
        };
        return mxfDemuxStreamOpen(demuxer_.get(), &config, &sink, &stream);
    }
    /// Pushes everything, `slice()` bytes at a time; waits while the queue is full, for 20 seconds at most.
    void push(const Bytes& bytes, const std::function<std::size_t()>& slice)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds{20};
        Bytes copy; // each slice of its own, so that one that is kept or overrun shows
        for (std::size_t at = 0; at < bytes.size();) {
            const std::size_t count = std::min(std::max<std::size_t>(slice(), 1), bytes.size() - at);
            copy.assign(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                        bytes.begin() + static_cast<std::ptrdiff_t>(at + count));
            const int result = stream->CopyData(copy.data(), static_cast<int>(count));
            if (result == static_cast<int>(count))
                at += count;
            else if (result != SMemoryStream::kNoRoom || std::chrono::steady_clock::now() > end)
                return;
        }
    }
    void push(const Bytes& bytes)
    {
        push(bytes, [&bytes] { return bytes.size(); });
    }
    /// \return false when `holds` has not come true in ten seconds
    template <typename Condition> static bool eventually(Condition holds)
    {
        for (int i = 0; i < 2000; ++i) {
            if (holds()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds{5});
        }
        return false;
    }
    bool reaches(EStreamState state)
    {
        return eventually([this, state] { return demuxer_->State() == state; });
    }
    bool gets(std::int32_t event)
    {
        std::unique_lock lock{mutex_};
        return changed_.wait_until(lock, std::chrono::system_clock::now() + std::chrono::seconds{20},
                                   [&] { return std::ranges::count(events_, event) > 0; });
    }
    std::vector<std::int32_t> events()
    {
        const std::lock_guard lock{mutex_};
        return events_;
    }
    CMxfStreamDemuxer* handle() { return demuxer_.get(); }

    zanfcp::test::RecordingSnitcher sink;
    std::map<std::uint32_t, Receiver> receivers;
    std::function<void(std::int32_t)> onEventToo;
    bool addsStreams = true;
    SMemoryStream* stream = nullptr;
    int status = 1;

private:
    void onEvent(std::int32_t event, std::int32_t zero)
    {
        mxf_file_info info{};
        if (event == mxf_stream_header_parsed && addsStreams && mxfDemuxStreamGetFileInfo(handle(), &info) == 0)
            for (std::uint32_t i = 0; i < info.stream_count; ++i)
                (void)mxfDemuxStreamAddStream(handle(), static_cast<int>(i), &receivers[i]);
        if (onEventToo) onEventToo(event);
        const std::lock_guard lock{mutex_};
        events_.push_back(zero == 0 ? event : -1);
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::int32_t> events_;
    std::unique_ptr<CMxfStreamDemuxer, void (*)(CMxfStreamDemuxer*)> demuxer_; // first to go
};

} // namespace TamrelMxf::test
