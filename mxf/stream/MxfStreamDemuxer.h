#pragma once

#include "../demuxer/MxfDemuxer.h"
#include "MemoryStream.h"
#include "OutputLock.h"
#include "StreamDelivery.h"
#include "StreamRecords.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace TamrelMxf {

/// How far a pushed stream has come.
enum EStreamState : std::uint32_t {
    kStateClosed = 0,        ///< before the first open
    kStateFindPartition = 1, ///< scanning input for a partition pack that carries header metadata
    kStateHeaderFound = 2,   ///< partition found, header size known
    kStateCollectHeader = 3, ///< waiting until the whole header is queued
    kStateParseHeader = 4,   ///< header copied, to be parsed
    kStateStreaming = 5,     ///< essence is delivered
    kStateFinished = 6,      ///< end of stream; further input is discarded
    kStateError = 7,         ///< unsupported or unparsable header; further input is discarded
};

/// The demuxer for a stream that is pushed in slices of any size. A thread of its own, the parse thread, looks for the
/// first partition with header metadata, reads it and delivers essence to the receivers that were added.
///
/// Each push wakes the parse thread. It goes on until it has used what is queued, or a receiver refuses a sample: that
/// one is offered again at the next push, an empty or a refused one too.
///
/// Threads. CopyData may be called from any thread but the parse thread. AddStream, RemoveStream and LockOutput may be
/// called from any thread, the callback of the configuration included. Everything else belongs to one thread at a time,
/// or to who has locked the output: the parse thread reads the header, calls back and delivers only while it owns the
/// output lock. It never waits for that lock but goes on when it is free, so whoever holds it may push and close.
/// Callbacks and receivers must not wait for a thread that pushes, locks the output or closes.
class CMxfStreamDemuxer : public CMxfDemuxer, public SMemoryStream {
public:
    static constexpr std::uint32_t kQueueBytes = 2'097'152; ///< capacity after Open; it grows to 32 MiB
    static constexpr int kWakeUpMilliseconds = 500;
    static constexpr int kLingerMicroseconds = 200;    ///< that the parse thread looks out for the next push awake
    static constexpr int kPickUpMicroseconds = 50;     ///< that a push waits for the parse thread to look at its slice
    static constexpr int kPatienceMilliseconds = 1000; ///< that one push waits before the queue grows

    CMxfStreamDemuxer();

    // The order of these is part of the interface.

    /// False: a pushed stream is never known as a whole.
    bool IsMxfComplete() override;
    /// Does nothing: there are no offsets to fix in a stream that starts anywhere.
    void SetOffsets() override;
    /// Does nothing: a stream has no duration of its own.
    void CalculateDuration() override;
    ~CMxfStreamDemuxer() override;
    /// Ends the parse thread from whatever it does, then releases everything. On the parse thread itself it only lets
    /// that end after the step at hand: the rest is done by the next Close, Open or destruction, elsewhere.
    void Close() override;
    /// Queues a slice, or hands it to the pass-through callback when that takes all of it; wakes the parse thread.
    /// While that keeps up with the pushes, it is shown the slice where it lies, and only what it leaves is queued. The
    /// queue grows only for what the parse thread cannot use yet, or does not while one push waits for it a moment.
    /// \param data  not needed any more on return; may be null for a length of 0, which only wakes
    /// \return `length`; -5 without room in the queue, the slice is then to be pushed again later or in smaller pieces;
    ///   -1 on the parse thread; -2 for null data
    int CopyData(unsigned char* data, int length) override;

    /// Closes what is open, and waits for the first bytes of a stream.
    /// \param config  copied
    /// \param sink    takes the messages, also those of the parse thread; borrowed until the next open or destruction
    /// \return 0; -2 for a null config; -1 when no thread can be started, and on the parse thread
    int Open(const mxf_stream_demuxer_config* config, CSnitcher* sink);

    /// Samples of a stream go to `receiver` from the next edit unit on. Nothing is lost of a stream that is added
    /// during event 1.
    /// \param file      0
    /// \param receiver  borrowed until it is removed or the stream is closed
    /// \return 0; -2 for a null receiver; -3 when there is no such file or stream, when its essence does not lie in
    ///   the container that is delivered, and when it has a receiver; -4 before event 1
    int AddStream(int file, int stream, SMediaStream* receiver);
    /// \return 0; -3 when there is no such file or stream, or no receiver for it; -4 before event 1
    int RemoveStream(int file, int stream);

    /// Keeps the parse thread from delivering and calling back, as often as it is locked.
    /// \param lock  false unlocks; nothing happens when the calling thread does not hold the lock
    void LockOutput(bool lock);

    /// Waits until the parse thread has used what was pushed before, as far as it can: what is left waits for more
    /// bytes, for a receiver or for the output lock. Not on the parse thread.
    void Drain();

    EStreamState State() const { return state_.load(); }
    /// Where the partition that the header is taken from stands in its file, as it says itself. For callbacks, and
    /// under the output lock.
    std::int64_t PartitionPosition() const { return partitionPosition_; }

protected:
    // What the parse thread does, one by one: for derived classes that run it themselves.

    /// Open without the thread.
    int Prepare(const mxf_stream_demuxer_config* config, CSnitcher* sink);
    /// Uses bytes from the front of the queue, as the state asks for, and drops them there.
    /// \param data  the front of the queue
    void ProcessInputBuf(const unsigned char* data, int length);
    void FindPartitionWithMetadata(const unsigned char* data, int length);
    /// Moves the state on. \return true when there may be more to do at once
    bool ProcessCurrentState();
    /// Both of these under their locks.
    bool Step();

private:
    class COutputHold;

    void ParseThread();
    bool IsTight(int length);
    bool AwaitUse();
    bool IsAtWork() const;
    bool MayLend(const unsigned char* data, int length);
    void TakeBack();
    bool WaitForWakeUp(std::unique_lock<std::mutex>& state);
    void WakeUp();
    void Linger();
    bool IsParseThread() const { return parseThreadId_.load() == std::this_thread::get_id(); }
    bool CheckHeader();
    bool ParseHeaderBuf();
    void MakeParser();
    bool RunParser();
    bool IsStuck(std::int64_t before, bool isShort);
    std::int64_t Released() const { return TotalConfirmed() - Held(); }
    bool Fail(const char* reason);
    void Report(mxf_stream_event event);

    mxf_stream_demuxer_config config_{};
    std::atomic<EStreamState> state_{kStateClosed};
    std::int32_t consumed_ = 0;                 // of the slice at hand
    std::int64_t headerSize_ = 0;               // of the partition to collect
    std::int64_t partitionPosition_ = 0;        // what its pack states
    std::unique_ptr<CPartitionPack> partition_; // of the header to collect
    std::vector<std::uint8_t> headerBuffer_;
    std::string failure_;                      // met while input was used, to be reported after it
    std::int64_t begin_ = 0;                   // what the queue had confirmed at the open
    std::unique_ptr<SStreamDelivery> essence_; // null before the header is parsed, and for a file without essence
    bool isStuck_ = false;                     // what the step at hand needs will never fit the queue

    std::atomic<bool> stop_{false};
    std::atomic<bool> isAwake_{false};   // a wake-up that is not used yet; used up under stateMutex_
    std::atomic<bool> isAsleep_{false};  // the parse thread has to be notified; written under stateMutex_
    std::atomic<bool> isPatient_{true};  // a push that lacks room waits for the parse thread to make some
    std::atomic<bool> isLookedAt_{true}; // the parse thread has no use any more for the slice that it was lent
    bool isOutputWanted_ = false;        // the output was locked when it was needed; guarded by stateMutex_
    bool isDiscarding_ = false;          // the parse thread has left at the end; guarded by inputMutex_
    bool isRefused_ = false;             // there was no room for the last slice; guarded by inputMutex_
    int slicesToCopy_ = 0;               // before one is lent again; guarded by inputMutex_
    std::unique_ptr<std::thread> thread_;
    std::atomic<std::thread::id> parseThreadId_{};

    // Taken in this order: state, output (tried only, by the parse thread), input.
    std::mutex inputMutex_;
    std::mutex stateMutex_;
    COutputLock output_;
    std::condition_variable wakeUp_;
};

} // namespace TamrelMxf
