#include "mxf/demuxer/MxfDemuxer.h"

#include "mxf/Status.h"
#include "mxf/demuxer/AvcFacts.h"
#include "mxf/demuxer/Delivery.h"
#include "mxf/essence/EssenceParser.h"
#include "mxf/essence/EssenceWalker.h"
#include "mxf/essence/FileEssenceInput.h"
#include "mxf/essence/PresentInput.h"
#include "mxf/essence/TrackMatch.h"
#include "mxf/klv/PartitionReading.h"

#include <algorithm>
#include <utility>

namespace TamrelMxf {

std::vector<SEssenceTrack> CMxfDemuxer::EssenceTracks(int file) const
{
    std::vector<SEssenceTrack> tracks;
    const std::vector<SEssenceFile> files = FilesOf(streams_, leaders_);
    if (file < 0 || std::cmp_greater_equal(file, files.size())) return tracks;
    for (const std::size_t stream : files[static_cast<std::size_t>(file)].streams) {
        const std::size_t link = leaders_[stream];
        tracks.push_back({.stream = static_cast<std::uint32_t>(stream),
                          .format = formats_[link],
                          .offset = offsets_[link],
                          .duration = StatedDuration(streams_[link])});
    }
    return tracks;
}

int CMxfDemuxer::CreateParser(int file)
{
    if (!isHeaderParsed_ || !source_) return kNotOpen;
    for (std::size_t stream = 0; stream < formats_.size(); ++stream)
        ProbeCoding(stream); // whether pictures depend on others, and parameter sets that the stream may leave out
    std::vector<SEssenceTrack> tracks = EssenceTracks(file);
    if (tracks.empty()) return kOutOfRange;
    if (!reader_.IsComplete()) reader_.SetComplete(IsMxfComplete());
    if (!index_) index_ = std::make_unique<CMxfIndexParser>(&reader_, logger_);
    if (!delivery_) delivery_ = std::make_unique<CDelivery>(reader_, Dict(), scanner_, *index_, logger_);
    return delivery_->Create(static_cast<std::size_t>(file), std::move(tracks),
                             scanner_.HeaderPartition()->operationalPattern);
}

int CMxfDemuxer::FreeParser(int file)
{
    if (delivery_ && file >= 0) delivery_->Free(static_cast<std::size_t>(file));
    return kSuccess;
}

CEssenceParser* CMxfDemuxer::FindParser(int file) const
{
    return delivery_ && file >= 0 ? delivery_->Find(static_cast<std::size_t>(file)) : nullptr;
}

int CMxfDemuxer::AddStream(int file, int stream, SMediaStream* receiver)
{
    if (receiver == nullptr) return kNullArgument;
    if (!isHeaderParsed_) return kNotOpen;
    CEssenceParser* const parser = FindParser(file);
    if (parser == nullptr || stream < 0) return kOutOfRange;
    return parser->AddStream(static_cast<std::uint32_t>(stream), receiver);
}

int CMxfDemuxer::RemoveStream(int file, int stream)
{
    if (!isHeaderParsed_) return kNotOpen;
    CEssenceParser* const parser = FindParser(file);
    if (parser == nullptr || stream < 0) return kOutOfRange;
    return parser->RemoveStream(static_cast<std::uint32_t>(stream));
}

int CMxfDemuxer::Push(int file)
{
    if (!isHeaderParsed_) return kNotOpen;
    CEssenceParser* const parser = FindParser(file);
    return parser == nullptr ? kOutOfRange : parser->Push();
}

int CMxfDemuxer::Seek(int file, mxf_dmuxer_seek* seek)
{
    if (seek == nullptr) return kNullArgument;
    if (!isHeaderParsed_) return kNotOpen;
    CEssenceParser* const parser = FindParser(file);
    return parser == nullptr ? kOutOfRange : parser->Seek(*seek);
}

int CMxfDemuxer::GetIdxEntryInfo(int file, int sample, mxf_sample_info* info)
{
    if (info == nullptr) return kNullArgument;
    if (!isHeaderParsed_) return kNotOpen;
    CEssenceParser* const parser = FindParser(file);
    return parser == nullptr ? kOutOfRange : parser->GetSampleInfo(sample, *info);
}

int CMxfDemuxer::FillSampleOffset(mxf_sample_info* info)
{
    if (info == nullptr) return kNullArgument;
    if (!isHeaderParsed_) return kNotOpen;
    CEssenceParser* const parser = delivery_ ? delivery_->FindSid(info->body_sid) : nullptr;
    return parser == nullptr ? kOutOfRange : parser->FillSampleOffset(*info);
}

int CMxfDemuxer::GetKlvInfo(std::int64_t position, std::int64_t* keyLength, std::int64_t* valueLength)
{
    if (keyLength == nullptr || valueLength == nullptr) return kNullArgument;
    if (!source_) return kNotOpen;
    SKlvHeader header;
    const int status = position < 0 ? kCutShort : ReadKlvHeader(*source_, position, header);
    if (status != kSuccess) return status;
    *keyLength = header.HeaderSize();
    *valueLength = header.length;
    return kSuccess;
}

/// Looks at the first picture of an AVC stream, without waiting for one.
void CMxfDemuxer::ProbeCoding(std::size_t stream)
{
    constexpr std::size_t kMostHead = std::size_t{64} << 10;
    constexpr int kMostKlvs = 256;
    SStreamFormat& format = formats_[stream];
    if (format.essenceKind != EEssenceKind::avc || isProbed_[stream]) return;
    isProbed_[stream] = true;
    if (!source_ || format.bodySid == 0) return CompleteAvcFormat(format, {});

    CFileEssenceInput file{reader_};
    CPresentInput present{file};
    CRandomIndexPack partitions{source_.get(), Dict(), scanner_.RunInCorrection()};
    const SEssenceContext context{.input = present,
                                  .dict = Dict(),
                                  .partitions = partitions,
                                  .index = nullptr,
                                  .start = {.position = scanner_.HeaderPartition()->extent.position},
                                  .logger = {}};
    const SEssenceTrack track{.stream = 0, .format = format};
    CTrackMatch match{std::span{&track, 1}};
    CEssenceWalker walker{context, format.bodySid};
    std::span<const std::uint8_t> head;
    for (int i = 0; i < kMostKlvs && head.empty() && walker.Next() == CEssenceWalker::EStep::found; ++i) {
        const SEssenceKlv& klv = walker.Klv();
        if (!klv.isSystem && match.Find(klv.key)) {
            const std::int64_t length = klv.length < 0 ? std::int64_t{kMostHead} : klv.length;
            head = file.Peek(klv.value, std::min(kMostHead, static_cast<std::size_t>(length)));
        }
        walker.Skip();
    }
    CompleteAvcFormat(format, head);
}

/// What the first index table segment of the stream that leads the clip says: the bytes of its edit units.
std::uint32_t CMxfDemuxer::IndexValue()
{
    if (!index_) return 0;
    const SStreamFormat* leading = nullptr;
    for (const std::size_t link : leaders_) {
        const SStreamFormat& format = formats_[link];
        if (format.indexSid == 0) continue;
        if (leading == nullptr || (format.type == EStreamType::picture && leading->type != EStreamType::picture))
            leading = &format;
    }
    if (leading == nullptr) return static_cast<std::uint32_t>(-1);
    const auto& segments = index_->Segments(leading->indexSid);
    return segments.empty() ? static_cast<std::uint32_t>(-1) : segments.front()->editUnitByteCount;
}

/// What the index tables say of the duration, when they are loaded and the header metadata does not say it.
std::optional<SIndexExtent> CMxfDemuxer::IndexExtent()
{
    if (!index_) return std::nullopt;
    for (const EStreamType type : {EStreamType::picture, EStreamType::sound}) {
        for (std::size_t i = 0; i < formats_.size(); ++i) {
            const SStreamFormat& format = formats_[i];
            if (format.type != type || format.indexSid == 0) continue;
            const std::int64_t covered = index_->CoveredUnits(format.indexSid).value_or(0);
            const std::int64_t played = covered - std::max<std::int64_t>(offsets_[i], 0);
            if (played > 0) return SIndexExtent{played, index_->EditRate(format.indexSid)};
        }
    }
    return std::nullopt;
}

} // namespace TamrelMxf
