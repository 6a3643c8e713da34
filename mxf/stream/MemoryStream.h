#pragma once

#include <cstdint>
#include <memory>

namespace TamrelMxf {

/// A queue of bytes that grows up to a limit: written at one end, read in place at the other, always in one piece.
/// It takes no locks itself, and nothing in it throws but std::bad_alloc.
///
///     SMemoryStream queue;
///     queue.Init(nullptr, nullptr, 4096, 1 << 20);
///     if (unsigned char* room = queue.RequestFree(3)) {
///         std::memcpy(room, "abc", 3);
///         queue.ConfirmData(3);
///     }
struct SMemoryStream {
    using NotifyCallback = int (*)(void* context, int event, void* data, int length);
    using CopyCallback = int (*)(void* context, unsigned char* data, int length);

    static constexpr std::uint32_t kLeastCapacity = 32;
    static constexpr std::uint32_t kDefaultMaximum = std::uint32_t{32} << 20;
    static constexpr std::uint32_t kGuardBytes = 16; ///< allocated behind the capacity, never filled
    static constexpr int kNoRoom = -5;

    SMemoryStream() = default;
    SMemoryStream(const SMemoryStream&) = delete;
    SMemoryStream& operator=(const SMemoryStream&) = delete;

    // The order of these is part of the interface.

    virtual ~SMemoryStream();
    /// Empties the queue. What was counted in all stays counted.
    virtual void Reset();
    /// Calls the notify callback. \return its answer; 1 without one
    virtual int Notify(int event, void* data, int length);
    /// Makes room for `count` bytes behind those that are held: at the end, by moving them to the front, or by growing
    /// to the bytes held and four thirds of `count`. Pointers from RequestData are no longer good.
    /// \return where to write, good until the next call; null when the queue would reach its maximum, and for a
    ///   negative count
    virtual unsigned char* RequestFree(int count);
    /// Takes over bytes that were written where RequestFree said.
    /// \return 0, also for fewer than one byte; -5 when there is no room for so many
    virtual int ConfirmData(int count);
    /// Appends a copy of `data`, or hands it to the pass-through callback instead when that takes all of it.
    /// \return `length`; -5 without room, the queue then being as it was; -2 for null data of some length
    virtual int CopyData(unsigned char* data, int length);
    /// \param data    out: the first byte that is held, good until the queue is changed; null when it is empty
    /// \param length  out: bytes that are held
    /// \return 0; 1 when the queue is empty; -2 for a null argument
    virtual int RequestData(unsigned char** data, int* length);
    /// Drops bytes from the front. Those that stay move to the start of the buffer when less than a tenth of it is left
    /// behind them and more than a tenth lies in front.
    /// \return 0; -1 when fewer are held, or `count` is negative
    virtual int ReleaseData(int count);
    /// Starts on a new, empty buffer.
    /// \param initialSize  bytes of the buffer, at least 32
    /// \param maximum      the limit of its growth; with one below the initial size the limit stays what it was
    virtual void Init(void* context, NotifyCallback notify, unsigned int initialSize, unsigned int maximum);
    /// Moves what is held to the start of a buffer of another size.
    /// \return 1; 0 for a size that is not below the maximum, or too small for what is held
    virtual int Realloc(unsigned int size);
    /// \return 1; -5 without room
    virtual int AddByte(unsigned char byte);

    void* context = nullptr; ///< first argument of the callbacks
    NotifyCallback notify = nullptr;
    CopyCallback copy = nullptr; ///< answers how many bytes it took; null: all bytes are queued

    /// True when RequestFree finds room for `count` bytes without growing.
    bool HasRoom(int count) const;
    /// True when RequestFree finds room for `count` bytes, or makes it.
    bool CanHaveRoom(int count) const;
    /// Counts bytes that were used where they lay as if they had been confirmed and released at once.
    /// \param count  not negative
    void Pass(std::int64_t count) { total_ += count; }

    std::int64_t TotalConfirmed() const { return total_; } ///< bytes taken in since construction
    std::uint32_t Capacity() const { return capacity_; }
    std::uint32_t Held() const { return held_; }
    std::uint32_t Maximum() const { return maximum_; }

protected:
    /// Replaces the buffer by an empty one.
    void Allocate(std::uint32_t capacity);
    /// Gives the buffer back; the queue is empty and has no capacity.
    void Free();

private:
    void MoveToFront();
    /// The capacity that makes room for `count` bytes more, which may exceed 32 bits.
    std::uint64_t Grown(int count) const { return held_ + static_cast<std::uint64_t>(count) * 4 / 3; }

    std::int64_t total_ = 0;
    std::unique_ptr<unsigned char[]> base_;
    unsigned char* end_ = nullptr; // base_ + capacity_
    unsigned char* write_ = nullptr;
    unsigned char* read_ = nullptr; // null when the queue is empty
    std::uint32_t capacity_ = 0;
    std::uint32_t held_ = 0;
    std::uint32_t maximum_ = kDefaultMaximum;
};

} // namespace TamrelMxf
