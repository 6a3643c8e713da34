#include "cli/MxfFile.h"

#include "cli/Console.h"
#include "cli/Inspection.h"
#include "cli/MxfWords.h"
#include "mxf/Limits.h"
#include "mxf/Status.h"
#include "mxf/io/BufferedFileSource.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/PartitionReading.h"

#include <algorithm>

namespace zanfcp::cli {
namespace {

using namespace TamrelMxf;

std::string refusal(int status)
{
    switch (status) {
    case kTimedOut: return "holds no track of essence";
    case kNotAKey:
    case kCutShort: return "its header is damaged";
    default: return "could not be read as an MXF file";
    }
}

class PartitionFinder {
public:
    explicit PartitionFinder(const MxfFile& file)
        : source_{*file.source}, scanner_{file.demuxer->Partitions()}, header_{*scanner_.HeaderPartition()}
    {}

    PartitionList find()
    {
        if (const CRandomIndexPack* rip = scanner_.RandomIndexPack())
            listed(*rip);
        else if (const CPartitionPack* footer = scanner_.FooterPartition())
            linked(footer->extent.position);
        else
            walked();
        return std::move(list_);
    }

private:
    bool add(std::int64_t position)
    {
        auto pack = ReadPartitionPackAt(source_, labelDictionary(), position);
        const bool isThere = pack != nullptr;
        list_.entries.push_back({.offset = position, .pack = std::move(pack)});
        return isThere;
    }

    void listed(const CRandomIndexPack& rip)
    {
        list_.way = PartitionList::Way::randomIndexPack;
        for (const std::uint64_t offset : rip.Offsets())
            if (!add(static_cast<std::int64_t>(offset))) list_.isWhole = false;
    }

    void linked(std::int64_t position)
    {
        list_.way = PartitionList::Way::links;
        while (position > header_.extent.position && list_.entries.size() < kMaxPartitions && add(position)) {
            const std::int64_t previous =
                ToPosition(list_.entries.back().pack->previousPartition, scanner_.RunInCorrection());
            if (previous >= position) break; // the links lead down, or nowhere
            position = previous;
        }
        list_.isWhole = position == header_.extent.position;
        add(header_.extent.position);
        std::ranges::reverse(list_.entries);
    }

    void walked()
    {
        list_.way = PartitionList::Way::walk;
        list_.isWhole = false;
        const std::int64_t size = source_.GetSize();
        add(header_.extent.position);
        std::int64_t position = FindEssenceStart(source_, header_.extent);
        for (int steps = 0; steps < kMaxKlvsWalked && position >= 0; ++steps) {
            SKlvHeader klv;
            if (position == size) list_.isWhole = true;
            if (ReadKlvHeader(source_, position, klv) != kSuccess || klv.IsIndefinite()) return;
            if (Keys::IsPartitionPack(klv.key)) {
                if (!add(position)) return;
                position = FindEssenceStart(source_, list_.entries.back().pack->extent);
            } else if (__builtin_add_overflow(position, klv.TotalSize(), &position)) {
                return;
            }
        }
    }

    CMediaSource& source_;
    const CPartitionScanner& scanner_;
    const CPartitionPack& header_;
    PartitionList list_;
};

} // namespace

MxfFile openMxfFile(const std::string& path, Console& console, std::uint32_t timeout)
{
    MxfFile file{.path = path, .demuxer = nullptr, .source = nullptr};
    console.beginStep(path);
    if (const std::string problem = obstacle(path); !problem.empty()) {
        console.error(path + ": " + problem);
        return file;
    }
    auto demuxer = std::make_unique<CMxfDemuxer>();
    mxf_demuxer_config config{};
    config.timeout = timeout;
    config.lazy_index_loading = 1;
    config.flag = 1;
    int status = demuxer->Open(path.c_str(), &config, &console.mxfSink());
    if (status == kSuccess) status = demuxer->GetFileInfo(&file.info);
    file.source = CBufferedFileSource2::Create(path.c_str(), 0);
    if (status == kSuccess && file.source) {
        file.demuxer = std::move(demuxer);
        return file;
    }
    const bool isEmpty = file.source && file.source->GetSize() == 0;
    console.error(path + ": " + (isEmpty ? "is empty" : refusal(status)));
    console.stepFailed();
    return file;
}

PartitionList listPartitions(const MxfFile& file)
{
    return PartitionFinder{file}.find();
}

} // namespace zanfcp::cli
