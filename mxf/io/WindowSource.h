#pragma once

#include "MediaSource.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Another source, read in windows: what is expected to be needed together is fetched with one read, and no more than
/// that. For bytes whose places and sizes can be foreseen, where blocks of a fixed size would be read in vain for the
/// most part. The cache of the source stands aside meanwhile.
class CWindowSource final : public CMediaSource {
public:
    /// \param source  borrowed; nothing else reads it while this one is there. What it caches is dropped.
    explicit CWindowSource(CMediaSource& source);
    /// Gives the source its cache back.
    ~CWindowSource() override;

    /// Goes to `position`, where the next read fetches `count` bytes, or what it asks for if that is more. Reads that
    /// leave that window fetch blocks of the size that the cache of the source had.
    /// \param count  0: a block
    void Expect(std::int64_t position, std::size_t count);
    /// Bytes from the position of the last Expect to the end of the last one that was asked for.
    std::int64_t Reached() const { return reached_; }

    int Open(const char*, int) override { return 1; }
    int Close() override { return 0; }
    std::int64_t Read(void* buffer, std::size_t count) override;
    /// \return -1, always
    std::int64_t Write(const void*, std::size_t) override { return -1; }
    /// Reads nothing. \return -1 for a negative position
    int Seek(std::int64_t position) override;
    std::int64_t GetPos() override { return place_; }
    /// As it was when it was first asked for.
    std::int64_t GetSize() override;
    int SetBufferSize(std::uint32_t) override { return -1; }
    std::int64_t GetWritten() override { return source_.GetWritten(); }

private:
    std::size_t TakeHeld(std::uint8_t* to, std::size_t count);
    std::int64_t Fetch(std::size_t count);

    CMediaSource& source_;
    std::int32_t block_; // bytes of the cache that stands aside; none below 1
    std::vector<std::uint8_t> window_;
    std::size_t filled_ = 0; // bytes of the window
    std::int64_t begin_ = 0; // where the window begins in the source
    std::int64_t place_ = 0; // of the next read
    std::int64_t expectedAt_ = 0;
    std::size_t expected_ = 0; // bytes that the next fetch takes at least; 0: a block
    std::int64_t reached_ = 0;
    std::int64_t size_ = -1;
};
