#pragma once

#include "../essence/EssenceInput.h"
#include "MemoryStream.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace TamrelMxf {

/// What a queue holds as essence. Positions count from the first byte of the stream.
/// Used under the lock of the queue.
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

    /// Nothing for positions that were released.
    std::span<const std::uint8_t> View(std::int64_t position, std::size_t count) override;
    bool IsComplete() override { return false; } // the stream goes on for as long as the caller pushes
    std::int64_t Size() override { return -1; }
    /// Positions that are still to come are dropped when they come.
    void Release(std::int64_t position) override;

    /// Drops what was released before it came.
    void DropReleased();

private:
    SMemoryStream& queue_;
    std::int64_t begin_;
    const std::atomic<bool>& stop_;
    std::int64_t released_ = 0;
};

} // namespace TamrelMxf
