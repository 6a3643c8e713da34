#include "mxf/index/MxfIndexParser.h"

#include "mxf/Limits.h"
#include "mxf/Status.h"
#include "mxf/index/IndexTable.h"
#include "mxf/io/WindowSource.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/PartitionReading.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <utility>

namespace TamrelMxf {
namespace {

/// Temporal offsets are 8 bits wide: they reach that far.
constexpr std::int64_t kReach = 128;
/// A partition that takes more is read block by block: what is foreseen wrongly must not cost much.
constexpr std::int64_t kMostAhead = 64 << 10;

std::int64_t Behind(std::int64_t position, std::uint64_t count)
{
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    return count > kMost - static_cast<std::uint64_t>(position) ? std::numeric_limits<std::int64_t>::max()
                                                                : position + static_cast<std::int64_t>(count);
}

} // namespace

struct CMxfIndexParser::SImpl {
    /// What came of the search for segments in one partition.
    struct SVisit {
        std::int64_t start = -1; ///< place of what stands behind pack and header metadata; -1 until it is there
        std::uint64_t indexByteCount = 0;
        bool hasSegment = false;
        bool isWhole = false; ///< nothing will come behind what was found
    };
    struct SRead {
        std::int64_t end = 0;
        std::int64_t partition = 0;
    };

    int LoadPartition(CMediaSource& source, const SPartitionExtent& extent, std::uint32_t indexSid);
    int Walk(CMediaSource& source, const SPartitionExtent& extent, SVisit& visit, std::uint32_t indexSid);
    static std::int64_t FindStart(CMediaSource& source, const SPartitionExtent& extent);
    int LoadSegment(CMediaSource& source, std::int64_t position, std::int64_t length, std::uint32_t indexSid);
    bool IsFull();
    int Import(std::span<const std::uint8_t> value, std::int64_t rank, std::uint32_t indexSid);
    CIndexTable* Known(std::uint32_t indexSid);
    bool IsWhole(std::int64_t partition) const;
    std::size_t Foreseen() const;
    bool LoadMore();
    CIndexTable* LoadAny(std::uint32_t indexSid);
    CIndexTable* LoadAll(std::uint32_t indexSid);
    CIndexTable* LoadAround(std::uint32_t indexSid, std::int64_t editUnit);

    CSourceReader* reader = nullptr;
    CLoggerT<CSnitcher> logger;
    CMxfUlDict dict; // nothing of a partition pack needs a name here
    std::map<std::uint32_t, CIndexTable> tables;
    std::map<std::int64_t, SVisit> visits; // by place of the partition
    std::map<std::int64_t, SRead> read;    // segments, by their place
    std::vector<std::int64_t> waiting;     // partitions that were not read yet, ascending
    std::size_t batch = 1;                 // partitions that the next question reads first
    std::array<std::int64_t, 2> taken{};   // bytes from pack to table of those that were read last
    std::size_t segmentCount = 0;          // of those that came, used or not
    std::int64_t bytesRead = 0;            // of segments
    std::int64_t lastRank = -1;
    bool isLimitLogged = false;
};

CMxfIndexParser::CMxfIndexParser(CSourceReader* reader, CLoggerT<CSnitcher> logger) : impl_{std::make_unique<SImpl>()}
{
    impl_->reader = reader;
    impl_->logger = logger;
}

CMxfIndexParser::~CMxfIndexParser() = default;

void CMxfIndexParser::Reset()
{
    auto fresh = std::make_unique<SImpl>();
    fresh->reader = impl_->reader;
    fresh->logger = impl_->logger;
    impl_ = std::move(fresh);
}

bool CMxfIndexParser::SImpl::IsFull()
{
    if (segmentCount < kMaxIndexSegments) return false;
    if (!std::exchange(isLimitLogged, true)) logger.LogWarning("more than %zu index table segments", kMaxIndexSegments);
    return true;
}

int CMxfIndexParser::SImpl::Import(std::span<const std::uint8_t> value, std::int64_t rank, std::uint32_t indexSid)
{
    if (IsFull()) return kFailed;
    ++segmentCount;
    auto segment = std::make_unique<CMxfIndexSegment>();
    const int status = segment->Import(value);
    if (status == kFailed) return status;
    if (segment->indexSid == 0) segment->indexSid = indexSid;
    if (!CIndexTable::Accepts(*segment)) return segment->UnitCount() > 0 ? kFailed : status;
    lastRank = std::max(lastRank, rank);
    CIndexTable& table = tables[segment->indexSid];
    table.Add(std::move(segment), rank);
    return status;
}

int CMxfIndexParser::ImportSegment(const CKlv& klv)
{
    if (klv.IsEmpty() || !klv.Key().MatchesAnyVersion(Keys::kIndexTableSegment)) return kOutOfRange;
    return impl_->Import(klv.Value(), impl_->lastRank + 1, 0);
}

int CMxfIndexParser::SImpl::LoadSegment(CMediaSource& source, std::int64_t position, std::int64_t length,
                                        std::uint32_t indexSid)
{
    // Segments that are told to lie inside each other must not cost more than the file has bytes.
    const std::int64_t size = source.GetSize();
    if (size >= 0 && length > size - bytesRead) return kCutShort;
    CKlv klv;
    if (source.Seek(position) != 0) return kCutShort;
    if (const int status = klv.LoadFrom(&source); status != kSuccess) return status;
    bytesRead += length;
    (void)Import(klv.Value(), position, indexSid); // one that cannot be used does not hide those behind it
    return kSuccess;
}

/// The place of what stands behind pack, header metadata and the fill around them. \return -1 when nothing does
std::int64_t CMxfIndexParser::SImpl::FindStart(CMediaSource& source, const SPartitionExtent& extent)
{
    const std::int64_t packEnd = Behind(extent.position, static_cast<std::uint64_t>(extent.packSize));
    // Not in the standard: some writers count the fill behind the pack as header metadata.
    for (const std::int64_t metadata : {SkipFill(source, packEnd), packEnd}) {
        if (metadata < 0) continue;
        SKlvHeader header;
        const std::int64_t start = SkipFill(source, Behind(metadata, extent.headerByteCount));
        if (start >= 0 && ReadKlvHeader(source, start, header) == kSuccess) return start;
    }
    return -1;
}

/// Reads segments up to the first KLV behind the counted bytes that is neither one nor fill.
int CMxfIndexParser::SImpl::Walk(CMediaSource& source, const SPartitionExtent& extent, SVisit& visit,
                                 std::uint32_t indexSid)
{
    const std::int64_t counted = Behind(visit.start, extent.indexByteCount);
    std::int64_t at = visit.start;
    for (int others = 0; others <= kMaxFillsInARow;) {
        if (const auto known = read.find(at); known != read.end()) {
            visit.hasSegment = true;
            if (known->second.partition != extent.position) break; // so is all that follows
            at = known->second.end;
            continue;
        }
        SKlvHeader header;
        const int status = ReadKlvHeader(source, at, header);
        if (status == kCutShort) return at < counted ? kCutShort : kSuccess; // more may come
        const bool isSegment = status == kSuccess && header.key.MatchesAnyVersion(Keys::kIndexTableSegment);
        const bool isExpected = isSegment || at < counted || Keys::IsFill(header.key);
        if (status != kSuccess || header.IsIndefinite() || !isExpected || (isSegment && IsFull())) break;
        const std::int64_t end = Behind(at, static_cast<std::uint64_t>(header.TotalSize()));
        if (isSegment) {
            const int loaded = LoadSegment(source, at, header.length, indexSid);
            if (loaded == kCutShort) return loaded;
            visit.hasSegment = visit.hasSegment || loaded == kSuccess;
            read.emplace(at, SRead{.end = end, .partition = extent.position});
        }
        others = isSegment ? 0 : others + 1;
        at = end;
    }
    visit.isWhole = true;
    return kSuccess;
}

int CMxfIndexParser::SImpl::LoadPartition(CMediaSource& source, const SPartitionExtent& extent, std::uint32_t indexSid)
{
    if (extent.position < 0 || extent.packSize < 0) return kFailed;
    SVisit& visit = visits[extent.position];
    int status = kSuccess;
    if (!visit.isWhole || visit.indexByteCount != extent.indexByteCount) {
        visit.indexByteCount = extent.indexByteCount;
        if (visit.start < 0) visit.start = FindStart(source, extent);
        if (visit.start < 0) return extent.indexByteCount > 0 ? kCutShort : kFailed;
        status = Walk(source, extent, visit, indexSid);
    }
    if (status != kSuccess) return status;
    return visit.hasSegment ? kSuccess : kFailed;
}

int CMxfIndexParser::LoadSegmentFromPartition(const CPartitionPack& partition)
{
    CMediaSource* const source = impl_->reader != nullptr ? impl_->reader->Source() : nullptr;
    return source != nullptr ? impl_->LoadPartition(*source, partition.extent, partition.indexSID) : kFailed;
}

bool CMxfIndexParser::SImpl::IsWhole(std::int64_t partition) const
{
    const auto visit = visits.find(partition);
    return visit != visits.end() && visit->second.isWhole;
}

void CMxfIndexParser::LoadSegments(const CRandomIndexPack& rip)
{
    impl_->waiting.clear();
    for (const std::uint64_t offset : rip.Offsets()) {
        if (!std::in_range<std::int64_t>(offset)) continue;
        const auto position = static_cast<std::int64_t>(offset);
        if (!impl_->IsWhole(position)) impl_->waiting.push_back(position);
    }
    impl_->batch = 1;
}

/// Bytes that the next partition is expected to take: as many as the larger of the last two, since those without an
/// index table often stand between those with one. \return 0 when that is not known, or too much
std::size_t CMxfIndexParser::SImpl::Foreseen() const
{
    const std::int64_t most = std::max(taken[0], taken[1]);
    return most <= kMostAhead ? static_cast<std::size_t>(most) : 0;
}

/// Reads the last partitions that wait, each time twice as many as before: what they say stands, since none behind
/// them is unread, and tables are not put together anew for every one of a long file.
bool CMxfIndexParser::SImpl::LoadMore()
{
    CMediaSource* const source = reader != nullptr ? reader->Source() : nullptr;
    if (source == nullptr || waiting.empty()) return false;
    CWindowSource window{*source};
    for (std::size_t i = 0; i < batch && !waiting.empty(); ++i) {
        const std::int64_t position = waiting.back();
        waiting.pop_back();
        if (IsWhole(position)) continue; // it was loaded at once meanwhile
        window.Expect(position, Foreseen());
        const auto pack = ReadPartitionPackAt(window, dict, position);
        const int status = pack ? LoadPartition(window, pack->extent, pack->indexSID) : kFailed;
        taken = {window.Reached(), taken[0]};
        const bool isMissed = !pack || (pack->HasIndexTable() && status == kFailed) || status == kCutShort;
        if (isMissed) logger.LogError("Cannot load index from partition at %.0f", static_cast<double>(position));
    }
    batch *= 2;
    return true;
}

/// A table without IndexSID answers for every one that has none.
CIndexTable* CMxfIndexParser::SImpl::Known(std::uint32_t indexSid)
{
    auto table = tables.find(indexSid);
    if (table == tables.end()) table = tables.find(0);
    return table == tables.end() ? nullptr : &table->second;
}

CIndexTable* CMxfIndexParser::SImpl::LoadAny(std::uint32_t indexSid)
{
    while (!tables.contains(indexSid) && LoadMore()) {
    }
    return Known(indexSid);
}

CIndexTable* CMxfIndexParser::SImpl::LoadAll(std::uint32_t indexSid)
{
    while (LoadMore()) {
    }
    return Known(indexSid);
}

/// Loads until the edit unit and those that its place in display order depends on are known, if they are at all.
CIndexTable* CMxfIndexParser::SImpl::LoadAround(std::uint32_t indexSid, std::int64_t editUnit)
{
    if (editUnit < 0) return nullptr;
    const std::int64_t last = editUnit > CMxfIndexSegment::kUnbounded - kReach - 1 ? editUnit : editUnit + kReach;
    while (!waiting.empty()) {
        const auto table = tables.find(indexSid);
        if (table != tables.end() && table->second.Covers(editUnit - kReach, last)) break;
        if (!LoadMore()) break;
    }
    return Known(indexSid);
}

void CMxfIndexParser::DropBefore(std::uint32_t indexSid, std::int64_t editUnit)
{
    if (CIndexTable* const table = impl_->Known(indexSid)) table->DropBefore(editUnit);
}

bool CMxfIndexParser::HasTable(std::uint32_t indexSid)
{
    return impl_->LoadAny(indexSid) != nullptr;
}

const std::vector<const CMxfIndexSegment*>& CMxfIndexParser::Segments(std::uint32_t indexSid)
{
    static const std::vector<const CMxfIndexSegment*> none;
    CIndexTable* const table = impl_->LoadAll(indexSid);
    return table != nullptr ? table->Segments() : none;
}

std::optional<std::int64_t> CMxfIndexParser::CoveredUnits(std::uint32_t indexSid)
{
    CIndexTable* const table = impl_->LoadAll(indexSid);
    return table != nullptr ? table->CoveredUnits() : 0;
}

SRational CMxfIndexParser::EditRate(std::uint32_t indexSid)
{
    CIndexTable* const table = impl_->LoadAny(indexSid);
    return table != nullptr && !table->Segments().empty() ? table->Segments().front()->editRate : SRational{};
}

std::optional<std::uint32_t> CMxfIndexParser::ConstantSize(std::uint32_t indexSid)
{
    CIndexTable* const table = impl_->LoadAll(indexSid);
    return table != nullptr ? table->ConstantSize() : std::nullopt;
}

std::optional<SIndexedUnit> CMxfIndexParser::Find(std::uint32_t indexSid, std::int64_t editUnit)
{
    CIndexTable* const table = impl_->LoadAround(indexSid, editUnit);
    return table != nullptr ? table->Find(editUnit) : std::nullopt;
}

std::optional<std::int64_t> CMxfIndexParser::StoredAt(std::uint32_t indexSid, std::int64_t position)
{
    CIndexTable* const table = impl_->LoadAround(indexSid, position);
    return table != nullptr ? table->StoredAt(position) : std::nullopt;
}

std::int64_t CMxfIndexParser::ReorderDelay(std::uint32_t indexSid)
{
    CIndexTable* const table = impl_->LoadAll(indexSid);
    return table != nullptr ? table->ReorderDelay() : 0;
}

std::optional<std::int64_t> CMxfIndexParser::UnitAtOffset(std::uint32_t indexSid, std::int64_t streamOffset)
{
    CIndexTable* const table = impl_->LoadAll(indexSid);
    return table != nullptr ? table->UnitAtOffset(streamOffset) : std::nullopt;
}

std::optional<std::int64_t> CMxfIndexParser::ElementOffset(std::uint32_t indexSid, std::int64_t editUnit,
                                                           std::size_t element)
{
    CIndexTable* const table = impl_->LoadAround(indexSid, editUnit);
    return table != nullptr ? table->ElementOffset(editUnit, element) : std::nullopt;
}

} // namespace TamrelMxf
