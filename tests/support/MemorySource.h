#pragma once

#include "mxf/io/MediaSource.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace zanfcp::test {

/// Bytes in memory as a source that counts what is asked of it. Positions past the end can be sought.
class MemorySource : public CMediaSource {
public:
    explicit MemorySource(std::vector<std::uint8_t> content = {}) : bytes{std::move(content)} {}

    int Open(const char*, int) override { return openStatus; }
    int Close() override { return ++closes, 0; }
    std::int64_t Read(void* buffer, std::size_t count) override
    {
        ++reads;
        if (readError != 0) return readError;
        const std::size_t from = std::min(bytes.size(), static_cast<std::size_t>(place));
        const std::size_t got = std::min(count, bytes.size() - from);
        if (got > 0) std::memcpy(buffer, bytes.data() + from, got);
        place += static_cast<std::int64_t>(got);
        return static_cast<std::int64_t>(got);
    }
    std::int64_t Write(const void*, std::size_t count) override { return static_cast<std::int64_t>(count); }
    int Seek(std::int64_t to) override
    {
        ++seeks;
        if (seekError != 0 || to < 0) return seekError != 0 ? seekError : -1;
        place = to;
        return 0;
    }
    std::int64_t GetPos() override { return place; }
    std::int64_t GetSize() override { return knowsSize ? static_cast<std::int64_t>(bytes.size()) : -1; }
    int SetBufferSize(std::uint32_t) override { return 0; }
    std::int64_t GetWritten() override { return 0; }

    std::vector<std::uint8_t> bytes;
    std::int64_t place = 0;
    std::int64_t readError = 0; ///< what every read answers, unless 0
    int seekError = 0;          ///< what every seek answers, unless 0
    int openStatus = 0;
    bool knowsSize = true;
    int reads = 0;
    int seeks = 0;
    int closes = 0;
};

} // namespace zanfcp::test
