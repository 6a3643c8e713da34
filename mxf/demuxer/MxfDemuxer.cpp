#include "mxf/demuxer/MxfDemuxer.h"

#include "mxf/Limits.h"
#include "mxf/Status.h"
#include "mxf/demuxer/Delivery.h"
#include "mxf/demuxer/Frameworks.h"
#include "mxf/demuxer/RecordFilling.h"
#include "mxf/demuxer/WrappingProbe.h"
#include "mxf/io/BufferedFileSource.h"
#include "mxf/io/ExternalIoSource.h"
#include "mxf/klv/PartitionReading.h"
#include "mxf/metadata/HeaderSets.h"
#include "mxf/model/FooterUpdate.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace TamrelMxf {
namespace {

bool LoadsIndexOnDemand(const SUl& operationalPattern)
{
    const SOperationalPattern pattern = ParseOperationalPattern(operationalPattern);
    const bool isOp1b = pattern.itemComplexity == 1 && pattern.packageComplexity == 2;
    return pattern.IsAtom() || isOp1b;
}

/// Frames since midnight as the records hold them: a number that does not fit, such as one below 0, counts in its day.
std::uint32_t ToField(std::int64_t frames, const STimecode& counted)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::uint32_t>::max();
    if (frames < 0 || frames > kMost) {
        const std::int64_t dropped = counted.dropFrame && counted.base % 30 == 0 ? counted.base / 15 : 0; // a minute
        const std::int64_t day = 24 * (std::int64_t{3600} * counted.base - 54 * dropped);
        frames = day == 0 ? frames : (frames % day + day) % day;
    }
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(frames, 0, kMost));
}

} // namespace

/// The demuxer as the partitions see it.
class CMxfDemuxer::CClient final : public CPartitionClient {
public:
    explicit CClient(CMxfDemuxer& demuxer) : demuxer_{demuxer} {}

    bool HasIndexParser() const override { return demuxer_.index_ != nullptr; }
    int LoadSegmentFromPartition(const CPartitionPack& partition) override
    {
        return demuxer_.index_->LoadSegmentFromPartition(partition);
    }
    void LoadSegments(CRandomIndexPack& rip) override { demuxer_.index_->LoadSegments(rip); }
    void ScanFooter(const CPartitionPack& footer) override { demuxer_.ScanFooter(footer); }

private:
    CMxfDemuxer& demuxer_;
};

const CMxfUlDict& CMxfDemuxer::Dict()
{
    static const CMxfUlDict dict = [] {
        CMxfUlDict made;
        made.Init();
        return made;
    }();
    return dict;
}

CMxfDemuxer::CMxfDemuxer(CWaitClock& clock)
    : clock_{clock}, reader_{clock}, client_{std::make_unique<CClient>(*this)}, scanner_{reader_, Dict()}
{
    reader_.SetCompletenessTest([this] { return IsMxfComplete(); });
}

CMxfDemuxer::~CMxfDemuxer()
{
    CMxfDemuxer::Close();
}

void CMxfDemuxer::Close()
{
    isHeaderParsed_ = false;
    delivery_.reset();
    index_.reset();
    frameworks_.reset();
    formats_ = {};
    offsets_ = {};
    leaders_ = {};
    streams_ = {};
    walk_.reset();
    wasAsked_ = false;
    duration_ = {};
    startTimecode_ = {};
    model_ = {};
    scanner_.Reset(logger_, client_.get(), GetLazyIndexLoading());
    reader_.Attach(nullptr, 0, logger_);
    source_.reset();
}

std::unique_ptr<CMxfDemuxer> CMxfDemuxer::Create(const char* path, const mxf_demuxer_config* config,
                                                 CLoggerT<CSnitcher> logger)
{
    auto demuxer = std::make_unique<CMxfDemuxer>();
    if (demuxer->Open(path, config, logger.Sink()) != kSuccess) return nullptr;
    return demuxer;
}

std::unique_ptr<CMxfDemuxer> CMxfDemuxer::Create(std::unique_ptr<CMediaSource> source, const mxf_demuxer_config* config,
                                                 CLoggerT<CSnitcher> logger)
{
    auto demuxer = std::make_unique<CMxfDemuxer>();
    if (demuxer->Open(std::move(source), config, logger) != kSuccess) return nullptr;
    return demuxer;
}

int CMxfDemuxer::Open(const char* path, const mxf_demuxer_config* config, CSnitcher* sink)
{
    if (path == nullptr) return kNullArgument;
    Start(config, CLoggerT<CSnitcher>{sink});
    const std::int64_t start = clock_.Now();
    for (;;) {
        if (auto source = MakeSource(path)) {
            Adopt(std::move(source));
            return OpenSource();
        }
        const auto seconds = (clock_.Now() - start) / 1000;
        if (seconds > config_.timeout) {
            logger_.LogError("Unable to open file %s after %u seconds", path, static_cast<unsigned>(seconds));
            return kTimedOut;
        }
        clock_.Sleep(kPollMilliseconds);
    }
}

int CMxfDemuxer::Open(std::unique_ptr<CMediaSource> source, const mxf_demuxer_config* config,
                      CLoggerT<CSnitcher> logger)
{
    Start(config, logger);
    Adopt(std::move(source));
    return OpenSource();
}

void CMxfDemuxer::Start(const mxf_demuxer_config* config, CLoggerT<CSnitcher> logger)
{
    logger_ = logger;
    Close();
    config_ = config == nullptr ? mxf_demuxer_config{} : *config;
}

void CMxfDemuxer::Adopt(std::unique_ptr<CMediaSource> source)
{
    source_ = std::move(source);
    reader_.Attach(source_.get(), config_.timeout, logger_);
    scanner_.Reset(logger_, client_.get(), GetLazyIndexLoading());
}

std::unique_ptr<CMediaSource> CMxfDemuxer::MakeSource(const char* path) const
{
    constexpr int kMode = 0;
    if (config_.use_external_io != 0) return CExternalIoSource2::Create(path, config_.io, kMode);
    return CBufferedFileSource2::Create(path, kMode);
}

int CMxfDemuxer::OpenSource()
{
    const int status = ParseHeaders();
    if (status != kSuccess) Close();
    return status;
}

int CMxfDemuxer::ParseHeaders()
{
    const int status = scanner_.FindPartitionWithMetadata();
    return status == kSuccess ? DoParseHeaders() : status;
}

int CMxfDemuxer::DoParseHeaders()
{
    const CPartitionPack& header = *scanner_.HeaderPartition();
    if (header.kind != EPartitionKind::header) {
        logger_.LogError("First partition is not header!");
        return kFailed;
    }
    return ReadHeader();
}

int CMxfDemuxer::ParseDetachedHeaders(std::unique_ptr<CMediaSource> source)
{
    Adopt(std::move(source));
    int status = scanner_.FindPartitionWithMetadata();
    if (status == kSuccess) status = ReadHeader();
    if (status != kSuccess) {
        CMxfDemuxer::Close();
        return status;
    }
    reader_.Attach(nullptr, 0, logger_);
    source_.reset();
    return kSuccess;
}

int CMxfDemuxer::ReadHeader()
{
    const CPartitionPack& header = *scanner_.HeaderPartition();
    if (LoadsIndexOnDemand(header.operationalPattern)) {
        config_.lazy_index_loading = 1;
        scanner_.SetLazyIndexLoading(true);
    }
    const SHeaderSets sets = ReadHeaderSets(scanner_.Metadata());
    if (sets.sets.Empty()) {
        logger_.LogError("parse headers failure, no header metadata");
        return kFailed;
    }
    if (sets.isCut) logger_.LogWarning("header metadata is cut short");
    model_ = BuildHeaderModel(sets);
    if (model_.noteCount > 0) logger_.LogWarning("%zu broken references in the header metadata", model_.noteCount);
    LinkEverything();
    if (streams_.empty()) {
        logger_.LogError("parse headers failure, no essence track");
        return kTimedOut;
    }
    if (!GetLazyIndexLoading()) {
        index_ = std::make_unique<CMxfIndexParser>(&reader_, logger_);
        if (header.HasIndexTable()) (void)index_->LoadSegmentFromPartition(header);
    }
    CalculateDuration();
    isHeaderParsed_ = true;
    reader_.SetHeaderParsed(true);
    return kSuccess;
}

/// All that points into the model; to be made again whenever the model changes.
void CMxfDemuxer::LinkEverything()
{
    frameworks_.reset();
    streams_ = LinkStreams(model_);
    leaders_ = JoinStreams(streams_).Leaders();
    formats_.clear();
    formats_.reserve(streams_.size());
    for (const SStreamLink& link : streams_)
        formats_.push_back(DescribeStream(link));
    isProbed_.assign(streams_.size(), false);
    startTimecode_ = FindStartTimecode(model_);
    offsets_.assign(streams_.size(), 0);
    SetOffsets();
}

void CMxfDemuxer::SetOffsets()
{
    offsets_.clear();
    offsets_.reserve(streams_.size());
    for (const SStreamLink& link : streams_) {
        std::int64_t offset = link.track->origin.value_or(0);
        if (link.materialClip != nullptr) {
            const std::int64_t start = link.materialClip->startPosition.value_or(0);
            const SRational own = link.track->editRate.value_or(SRational{});
            const auto scaled = Rescale(start, link.materialTrack->editRate.value_or(own), own);
            if (__builtin_add_overflow(offset, scaled.value_or(start), &offset)) offset = 0;
        }
        offsets_.push_back(offset);
    }
}

void CMxfDemuxer::CalculateDuration()
{
    duration_ = TamrelMxf::CalculateDuration(model_);
    if (duration_.editUnits <= 0) duration_ = TamrelMxf::CalculateDuration(model_, SourcesBesideHeader());
}

/// What knows the duration when the header metadata does not; `model_` has that of the footer already. Asked only then,
/// as it may have to read far into the file.
SDurationSources CMxfDemuxer::SourcesBesideHeader()
{
    SDurationSources sources{.index = IndexExtent()};
    if (!sources.index || sources.index->editUnits <= 0) sources.essence = MeasureEssence();
    return sources;
}

std::optional<SEssenceExtent> CMxfDemuxer::MeasureEssence()
{
    if (!source_) return std::nullopt; // the essence is delivered from elsewhere
    const auto first = [&](EDataKind kind) {
        return std::ranges::find_if(streams_, [&](const auto& s) { return s.kind == kind && s.IsInFile(); });
    };
    auto link = first(EDataKind::picture);
    if (link == streams_.end()) link = first(EDataKind::sound);
    if (link == streams_.end()) return std::nullopt;
    const auto stream = static_cast<std::size_t>(link - streams_.begin());
    const SStreamFormat& format = formats_[stream];
    if (!walk_ || walkedStream_ != stream) walk_.emplace(format.bodySid, format.trackNumber);
    walkedStream_ = stream;
    const CEssenceWalk::SExtent there = walk_->Look(*source_, Dict(), *scanner_.HeaderPartition());

    constexpr std::uint32_t kSoundItem = 0x16; // others hold more than samples
    const bool isSamples = format.essenceKind == EEssenceKind::pcm && format.trackNumber >> 24 == kSoundItem;
    const bool isSound = link->descriptor != nullptr && link->descriptor->sound;
    if (isSamples && isSound && format.blockAlign > 0 && link->descriptor->sound->samplingRate)
        return SEssenceExtent{there.bytes / format.blockAlign, *link->descriptor->sound->samplingRate};
    // One element may be a frame or everything there is, and the bytes of a frame are not known.
    const SUl& pattern = scanner_.HeaderPartition()->operationalPattern;
    const bool isOneForAll = format.wrapping == EWrapping::clip || ParseOperationalPattern(pattern).IsAtom();
    if (there.elements <= (isOneForAll ? 1 : 0)) return std::nullopt;
    const std::int64_t units = there.elements / ElementsInEditUnit(format);
    return SEssenceExtent{std::max<std::int64_t>(units - std::max<std::int64_t>(offsets_[stream], 0), 0),
                          format.editRate};
}

bool CMxfDemuxer::IsMxfComplete()
{
    return scanner_.IsMxfComplete();
}

EMuxingMode CMxfDemuxer::DetectMuxingMode() const
{
    if (!isHeaderParsed_) return EMuxingMode::unknown;
    return TamrelMxf::DetectMuxingMode(model_, scanner_.HeaderPartition()->operationalPattern);
}

void CMxfDemuxer::ScanFooter(const CPartitionPack& footer)
{
    if (!isHeaderParsed_) return;
    const std::int64_t at = SkipFill(*source_, footer.extent.position + footer.extent.packSize);
    const std::int64_t left = source_->GetSize() - at;
    if (at < 0 || left <= 0) return;
    const auto most = std::min<std::uint64_t>(static_cast<std::uint64_t>(left), kMaxHeaderMetadataBytes);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min(most, footer.extent.headerByteCount)));
    if (source_->Seek(at) != 0) return;
    const std::int64_t got = source_->Read(bytes.data(), bytes.size());
    bytes.resize(static_cast<std::size_t>(std::max<std::int64_t>(got, 0)));

    const SUpdateReport report = UpdateFromFooter(model_, ReadHeaderSets(bytes));
    const auto forEach = [](std::size_t count, auto log) {
        for (std::size_t i = 0; i < std::min(count, kMaxModelNotes); ++i)
            log();
    };
    forEach(report.tracks.failed, [&] { logger_.LogError("footer scanning: cannot update track"); });
    forEach(report.tracks.notFound, [&] { logger_.LogError("footer scanning: cannot find track in lists"); });
    forEach(report.sequences.failed, [&] { logger_.LogError("footer scanning: cannot update sequence"); });
    forEach(report.sequences.notFound, [&] { logger_.LogWarning("footer scanning: cannot find sequence in lists"); });
    LinkEverything();
}

/// \return true when the header partition says something else than before
bool CMxfDemuxer::RefreshHeader()
{
    if (scanner_.HeaderPartition()->IsClosedComplete() || !scanner_.RefreshHeader()) return false;
    SHeaderModel fresh = BuildHeaderModel(ReadHeaderSets(scanner_.Metadata()));
    if (LinkStreams(fresh).empty()) return false; // caught in the middle of it
    model_ = std::move(fresh);
    LinkEverything();
    return true;
}

int CMxfDemuxer::GetFileInfo(mxf_file_info* info)
{
    if (info == nullptr) return kNullArgument;
    if (!isHeaderParsed_) return kNotOpen;
    const std::int64_t size = source_ ? source_->GetSize() : -1;
    if (info->file_size == size) return kSuccess;

    *info = {};
    const bool wasComplete = reader_.IsComplete();
    if (!wasComplete) reader_.SetComplete(IsMxfComplete());
    // Some writers fill in the header when they close the file, and leave the footer bare.
    const bool isRefreshed = std::exchange(wasAsked_, true) && RefreshHeader();
    if (!wasComplete || isRefreshed) CalculateDuration();
    const CPartitionPack& header = *scanner_.HeaderPartition();
    const SStartTimecode& timecode = startTimecode_;
    const SMarks marks = FindMarks(model_);
    info->duration = duration_.editUnits;
    info->edit_rate_num = duration_.editRate.num;
    info->edit_rate_den = duration_.editRate.den;
    info->file_size = size;
    info->index_value = IndexValue();
    info->stream_count = static_cast<std::uint32_t>(leaders_.size());
    for (std::size_t i = 12; i < SUl::kSize; ++i)
        info->operational_pattern = info->operational_pattern << 8 | header.operationalPattern.bytes[i];
    info->complete = reader_.IsComplete() ? 1 : 0;
    info->drop_frame = timecode.start.dropFrame ? 1 : 0;
    info->start_timecode = ToField(timecode.start.start, timecode.start);
    info->source_start_timecode = ToField(timecode.sourceStart, timecode.start);
    if (model_.preface) std::ranges::copy(model_.preface->instanceUid.bytes, info->instance_uid);
    info->header_partition_status = static_cast<std::uint32_t>(header.status);
    info->marker_count = static_cast<std::uint32_t>(model_.markers.size());
    info->timecode_base = timecode.start.base;
    info->mark_in = marks.markIn.value_or(-1);
    info->mark_out = marks.markOut.value_or(-1);
    info->timebase_track = marks.timebaseTrackId;
    if (model_.preface) info->version = model_.preface->version.value_or(0);
    info->identification_count = static_cast<std::uint32_t>(model_.identifications.size());
    info->timecode_track_number = timecode.start.trackNumber;
    info->one = 1;
    info->muxing_mode = static_cast<std::uint32_t>(DetectMuxingMode());
    return kSuccess;
}

int CMxfDemuxer::GetIdentification(mxf_identification* identification, int index) const
{
    if (identification == nullptr) return kNullArgument;
    if (!isHeaderParsed_) return kNotOpen;
    if (index < 0 || std::cmp_greater_equal(index, model_.identifications.size())) return kNoSuchItem;
    FillRecord(*identification, model_.identifications[static_cast<std::size_t>(index)]);
    return kSuccess;
}

int CMxfDemuxer::GetTopPack(mxf_top_pack* pack, bool material, int index) const
{
    if (pack == nullptr) return kNullArgument;
    if (!isHeaderParsed_) return kNotOpen;
    const CMxfPackage* found = material ? model_.MaterialPackage() : nullptr;
    int left = index;
    for (const CMxfPackage& package : model_.packages) {
        if (found != nullptr || material || index < 0) break;
        if (package.kind == CMxfPackage::EKind::source && left-- == 0) found = &package;
    }
    if (found == nullptr) return kNoSuchItem;
    FillRecord(*pack, *found);
    return kSuccess;
}

int CMxfDemuxer::GetStreamFormat(int stream, mxf_stream_format* format, bool withExtraData, bool probeEssence)
{
    if (format == nullptr) return kNullArgument;
    if (!isHeaderParsed_) return kNotOpen;
    if (stream < 0 || std::cmp_greater_equal(stream, leaders_.size())) return kOutOfRange;
    const std::size_t index = leaders_[static_cast<std::size_t>(stream)];
    if (probeEssence) ProbeCoding(index);
    FillRecord(*format, formats_[index], offsets_[index], withExtraData);
    const SRational timecodeRate = startTimecode_.start.editRate;
    format->timecode_rate_num = timecodeRate.num;
    format->timecode_rate_den = timecodeRate.den;
    const bool isAlone = streams_.size() == 1 && DetectMuxingMode() == EMuxingMode::singleStream;
    if (!probeEssence || !isAlone || !source_) return kSuccess;
    const CPartitionPack& header = *scanner_.HeaderPartition();
    const EWrapping found = ProbeWrapping(*source_, Dict(), header, format->body_sid, duration_.editUnits);
    const bool isField = found == EWrapping::frame && formats_[index].wrapping == EWrapping::field;
    if (found != EWrapping::unknown && !isField) format->wrapping = static_cast<std::uint32_t>(found);
    return kSuccess;
}

int CMxfDemuxer::GetDmFramework(int index, mxf_dmd_framework* framework, std::uint32_t* count,
                                const mxf_dmd_framework** list)
{
    if (count == nullptr && (framework == nullptr || list != nullptr)) return kNullArgument;
    if (!isHeaderParsed_) return kNotOpen;
    if (!frameworks_) frameworks_ = std::make_unique<CFrameworkList>(model_);
    const std::vector<mxf_dmd_framework>& records = frameworks_->Records();
    if (framework != nullptr) {
        if (index < 0 || std::cmp_greater_equal(index, records.size())) return kNoSuchItem;
        *framework = records[static_cast<std::size_t>(index)];
    }
    if (list != nullptr)
        for (std::size_t i = 0; i < std::min<std::size_t>(*count, records.size()); ++i)
            list[i] = &records[i];
    if (count != nullptr) *count = static_cast<std::uint32_t>(records.size());
    return kSuccess;
}

} // namespace TamrelMxf
