#pragma once

#include "../essence/EssenceInput.h"
#include "MemoryStream.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace TamrelMxf {

/// What a queue holds as essence, and behind it a slice that is lent: bytes that stay where the caller has them while
/// they are looked at. Samples that lie in it whole are viewed there; bytes of one that begins in front of it are
/// queued. Positions count from the first byte of the stream. Used under the lock of the queue.
class CQueueEssenceInput final : public CEssenceInput {
public:
    /// \param queue  borrowed
    /// \param begin  what the queue had confirmed when the stream began
    /// \param stop   borrowed; once true there is nothing to view
    CQueueEssenceInput(SMemoryStream& queue, std::int64_t begin, const std::atomic<bool>& stop)
        : queue_{queue}, begin_{begin}, stop_{stop}
    {}

    /// Where the first byte that is held stands.
    std::int64_t Front() const { return queue_.TotalConfirmed() - begin_ - queue_.Held(); }

    /// Shows a slice behind all that is queued. What the last view was short of is queued at once.
    /// \param slice  not empty, borrowed until Settle; none may be lent already
    /// \return false when the queue has no room for all of it: nothing has changed then
    bool Lend(std::span<const std::uint8_t> slice);
    /// Queues what is left of the lent slice, if one is: it is not needed any more.
    void Settle();
    /// Drops what is left of the lent slice.
    void Forget();

    /// Nothing for positions that were released.
    std::span<const std::uint8_t> View(std::int64_t position, std::size_t count) override;
    bool IsComplete() override { return false; } // the stream goes on for as long as the caller pushes
    std::int64_t Size() override { return -1; }
    /// Positions that are still to come are dropped when they come.
    void Release(std::int64_t position) override;

private:
    void DropReleased();
    bool Queue(std::size_t count);

    SMemoryStream& queue_;
    std::int64_t begin_;
    const std::atomic<bool>& stop_;
    std::int64_t released_ = 0;
    std::span<const std::uint8_t> lent_; // what is left of the slice
    std::size_t copied_ = 0;             // bytes at its beginning that are queued as well
    std::size_t missing_ = 0;            // bytes that the last view was short of
};

} // namespace TamrelMxf
