#include "mxf/demuxer/WrappingProbe.h"

#include "mxf/Limits.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/PartitionReading.h"

#include <memory>

namespace TamrelMxf {
namespace {

constexpr int kMostPartitionsInFront = 16;

/// The place of the first essence element of a stream, stepping from partition to partition. -1: not found
std::int64_t FirstElement(CMediaSource& source, const CMxfUlDict& dict, const CPartitionPack& header,
                          std::uint32_t bodySid)
{
    SPartitionExtent extent = header.extent;
    std::uint32_t partitionSid = header.bodySID;
    for (int i = 0; i < kMostPartitionsInFront; ++i) {
        const std::int64_t at = FindEssenceStart(source, extent);
        SKlvHeader klv;
        if (at <= extent.position || ReadKlvHeader(source, at, klv) != kSuccess) return -1;
        if (Keys::IsEssenceElement(klv.key)) return partitionSid == bodySid ? at : -1;
        if (!Keys::IsPartitionPack(klv.key)) return -1;
        const auto next = ReadPartitionPackAt(source, dict, at);
        if (!next) return -1;
        extent = next->extent;
        partitionSid = next->bodySID;
    }
    return -1;
}

EWrapping WrappingAt(CMediaSource& source, std::int64_t at)
{
    SKlvHeader first;
    if (at < 0 || ReadKlvHeader(source, at, first) != kSuccess || first.IsIndefinite()) return EWrapping::unknown;
    const std::int64_t size = source.GetSize();
    if (first.TotalSize() > size - at) return EWrapping::unknown;
    const std::int64_t next = SkipFill(source, at + first.TotalSize());
    SKlvHeader second;
    if (next >= size || ReadKlvHeader(source, next, second) != kSuccess) return EWrapping::unknown;
    return Keys::IsEssenceElement(second.key) ? EWrapping::frame : EWrapping::clip;
}

} // namespace

EWrapping ProbeWrapping(CMediaSource& source, const CMxfUlDict& dict, const CPartitionPack& header,
                        std::uint32_t bodySid, std::int64_t editUnits)
{
    if (editUnits <= 1 || bodySid == 0) return EWrapping::unknown;
    const std::int64_t place = source.GetPos();
    const EWrapping wrapping = WrappingAt(source, FirstElement(source, dict, header, bodySid));
    if (place >= 0) (void)source.Seek(place);
    return wrapping;
}

} // namespace TamrelMxf
