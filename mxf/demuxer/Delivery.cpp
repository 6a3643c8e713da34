#include "mxf/demuxer/Delivery.h"

#include "mxf/Limits.h"
#include "mxf/klv/PartitionReading.h"

#include <algorithm>
#include <utility>

namespace TamrelMxf {

std::vector<SEssenceFile> FilesOf(std::span<const SStreamLink> links, std::span<const std::size_t> streams)
{
    std::vector<SEssenceFile> files;
    for (std::size_t stream = 0; stream < streams.size(); ++stream) {
        const SStreamLink& link = links[streams[stream]];
        if (!link.IsInFile()) continue;
        auto file = std::ranges::find(files, link.bodySid, &SEssenceFile::bodySid);
        if (file == files.end()) file = files.insert(files.end(), {.bodySid = link.bodySid, .streams = {}});
        file->streams.push_back(stream);
    }
    return files;
}

std::int64_t StatedDuration(const SStreamLink& link)
{
    std::optional<std::int64_t> duration = link.track->sequence.TotalDuration();
    const bool isSame = link.descriptor != nullptr && link.descriptor->sampleRate == link.track->editRate;
    if (duration.value_or(0) <= 0 && isSame) return link.descriptor->containerDuration.value_or(-1);
    if (!duration || __builtin_add_overflow(*duration, link.track->origin.value_or(0), &*duration)) return -1;
    return *duration;
}

CDelivery::CDelivery(CSourceReader& reader, const CMxfUlDict& dict, const CPartitionScanner& scanner,
                     CMxfIndexParser& index, CLoggerT<CSnitcher> logger)
    : input_{reader}, partitions_{ListPartitions(*reader.Source(), dict, scanner, index)},
      context_{.input = input_,
               .dict = dict,
               .partitions = *partitions_,
               .index = &index,
               .start = {.position = scanner.HeaderPartition()->extent.position},
               .logger = logger}
{}

/// The random index pack or, without one, the partitions that the chain from the footer back leads to. Index tables
/// that they carry are handed on.
std::unique_ptr<CRandomIndexPack> CDelivery::ListPartitions(CMediaSource& source, const CMxfUlDict& dict,
                                                            const CPartitionScanner& scanner, CMxfIndexParser& index)
{
    const std::int64_t runIn = scanner.RunInCorrection();
    if (auto listed = CRandomIndexPack::LoadFromEnd(source, dict, runIn, true)) {
        index.LoadSegments(*listed);
        return listed;
    }
    auto found = std::make_unique<CRandomIndexPack>(&source, dict, runIn);
    const CPartitionPack& header = *scanner.HeaderPartition();
    std::vector<std::unique_ptr<CPartitionPack>> chain;
    std::int64_t place = scanner.FooterPartition() != nullptr ? scanner.FooterPartition()->extent.position : -1;
    while (place > header.extent.position && chain.size() < kMaxPartitions) {
        chain.push_back(ReadPartitionPackAt(source, dict, place));
        if (!chain.back()) {
            chain.pop_back();
            break;
        }
        const std::int64_t before = ToPosition(chain.back()->previousPartition, runIn);
        place = before < place ? before : -1;
    }
    const auto take = [&](const CPartitionPack& pack) {
        (void)found->ImportPartition(&pack, pack.extent.position);
        if (pack.HasIndexTable()) (void)index.LoadSegmentFromPartition(pack);
    };
    take(header);
    std::ranges::for_each(chain.rbegin(), chain.rend(), [&](const auto& pack) { take(*pack); });
    return found;
}

int CDelivery::Create(std::size_t file, std::vector<SEssenceTrack> tracks, const SUl& operationalPattern)
{
    if (Find(file) != nullptr) return kSuccess;
    const std::uint32_t bodySid = tracks.front().format.bodySid;
    auto parser = MakeEssenceParser(context_, std::move(tracks), operationalPattern);
    if (!parser) return kFailed;
    parsers_[file] = {.bodySid = bodySid, .parser = std::move(parser)};
    return kSuccess;
}

CEssenceParser* CDelivery::Find(std::size_t file) const
{
    const auto found = parsers_.find(file);
    return found == parsers_.end() ? nullptr : found->second.parser.get();
}

CEssenceParser* CDelivery::FindSid(std::uint32_t bodySid) const
{
    for (const auto& [file, entry] : parsers_)
        if (entry.bodySid == bodySid) return entry.parser.get();
    return nullptr;
}

} // namespace TamrelMxf
