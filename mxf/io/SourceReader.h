#pragma once

#include "MediaSource.h"
#include "Snitcher.h"
#include "WaitClock.h"

#include <cstdint>
#include <functional>
#include <utility>

namespace TamrelMxf {

/// The positioned read of the demuxer. It waits for data in a file that another program is still writing,
/// polling every 500 ms, until the data arrives, the file is complete or the time-out has passed.
class CSourceReader {
public:
    /// \param clock  borrowed
    explicit CSourceReader(CWaitClock& clock = CWaitClock::System()) : clock_{&clock} {}

    /// Starts afresh on a source: not complete, no header parsed, not stopped.
    /// \param source          borrowed until the next Attach; null for none
    /// \param timeoutSeconds  how long a read waits without progress
    void Attach(CMediaSource* source, std::uint32_t timeoutSeconds, CLoggerT<CSnitcher> logger);

    /// Sets what answers whether the file is complete. It may move the source; it is asked only after a
    /// short read and once the header is parsed.
    void SetCompletenessTest(std::function<bool()> test) { isComplete_ = std::move(test); }

    CMediaSource* Source() const { return source_; }
    /// Known to be complete: reads no longer wait.
    bool IsComplete() const { return complete_; }
    void SetComplete(bool complete) { complete_ = complete; }
    void SetHeaderParsed(bool parsed) { headerParsed_ = parsed; }
    /// Set by the first time-out: reads of missing data return at once from then on.
    bool IsStopped() const { return stopped_; }
    void SetStopped(bool stopped) { stopped_ = stopped; }

    /// Reads `count` bytes at `position`.
    /// \return the bytes read, fewer than `count` when they did not come in time or the file ends; -4 without
    ///   a source; -1 when the source cannot be sought; else the source's own negative answer
    int ReadSource(std::uint8_t* buffer, std::int64_t position, int count);

private:
    bool SeekTo(std::int64_t position);

    CWaitClock* clock_;
    CMediaSource* source_ = nullptr;
    CLoggerT<CSnitcher> logger_;
    std::function<bool()> isComplete_;
    std::uint32_t timeoutSeconds_ = 0;
    bool complete_ = false;
    bool headerParsed_ = false;
    bool stopped_ = false;
};

} // namespace TamrelMxf
