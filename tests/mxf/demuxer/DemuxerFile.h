#pragma once

#include "mxf/demuxer/MxfDemuxer.h"
#include "tests/mxf/model/StandardFile.h"
#include "tests/support/MemorySource.h"
#include "tests/support/MxfBuilder.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace TamrelMxf::test {

/// A source that reads bytes which someone else holds and may make grow.
class BorrowedSource final : public zanfcp::test::MemorySource {
public:
    explicit BorrowedSource(const Bytes& held) : held_{held} { bytes = held; }

    std::int64_t Read(void* buffer, std::size_t count) override
    {
        bytes = held_;
        return MemorySource::Read(buffer, count);
    }
    std::int64_t GetSize() override { return static_cast<std::int64_t>(held_.size()); }

private:
    const Bytes& held_;
};

/// What stands in the pack of the header partition.
struct PackFields {
    std::uint8_t status = 4;
    std::uint64_t pattern = 0x0D01020101010900;
};

/// Header partition, some essence, footer partition and random index pack.
inline Bytes CompleteFile(const Bytes& metadata, PackFields fields = {})
{
    MxfBuilder builder;
    builder.partition({.status = fields.status, .bodySID = 1, .metadata = metadata});
    builder.essence(1000).essence(1000);
    builder.partition({.kind = 4});
    builder.stateFooter().randomIndexPack();
    constexpr std::size_t kPatternField = 20 + 64 + 8;
    for (std::size_t i = 0; i < 8; ++i)
        builder.bytes[kPatternField + i] = static_cast<std::uint8_t>(fields.pattern >> (8 * (7 - i)));
    return builder.bytes;
}

/// A demuxer opened on bytes in memory.
struct Opened {
    explicit Opened(Bytes content, const mxf_demuxer_config* config = nullptr, CSnitcher* sink = nullptr)
        : status{demuxer.Open(std::make_unique<zanfcp::test::MemorySource>(std::move(content)), config,
                              CLoggerT<CSnitcher>{sink})}
    {}

    mxf_file_info Info()
    {
        mxf_file_info info{};
        infoStatus = demuxer.GetFileInfo(&info);
        return info;
    }
    mxf_stream_format Stream(int index)
    {
        mxf_stream_format format{};
        streamStatus = demuxer.GetStreamFormat(index, &format, true, true);
        return format;
    }

    CMxfDemuxer demuxer;
    int status;
    int infoStatus = 1;
    int streamStatus = 1;
};

} // namespace TamrelMxf::test
