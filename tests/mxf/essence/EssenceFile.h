#pragma once

#include "mxf/demuxer/MxfDemuxer.h"
#include "mxf/essence/EssenceRecords.h"
#include "tests/support/MemorySource.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace TamrelMxf::test {

/// A sample with its bytes.
struct Taken {
    mxf_sample sample;
    std::vector<std::uint8_t> bytes;
};

/// Keeps what it is given; may refuse some of it first.
class Keeper final : public SMediaStream {
public:
    int TakeSample(const mxf_sample& sample) override
    {
        if (refusals > 0) return --refusals, 1;
        taken.push_back({sample, {sample.data, sample.data + sample.size}});
        return 0;
    }
    std::vector<std::uint8_t> All() const
    {
        std::vector<std::uint8_t> all;
        for (const Taken& one : taken)
            all.insert(all.end(), one.bytes.begin(), one.bytes.end());
        return all;
    }

    std::vector<Taken> taken;
    int refusals = 0;
};

inline std::vector<std::int64_t> Units(const Keeper& keeper)
{
    std::vector<std::int64_t> units;
    for (const Taken& one : keeper.taken)
        units.push_back(one.sample.edit_unit);
    return units;
}

/// An open file with a parser for each of its containers and a receiver for each stream.
struct Playing {
    explicit Playing(const std::string& path)
    {
        mxf_demuxer_config config{};
        config.lazy_index_loading = 1;
        status = demuxer.Open(path.c_str(), &config, nullptr);
        Begin();
    }
    explicit Playing(std::vector<std::uint8_t> bytes, CSnitcher* sink = nullptr)
    {
        status = demuxer.Open(std::make_unique<zanfcp::test::MemorySource>(std::move(bytes)), nullptr,
                              CLoggerT<CSnitcher>{sink});
        Begin();
    }
    /// Pushes each container to its end. \return the answer that ended the last one
    int PlayAll()
    {
        int result = -1;
        for (int file = 0; file < files; ++file)
            for (result = 0; result == 0 || result == 1;)
                result = demuxer.Push(file);
        return result;
    }
    /// The container that a stream lies in.
    int FileOf(int stream) { return fileOf[stream]; }
    /// The sample that follows a seek; nothing when it fails.
    const Taken* After(int stream, std::int64_t position, std::uint32_t flags)
    {
        streams[stream].taken.clear();
        seek = {};
        seek.stream = static_cast<std::uint32_t>(stream);
        seek.flags = flags;
        seek.position = position;
        if (demuxer.Seek(FileOf(stream), &seek) != 0) return nullptr;
        while (streams[stream].taken.empty())
            if (demuxer.Push(FileOf(stream)) != 0) return nullptr;
        return &streams[stream].taken.front();
    }

    CMxfDemuxer demuxer;
    int status = -1;
    int files = 0;
    mxf_file_info info{};
    mxf_dmuxer_seek seek{};
    std::map<int, Keeper> streams;
    std::map<int, int> fileOf;

private:
    void Begin()
    {
        if (status != 0 || demuxer.GetFileInfo(&info) != 0) return;
        while (demuxer.CreateParser(files) == 0)
            ++files;
        for (int stream = 0; stream < static_cast<int>(info.stream_count); ++stream)
            for (int file = 0; file < files; ++file)
                if (demuxer.AddStream(file, stream, &streams[stream]) == 0) fileOf[stream] = file;
    }
};

} // namespace TamrelMxf::test
