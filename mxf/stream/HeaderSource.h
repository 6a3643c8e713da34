#pragma once

#include "../io/MediaSource.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace TamrelMxf {

/// Bytes that someone else holds, as a source that is read only.
class CHeaderSource final : public CMediaSource {
public:
    /// \param bytes  borrowed for the life of the source
    explicit CHeaderSource(std::span<const std::uint8_t> bytes) : bytes_{bytes} {}

    int Open(const char*, int) override { return 0; }
    int Close() override { return 0; }
    std::int64_t Read(void* buffer, std::size_t count) override
    {
        const std::size_t got = std::min(count, bytes_.size() - place_);
        if (got > 0) std::memcpy(buffer, bytes_.data() + place_, got);
        place_ += got;
        return static_cast<std::int64_t>(got);
    }
    std::int64_t Write(const void*, std::size_t) override { return -1; }
    /// \return -1 for a place in front of the first byte; one behind the last byte is the end
    int Seek(std::int64_t position) override
    {
        if (position < 0) return -1;
        place_ = static_cast<std::size_t>(std::min(position, GetSize()));
        return 0;
    }
    std::int64_t GetPos() override { return static_cast<std::int64_t>(place_); }
    std::int64_t GetSize() override { return static_cast<std::int64_t>(bytes_.size()); }
    int SetBufferSize(std::uint32_t) override { return 0; }
    std::int64_t GetWritten() override { return 0; }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t place_ = 0;
};

} // namespace TamrelMxf
