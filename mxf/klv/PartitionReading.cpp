#include "mxf/klv/PartitionReading.h"

#include "mxf/Limits.h"
#include "mxf/klv/Keys.h"

#include <array>
#include <span>

namespace TamrelMxf {

namespace {

/// position + count, -1 when that leaves the range of a position or either is negative.
std::int64_t Behind(std::int64_t position, std::uint64_t count)
{
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    if (position < 0 || count > kMost - static_cast<std::uint64_t>(position)) return -1;
    return position + static_cast<std::int64_t>(count);
}

bool IsKlvAt(CMediaSource& source, std::int64_t position)
{
    SKlvHeader header;
    return position >= 0 && ReadKlvHeader(source, position, header) == kSuccess;
}

} // namespace

int ReadKlvHeader(CMediaSource& source, std::int64_t position, SKlvHeader& header)
{
    std::array<std::uint8_t, SKlvHeader::kProbeSize> probe{};
    if (source.Seek(position) != 0) return kCutShort;
    const std::int64_t got = source.Read(probe.data(), probe.size());
    if (got < 0) return kCutShort;
    return header.Parse(std::span{probe}.first(static_cast<std::size_t>(got)));
}

std::unique_ptr<CPartitionPack> ReadPartitionPackAt(CMediaSource& source, const CMxfUlDict& dict, std::int64_t position)
{
    SKlvHeader header;
    if (position < 0 || ReadKlvHeader(source, position, header) != kSuccess) return nullptr;
    if (!Keys::IsPartitionPack(header.key) || header.length > kMaxPartitionPackBytes) return nullptr;
    CKlv klv;
    if (source.Seek(position) != 0 || klv.LoadFrom(&source) != kSuccess) return nullptr;
    return CPartitionPack::CreateFrom(&klv, dict, position);
}

std::int64_t SkipFill(CMediaSource& source, std::int64_t position)
{
    SKlvHeader header;
    for (int i = 0; i < kMaxFillsInARow && position >= 0; ++i) {
        if (ReadKlvHeader(source, position, header) != kSuccess) break;
        if (!Keys::IsFill(header.key) || header.IsIndefinite()) break;
        position = Behind(position, static_cast<std::uint64_t>(header.TotalSize()));
    }
    return position;
}

std::int64_t FindEssenceStart(CMediaSource& source, const SPartitionExtent& partition)
{
    const std::int64_t packEnd = Behind(partition.position, static_cast<std::uint64_t>(partition.packSize));
    std::int64_t at = Behind(Behind(SkipFill(source, packEnd), partition.headerByteCount), partition.indexByteCount);
    // Not in the standard: some writers count the fill behind the pack as header metadata.
    if (!IsKlvAt(source, at)) at = Behind(Behind(packEnd, partition.headerByteCount), partition.indexByteCount);
    if (!IsKlvAt(source, at)) return -1;

    // An index table that the pack does not count is stepped over as well.
    SKlvHeader header;
    for (int i = 0; i < kMaxIndexSegmentsInARow; ++i) {
        at = SkipFill(source, at);
        if (at < 0 || ReadKlvHeader(source, at, header) != kSuccess) return -1;
        if (!header.key.MatchesAnyVersion(Keys::kIndexTableSegment) || header.IsIndefinite()) return at;
        at = Behind(at, static_cast<std::uint64_t>(header.TotalSize()));
    }
    return -1;
}

} // namespace TamrelMxf
