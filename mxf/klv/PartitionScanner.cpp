#include "mxf/klv/PartitionScanner.h"

#include "mxf/Limits.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/KlvSearch.h"
#include "mxf/klv/MetadataChoice.h"
#include "mxf/klv/PartitionReading.h"

#include <algorithm>
#include <optional>

namespace TamrelMxf {

namespace {

constexpr std::size_t kProbeBytes = 2048;
constexpr std::size_t kProbeSlack = 1024;
/// What the cache of a source has at hand after the first read of the probe, so that most headers cost one read.
constexpr std::size_t kFirstStepBytes = 6143;
constexpr std::size_t kUsualHeaderBytes = 16 * 1024;
constexpr int kLeastBytes = 128;

} // namespace

CPartitionClient::~CPartitionClient() = default;

void CPartitionScanner::Reset(CLoggerT<CSnitcher> logger, CPartitionClient* client, bool lazyIndexLoading)
{
    logger_ = logger;
    client_ = client;
    lazyIndexLoading_ = lazyIndexLoading;
    probe_ = {};
    probePosition_ = 0;
    metadataBegin_ = metadataEnd_ = 0;
    header_.reset();
    footer_.reset();
    chosen_.reset();
    rip_.reset();
    runInCorrection_ = 0;
    sourceSize_ = -1;
}

int CPartitionScanner::FindPartitionWithMetadata()
{
    Reset(logger_, client_, lazyIndexLoading_);
    const int got = ReadProbe(0, kProbeBytes);
    if (got == kNotOpen) return kNotOpen;
    if (got < kLeastBytes) {
        logger_.LogError("parse headers failure, no enough data");
        return got < 0 ? got : kFailed;
    }
    if (const int status = FindFirstPartition(); status != kSuccess) return status;
    if (header_->kind == EPartitionKind::header)
        chosen_ = ChooseMetadataPartition(*reader_.Source(), dict_, *header_, runInCorrection_);
    ReadMetadata();
    return kSuccess;
}

int CPartitionScanner::FindFirstPartition()
{
    std::int64_t position = 0;
    std::optional<std::int64_t> found = WalkToPartitionPack(probe_, position, logger_);
    if (!found) { // a long run-in; a short file is not waited for
        const std::int64_t size = reader_.Source()->GetSize();
        const std::size_t most = kMaxRunInBytes + kProbeBytes;
        (void)EnsureProbe(size < 0 ? most : std::min(most, static_cast<std::size_t>(size)));
        found = WalkToPartitionPack(probe_, position, logger_);
    }
    if (!found) found = SearchPartitionPack(probe_); // the run-in looks like KLV itself
    if (!found || *found > static_cast<std::int64_t>(kMaxRunInBytes)) {
        logger_.LogError("parse headers failure, no partition pack");
        return kFailed;
    }

    const auto at = static_cast<std::size_t>(*found);
    (void)EnsureProbe(at + SKlvHeader::kProbeSize);
    SKlvHeader klvHeader;
    const int status = klvHeader.Parse(std::span{probe_}.subspan(at));
    if (status != kSuccess) return status;
    if (klvHeader.IsIndefinite() || klvHeader.length > kMaxPartitionPackBytes) return kCutShort;
    if (!EnsureProbe(at + static_cast<std::size_t>(klvHeader.TotalSize()))) return kCutShort;

    CKlv klv;
    auto pack = std::make_unique<CPartitionPack>();
    if (const int viewed = klv.View(std::span{probe_}.subspan(at)); viewed != kSuccess) return viewed;
    if (const int imported = pack->ImportFrom(&klv, dict_, *found); imported != kSuccess) return imported;
    const std::int64_t stated = ToPosition(pack->thisPartition, 0);
    runInCorrection_ = stated < 0 ? 0 : stated - *found;
    header_ = std::move(pack);
    return kSuccess;
}

void CPartitionScanner::ReadMetadata()
{
    const CPartitionPack& pack = *MetadataPartition();
    if (!pack.HasMetadata()) return;
    if (chosen_) { // it lies whole in the source: no more is asked for than is there
        const std::int64_t left = reader_.Source()->GetSize() - pack.extent.position;
        const auto count = std::min(kProbeBytes, static_cast<std::size_t>(std::max<std::int64_t>(left, 0)));
        if (ReadProbe(pack.extent.position, count) < 0) return;
    }

    std::size_t at = static_cast<std::size_t>(pack.extent.position - probePosition_ + pack.extent.packSize);
    for (int i = 0; i < kMaxFillsInARow && EnsureProbe(at + SKlvHeader::kProbeSize); ++i) {
        SKlvHeader fill;
        if (fill.Parse(std::span{probe_}.subspan(at)) != kSuccess || !Keys::IsFill(fill.key)) break;
        const auto size = static_cast<std::uint64_t>(fill.TotalSize());
        if (fill.IsIndefinite() || size > kMaxHeaderMetadataBytes || at + size > kMaxHeaderMetadataBytes) break;
        at += size;
    }
    std::size_t end =
        at + static_cast<std::size_t>(std::min<std::uint64_t>(pack.extent.headerByteCount, kMaxHeaderMetadataBytes));
    // A file that ends as it should does not grow into a false count.
    if (end > probe_.size()) {
        const std::int64_t left = reader_.Source()->GetSize() - probePosition_;
        if (left >= 0 && end > static_cast<std::uint64_t>(left) &&
            CRandomIndexPack::LoadFromEnd(*reader_.Source(), dict_, runInCorrection_, false))
            end = static_cast<std::size_t>(left);
    }
    (void)EnsureProbe(end); // what is there is parsed, also of a file that was cut
    metadataEnd_ = std::min(end, probe_.size());
    metadataBegin_ = std::min(at, metadataEnd_);
}

std::span<const std::uint8_t> CPartitionScanner::Metadata() const
{
    return std::span{probe_}.subspan(metadataBegin_, metadataEnd_ - metadataBegin_);
}

std::int64_t CPartitionScanner::MetadataPosition() const
{
    return probePosition_ + static_cast<std::int64_t>(metadataBegin_);
}

int CPartitionScanner::ReadProbe(std::int64_t position, std::size_t count)
{
    probePosition_ = position;
    probe_.reserve(kUsualHeaderBytes);
    probe_.resize(count);
    const int got = reader_.ReadSource(probe_.data(), position, static_cast<int>(count));
    probe_.resize(static_cast<std::size_t>(std::max(got, 0)));
    return got;
}

/// Reads on until the probe holds `end` bytes, and some more where the source has them already.
bool CPartitionScanner::EnsureProbe(std::size_t end)
{
    if (probe_.size() >= end) return true;
    std::int64_t size = -1;
    while (probe_.size() < end) {
        // A false count in a small file must not take memory that the file cannot fill.
        const std::size_t have = probe_.size();
        const std::int64_t from = probePosition_ + static_cast<std::int64_t>(have);
        if (size < from) size = reader_.Source()->GetSize(); // it may have grown
        const std::int64_t left = std::max<std::int64_t>(size - from, 0);
        std::size_t step = end - have;
        if (static_cast<std::uint64_t>(left) >= step)
            step = std::min(step + kProbeSlack, static_cast<std::size_t>(left));
        else
            step = std::min(step, std::max(static_cast<std::size_t>(left), kReadStepBytes));
        if (have == kProbeBytes) step = std::min(step, kFirstStepBytes);
        probe_.resize(have + step);
        const int got = reader_.ReadSource(probe_.data() + have, from, static_cast<int>(step));
        probe_.resize(have + static_cast<std::size_t>(std::max(got, 0)));
        if (got < static_cast<int>(step)) break;
    }
    return probe_.size() >= end;
}

int CPartitionScanner::LoadRIP()
{
    rip_.reset();
    CMediaSource* const source = reader_.Source();
    if (source == nullptr) return kNotOpen;
    sourceSize_ = source->GetSize();
    rip_ = CRandomIndexPack::LoadFromEnd(*source, dict_, runInCorrection_, lazyIndexLoading_);
    if (!rip_) return kFailed;
    logger_.LogInfo("random index pack found, %d entries", static_cast<int>(rip_->EntryCount()));
    if (lazyIndexLoading_ && client_ != nullptr && client_->HasIndexParser()) client_->LoadSegments(*rip_);
    return kSuccess;
}

int CPartitionScanner::LoadFooter()
{
    CMediaSource* const source = reader_.Source();
    if (source == nullptr || !header_) return kNotOpen;
    if (footer_) return kSuccess;

    std::unique_ptr<CPartitionPack> footer;
    if (header_->footerPartition != 0) {
        const std::int64_t position = ToPosition(header_->footerPartition, runInCorrection_);
        footer = ReadPartitionPackAt(*source, dict_, position);
        if (!footer || footer->kind != EPartitionKind::footer) {
            const double offset = static_cast<double>(header_->footerPartition) - static_cast<double>(runInCorrection_);
            logger_.LogWarning("The header partiton has wrong footer offset (%.0f)!", offset);
            header_->footerPartition = 0;
            return LoadFooter();
        }
    } else {
        footer = FooterFromRip();
    }
    if (!footer) return kFailed;

    footer_ = std::move(footer);
    if (rip_) (void)rip_->ImportPartition(footer_.get(), footer_->extent.position);
    if (client_ == nullptr) return kSuccess;
    if (footer_->HasIndexTable() && client_->HasIndexParser()) (void)client_->LoadSegmentFromPartition(*footer_);
    const bool isParsedAlready = chosen_ && chosen_->extent.position == footer_->extent.position;
    if (footer_->HasMetadata() && !isParsedAlready) client_->ScanFooter(*footer_);
    return kSuccess;
}

std::unique_ptr<CPartitionPack> CPartitionScanner::FooterFromRip()
{
    if (!rip_ || rip_->Offsets().empty()) return nullptr;
    const auto last = static_cast<std::int64_t>(*rip_->Offsets().rbegin());
    auto footer = ReadPartitionPackAt(*reader_.Source(), dict_, last);
    return footer && footer->kind == EPartitionKind::footer ? std::move(footer) : nullptr;
}

int CPartitionScanner::ScanPartitions()
{
    CMediaSource* const source = reader_.Source();
    if (source == nullptr) return kNotOpen;
    if (!rip_) return kFailed;
    const auto offsets = rip_->Offsets(); // a copy: importing a partition adds to the set
    for (const std::uint64_t offset : offsets) {
        const auto position = static_cast<std::int64_t>(offset);
        const auto pack = ReadPartitionPackAt(*source, dict_, position);
        bool isLoaded = pack != nullptr;
        if (pack) {
            (void)rip_->ImportPartition(pack.get(), position);
            if (pack->HasIndexTable() && client_ != nullptr && client_->HasIndexParser())
                isLoaded = client_->LoadSegmentFromPartition(*pack) == kSuccess;
        }
        if (!isLoaded) logger_.LogError("Cannot load index from partition at %.0f", static_cast<double>(position));
    }
    return kSuccess;
}

bool CPartitionScanner::RefreshHeader()
{
    CMediaSource* const source = reader_.Source();
    if (source == nullptr || !header_ || header_->kind != EPartitionKind::header) return false;
    if (const std::int32_t cache = source->GetBufferSize(); cache > 0) { // it holds what was there before
        (void)source->SetBufferSize(0);
        (void)source->SetBufferSize(static_cast<std::uint32_t>(cache));
    }
    const std::int64_t position = header_->extent.position;
    auto pack = ReadPartitionPackAt(*source, dict_, position);
    if (!pack || pack->kind != EPartitionKind::header || !pack->HasMetadata()) return false;
    const std::int64_t left = source->GetSize() - position - pack->extent.packSize;
    if (left <= 0 || pack->extent.headerByteCount > static_cast<std::uint64_t>(left)) return false;

    const bool isFinal = pack->IsClosedComplete();
    header_ = std::move(pack);
    if (!isFinal && (chosen_ || (footer_ && footer_->HasMetadata()))) return false;
    const auto known = Metadata();
    const std::vector<std::uint8_t> before(known.begin(), known.end());
    chosen_.reset();
    if (ReadProbe(position, std::min(kProbeBytes, static_cast<std::size_t>(source->GetSize() - position))) < 0)
        return false;
    ReadMetadata();
    return !std::ranges::equal(before, Metadata());
}

bool CPartitionScanner::IsMxfComplete()
{
    CMediaSource* const source = reader_.Source();
    if (source == nullptr) return false;
    if (rip_ || footer_) return true;
    if (header_ && header_->footerPartition != 0 &&
        source->GetSize() <= ToPosition(header_->footerPartition, runInCorrection_))
        return false;

    const std::int64_t position = source->GetPos();
    if (position < 0) return false;
    const bool hasRip = LoadRIP() == kSuccess;
    (void)LoadFooter();
    if (hasRip && client_ != nullptr && client_->HasIndexParser()) (void)ScanPartitions();
    (void)source->Seek(position);
    return rip_ || footer_;
}

} // namespace TamrelMxf
