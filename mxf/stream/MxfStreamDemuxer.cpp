#include "mxf/stream/MxfStreamDemuxer.h"

#include "mxf/Status.h"
#include "mxf/model/Links.h"
#include "mxf/stream/HeaderSearch.h"
#include "mxf/stream/HeaderSource.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <new>
#include <system_error>
#include <utility>

namespace TamrelMxf {

/// Locks the output for a scope.
class CMxfStreamDemuxer::COutputHold {
public:
    explicit COutputHold(CMxfStreamDemuxer& demuxer) : demuxer_{demuxer} { demuxer_.LockOutput(true); }
    ~COutputHold() { demuxer_.LockOutput(false); }
    COutputHold(const COutputHold&) = delete;
    COutputHold& operator=(const COutputHold&) = delete;

private:
    CMxfStreamDemuxer& demuxer_;
};

namespace {

/// Looks at a flag for about as long as a change of thread takes, then lets others run.
/// \return true when it was seen
bool Watch(const std::atomic<bool>& flag)
{
    constexpr int kLooks = 500;
    for (int i = 0; i < kLooks; ++i)
        if (flag.load(std::memory_order_relaxed)) return true;
    std::this_thread::yield();
    return flag;
}

/// Between two looks at the parse thread.
void Pause(int rounds)
{
    constexpr int kShortRounds = 50; // it mostly has little left to do
    if (rounds < kShortRounds)
        std::this_thread::yield();
    else
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
}

} // namespace

CMxfStreamDemuxer::CMxfStreamDemuxer() = default;

CMxfStreamDemuxer::~CMxfStreamDemuxer()
{
    assert(!IsParseThread());
    CMxfStreamDemuxer::Close();
}

bool CMxfStreamDemuxer::IsMxfComplete()
{
    return false;
}

void CMxfStreamDemuxer::SetOffsets() {}

void CMxfStreamDemuxer::CalculateDuration() {}

int CMxfStreamDemuxer::Prepare(const mxf_stream_demuxer_config* config, CSnitcher* sink)
{
    if (config == nullptr) return kNullArgument;
    if (IsParseThread()) return kFailed;
    mxf_demuxer_config core{};
    core.pointer = reinterpret_cast<void*>(static_cast<std::uintptr_t>(config->core_long));
    core.flag = config->core_word;
    core.lazy_index_loading = 1; // there is no source to load any from
    Start(&core, CLoggerT<CSnitcher>{sink});
    config_ = *config;
    state_ = kStateFindPartition;
    headerSize_ = 0;
    partitionPosition_ = 0;
    failure_.clear();
    stop_ = false;
    {
        const std::lock_guard state{stateMutex_};
        isAwake_ = isAsleep_ = isOutputWanted_ = false;
    }
    const std::lock_guard input{inputMutex_};
    context = nullptr;
    notify = nullptr;
    Allocate(kQueueBytes);
    begin_ = TotalConfirmed();
    isDiscarding_ = isRefused_ = false;
    slicesToCopy_ = 0;
    isPatient_ = true;
    return kSuccess;
}

int CMxfStreamDemuxer::Open(const mxf_stream_demuxer_config* config, CSnitcher* sink)
{
    if (const int status = Prepare(config, sink); status != kSuccess) return status;
    try {
        thread_ = std::make_unique<std::thread>([this] { ParseThread(); });
        parseThreadId_ = thread_->get_id();
    } catch (const std::system_error&) {
        Logger().LogError("no thread can be started");
        Close();
        return kFailed;
    }
    return kSuccess;
}

void CMxfStreamDemuxer::Close()
{
    stop_ = true; // seen also between two steps that follow each other without a pause
    if (IsParseThread()) return;
    if (thread_) {
        WakeUp();
        thread_->join();
        thread_.reset();
        parseThreadId_ = std::thread::id{};
    }
    CMxfDemuxer::Close();
    partition_.reset();
    headerBuffer_ = {};
    const std::lock_guard input{inputMutex_};
    essence_.reset();
    Free();
}

int CMxfStreamDemuxer::CopyData(unsigned char* data, int length)
{
    if (IsParseThread()) return kFailed;
    int result = length;
    bool isLent = false;
    if (!IsTight(length))
        isPatient_ = true;
    else if (isPatient_)
        isPatient_ = AwaitUse();
    {
        const std::lock_guard input{inputMutex_};
        if (essence_) essence_->input.Settle(); // what another thread pushes comes first
        isLent = MayLend(data, length) && essence_->input.Lend({data, static_cast<std::size_t>(length)});
        isLookedAt_ = !isLent;
        if (!isLent && !isDiscarding_) result = SMemoryStream::CopyData(data, length);
        isRefused_ = result == kNoRoom;
    }
    WakeUp();
    std::this_thread::yield();
    if (isLent) TakeBack();
    return result;
}

/// True when the queue would have to grow for a slice.
bool CMxfStreamDemuxer::IsTight(int length)
{
    const std::lock_guard input{inputMutex_};
    return !HasRoom(length);
}

/// Whether the parse thread is to look at a slice where it lies, instead of at a copy. It takes a change of thread to
/// and fro, so small slices are better copied, as are those of a stream that is slow to take.
bool CMxfStreamDemuxer::MayLend(const unsigned char* data, int length)
{
    constexpr int kLeastBytes = 64 << 10;
    const bool isTaken = state_ == kStateStreaming && essence_ && !isDiscarding_ && copy == nullptr;
    if (!isTaken || data == nullptr || length < kLeastBytes || parseThreadId_.load() == std::thread::id{}) return false;
    return slicesToCopy_ == 0 || --slicesToCopy_ == 0;
}

/// Waits a moment for the parse thread to look at the slice that it was lent, and queues what it has left of that.
void CMxfStreamDemuxer::TakeBack()
{
    constexpr int kCopiedBehindASlowOne = 16; // the next ones can then be read while samples are taken
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds{kPickUpMicroseconds};
    while (!Watch(isLookedAt_) && !stop_ && std::chrono::steady_clock::now() < end) {
    }
    const bool isSlow = !isLookedAt_;
    const std::lock_guard input{inputMutex_};
    if (isSlow) slicesToCopy_ = kCopiedBehindASlowOne;
    if (essence_) essence_->input.Settle();
}

/// A parse thread that is at work, or lingers, is not disturbed: it looks at the flag before it goes to sleep.
void CMxfStreamDemuxer::WakeUp()
{
    isAwake_ = true;
    if (!isAsleep_) return;
    {
        const std::lock_guard state{stateMutex_}; // it sleeps by now, or has seen the flag
    }
    wakeUp_.notify_all(); // not under the lock, which it needs first of all
}

void CMxfStreamDemuxer::LockOutput(bool lock)
{
    if (lock) {
        output_.lock();
        return;
    }
    if (!output_.IsMine()) return;
    output_.unlock();
    if (IsParseThread()) return;
    bool isWanted = false;
    {
        const std::lock_guard state{stateMutex_};
        isWanted = std::exchange(isOutputWanted_, false);
    }
    if (isWanted) WakeUp();
}

void CMxfStreamDemuxer::Drain()
{
    for (int rounds = 0; IsAtWork(); ++rounds) {
        {
            const std::lock_guard state{stateMutex_}; // the parse thread lets go of it between steps alone
            if (!isAwake_) return;
        }
        Pause(rounds);
    }
}

/// The same, for as long as a parse thread may be kept from its work by others: the queue should not grow for that.
/// \return false when it took longer, which a receiver does: waiting again would hold up who pushes for nothing
bool CMxfStreamDemuxer::AwaitUse()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds{kPatienceMilliseconds};
    for (int rounds = 0; IsAtWork() && std::chrono::steady_clock::now() < end; ++rounds) {
        {
            const std::unique_lock state{stateMutex_, std::try_to_lock};
            if (state.owns_lock() && !isAwake_) return true;
        }
        Pause(rounds);
    }
    return !IsAtWork();
}

/// False when there is no parse thread that will ever use what is queued, and on that itself.
bool CMxfStreamDemuxer::IsAtWork() const
{
    const bool isThere = parseThreadId_.load() != std::thread::id{} && !IsParseThread();
    return isThere && !stop_ && state_ != kStateFinished;
}

void CMxfStreamDemuxer::ParseThread()
{
    parseThreadId_ = std::this_thread::get_id();
    std::unique_lock state{stateMutex_};
    while (WaitForWakeUp(state)) {
        try {
            if (Step()) isAwake_ = true;
        } catch (const std::bad_alloc&) {
            state_ = kStateError;
            failure_ = "out of memory";
            isAwake_ = true;
        }
        state.unlock(); // a push comes in between
        Linger();
        state.lock();
    }
    if (state_ != kStateFinished) return;
    const std::lock_guard input{inputMutex_};
    isDiscarding_ = true;
    if (essence_) essence_->input.Forget();
    Reset();
}

/// Gives the next push a moment to come: where they follow each other closely, most of their time would go into putting
/// this thread to sleep and waking it.
void CMxfStreamDemuxer::Linger()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds{kLingerMicroseconds};
    std::this_thread::yield();
    while (!Watch(isAwake_) && !stop_ && std::chrono::steady_clock::now() < end) {
    }
}

/// Waits until there is something to do. \return false when there will never be
bool CMxfStreamDemuxer::WaitForWakeUp(std::unique_lock<std::mutex>& state)
{
    constexpr auto kWait = std::chrono::milliseconds{kWakeUpMilliseconds};
    constexpr auto kWholeWait = kWait - std::chrono::nanoseconds{1};
    isAsleep_ = true; // in front of the look at the flag: who sets that sees this, or is seen here
    while (!isAwake_) {
        const auto start = std::chrono::steady_clock::now();
        wakeUp_.wait_for(state, kWait);
        if (std::chrono::steady_clock::now() - start < kWholeWait) break;
    }
    isAsleep_ = false;
    isAwake_ = false;
    return !stop_ && state_ != kStateFinished;
}

bool CMxfStreamDemuxer::Step()
{
    bool hasMore = false;
    isStuck_ = false;
    if (state_ != kStateStreaming) {
        const std::lock_guard input{inputMutex_};
        const std::int64_t before = Released();
        unsigned char* data = nullptr;
        int length = 0;
        if (RequestData(&data, &length) == 0) ProcessInputBuf(data, length);
        hasMore = state_ == kStateFindPartition && consumed_ > 0;
        isStuck_ = IsStuck(before, state_ == kStateCollectHeader);
    }
    std::this_thread::yield();
    const std::unique_lock output{output_, std::try_to_lock};
    isOutputWanted_ = !output.owns_lock(); // its owner wakes this thread when it lets go
    if (isOutputWanted_) {
        isLookedAt_ = true; // it has to be queued
        return false;
    }
    hasMore = ProcessCurrentState() || hasMore;
    if (isStuck_) return Fail("an edit unit or header does not fit the input queue");
    return hasMore;
}

void CMxfStreamDemuxer::ProcessInputBuf(const unsigned char* data, int length)
{
    consumed_ = 0;
    switch (state_) {
    case kStateFinished:
    case kStateError: consumed_ = length; break;
    case kStateCollectHeader:
        if (headerSize_ > length) break;
        std::copy_n(data, headerSize_, headerBuffer_.begin());
        consumed_ = static_cast<std::int32_t>(headerSize_);
        state_ = kStateParseHeader;
        break;
    case kStateFindPartition: FindPartitionWithMetadata(data, length); break;
    case kStateClosed:
    case kStateHeaderFound:
    case kStateParseHeader:
    case kStateStreaming: break;
    }
    (void)ReleaseData(consumed_);
}

void CMxfStreamDemuxer::FindPartitionWithMetadata(const unsigned char* data, int length)
{
    SHeaderSearch search = SearchHeader({data, static_cast<std::size_t>(length)}, Dict());
    consumed_ = static_cast<std::int32_t>(search.consumed);
    if (search.isDamaged) {
        state_ = kStateError;
        failure_ = "a partition pack cannot be imported";
    }
    if (!search.isFound) return;
    partition_ = std::move(search.pack);
    partitionPosition_ = static_cast<std::int64_t>(partition_->thisPartition);
    headerSize_ = search.headerSize;
    state_ = kStateHeaderFound;
}

bool CMxfStreamDemuxer::ProcessCurrentState()
{
    switch (state_) {
    case kStateHeaderFound: return CheckHeader();
    case kStateParseHeader: return ParseHeaderBuf();
    case kStateStreaming: return RunParser();
    case kStateError: return !failure_.empty() && Fail(std::exchange(failure_, {}).c_str());
    case kStateClosed:
    case kStateFindPartition:
    case kStateCollectHeader:
    case kStateFinished: break;
    }
    return false;
}

bool CMxfStreamDemuxer::CheckHeader()
{
    const SOperationalPattern pattern = ParseOperationalPattern(partition_->operationalPattern);
    const bool isOp1b = pattern.itemComplexity == 1 && pattern.packageComplexity == 2;
    if (pattern.IsAtom() || isOp1b) return Fail("Unsupported Op pattern!");
    if (headerSize_ >= Maximum()) return Fail("the header is larger than the input queue");
    headerBuffer_.resize(static_cast<std::size_t>(headerSize_));
    state_ = kStateCollectHeader;
    return true;
}

bool CMxfStreamDemuxer::ParseHeaderBuf()
{
    if (ParseDetachedHeaders(std::make_unique<CHeaderSource>(headerBuffer_)) != kSuccess) return Fail(nullptr);
    MakeParser();
    headerBuffer_ = {};
    Report(mxf_stream_header_parsed);
    state_ = kStateStreaming;
    return true;
}

/// For the first container of the file.
void CMxfStreamDemuxer::MakeParser()
{
    std::vector<SEssenceTrack> tracks = EssenceTracks(0);
    if (tracks.empty()) return;
    const std::lock_guard input{inputMutex_};
    const SStreamDelivery::SParts parts{.queue = *this,
                                        .begin = begin_,
                                        .stop = stop_,
                                        .dict = Dict(),
                                        .bodySid = partition_->bodySID,
                                        .bodyOffset = partition_->bodyOffset,
                                        .logger = Logger()};
    essence_ = std::make_unique<SStreamDelivery>(parts, std::move(tracks));
    const auto indexBytes = static_cast<std::size_t>(partition_->extent.indexByteCount); // part of the header size
    essence_->ImportIndex(std::span{headerBuffer_}.last(indexBytes));
}

bool CMxfStreamDemuxer::RunParser()
{
    int result = kNeedsData;
    {
        const std::lock_guard input{inputMutex_};
        if (!essence_) {
            Reset(); // no essence that could be delivered
            return false;
        }
        const std::int64_t before = Released();
        result = essence_->parser.Push();
        isStuck_ = IsStuck(before, result == kNeedsData);
    }
    isLookedAt_ = true; // whoever waits for that needs the lock at once, and for long: nothing below takes it
    if (result == kNeedsData) std::this_thread::yield();
    if (result != kEnded) return false;
    state_ = kStateFinished;
    Report(mxf_stream_ended);
    return true;
}

/// True when what is needed at once does not fit the queue together with the slice that the caller wants to push: no
/// later push would be any better. Under the lock of the queue.
/// \param before   bytes released before the step
/// \param isShort  the step needs more than there is
bool CMxfStreamDemuxer::IsStuck(std::int64_t before, bool isShort)
{
    if (Released() != before) isRefused_ = false; // there is room for another try
    return isShort && isRefused_ && !stop_ && Held() > Maximum() / 2;
}

int CMxfStreamDemuxer::AddStream(int file, int stream, SMediaStream* receiver)
{
    if (receiver == nullptr) return kNullArgument;
    const COutputHold hold{*this};
    if (!IsHeaderParsed()) return kNotOpen;
    if (!essence_ || file != 0 || stream < 0) return kOutOfRange;
    return essence_->parser.AddStream(static_cast<std::uint32_t>(stream), receiver);
}

int CMxfStreamDemuxer::RemoveStream(int file, int stream)
{
    const COutputHold hold{*this};
    if (!IsHeaderParsed()) return kNotOpen;
    if (!essence_ || file != 0 || stream < 0) return kOutOfRange;
    return essence_->parser.RemoveStream(static_cast<std::uint32_t>(stream));
}

/// Further input is discarded. \param reason  null when it has been reported already
bool CMxfStreamDemuxer::Fail(const char* reason)
{
    if (reason != nullptr) Logger().LogError("%s", reason);
    state_ = kStateError;
    Report(mxf_stream_failed);
    return true;
}

void CMxfStreamDemuxer::Report(mxf_stream_event event)
{
    if (config_.state_callback != nullptr) config_.state_callback(config_.context, event, 0);
}

} // namespace TamrelMxf
