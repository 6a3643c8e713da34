#include "mxf/io/SourceReader.h"

#include "mxf/Status.h"

namespace TamrelMxf {

void CSourceReader::Attach(CMediaSource* source, std::uint32_t timeoutSeconds, CLoggerT<CSnitcher> logger)
{
    source_ = source;
    timeoutSeconds_ = timeoutSeconds;
    logger_ = logger;
    complete_ = false;
    headerParsed_ = false;
    stopped_ = false;
}

int CSourceReader::ReadSource(std::uint8_t* buffer, std::int64_t position, int count)
{
    if (source_ == nullptr) return kNotOpen;
    if (count < 0 || !SeekTo(position)) return kFailed;

    const auto wanted = static_cast<std::size_t>(count);
    if (complete_) return static_cast<int>(source_->Read(buffer, wanted));

    std::int64_t start = clock_->Now();
    int before = 0;
    for (;;) {
        const int got = static_cast<int>(source_->Read(buffer, wanted));
        if (got < 0 || got >= count) return got;
        if (got > 0 && headerParsed_ && isComplete_) {
            complete_ = isComplete_();
            if (complete_) return got;
        }
        if (got != before) {
            start = clock_->Now();
            before = got;
        }
        if (stopped_) return got;
        if ((clock_->Now() - start) / 1000 >= timeoutSeconds_) {
            if (timeoutSeconds_ != 0)
                logger_.LogWarning("reading canceled after %u sec (timeout)", static_cast<unsigned>(timeoutSeconds_));
            stopped_ = true;
            return got;
        }
        clock_->Sleep(kPollMilliseconds);
        if (!SeekTo(position)) return kFailed;
    }
}

bool CSourceReader::SeekTo(std::int64_t position)
{
    const int status = source_->Seek(position);
    if (status != 0) logger_.LogError("Seeking error %d", status);
    return status == 0;
}

} // namespace TamrelMxf
