#pragma once

#include "../essence/EssenceParser.h"
#include "../essence/FileEssenceInput.h"
#include "../index/MxfIndexParser.h"
#include "../io/SourceReader.h"
#include "../klv/PartitionScanner.h"
#include "../klv/RandomIndexPack.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

namespace TamrelMxf {

/// The streams whose essence lies in one container of the file, by their indexes among `streams`. Containers come in
/// the order of their file packages.
struct SEssenceFile {
    std::uint32_t bodySid = 0;
    std::vector<std::size_t> streams;
};
/// \param streams  those that callers see
std::vector<SEssenceFile> FilesOf(std::span<const SStreamLink> links, std::span<const std::size_t> streams);

/// Edit units of essence in all that a track states, the ones in front of the first that is played included; -1 when it
/// does not say.
std::int64_t StatedDuration(const SStreamLink& link);

/// The essence parsers of an open file, and what they share.
class CDelivery {
public:
    /// All borrowed. The list of partitions is read afresh: it must name those of each container.
    CDelivery(CSourceReader& reader, const CMxfUlDict& dict, const CPartitionScanner& scanner, CMxfIndexParser& index,
              CLoggerT<CSnitcher> logger);
    CDelivery(const CDelivery&) = delete;
    CDelivery& operator=(const CDelivery&) = delete;

    /// Makes the parser of a file, unless there is one.
    /// \return 0; -1 when its essence cannot be parsed
    int Create(std::size_t file, std::vector<SEssenceTrack> tracks, const SUl& operationalPattern);
    void Free(std::size_t file) { parsers_.erase(file); }
    /// \return null when there is none
    CEssenceParser* Find(std::size_t file) const;
    /// The parser for the essence of a container, or null.
    CEssenceParser* FindSid(std::uint32_t bodySid) const;
    CEssenceInput& Input() { return input_; }

private:
    static std::unique_ptr<CRandomIndexPack> ListPartitions(CMediaSource& source, const CMxfUlDict& dict,
                                                            const CPartitionScanner& scanner, CMxfIndexParser& index);

    struct SParser {
        std::uint32_t bodySid = 0;
        std::unique_ptr<CEssenceParser> parser;
    };

    CFileEssenceInput input_;
    std::unique_ptr<CRandomIndexPack> partitions_;
    SEssenceContext context_;
    std::map<std::size_t, SParser> parsers_;
};

} // namespace TamrelMxf
