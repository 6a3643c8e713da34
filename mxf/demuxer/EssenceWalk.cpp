#include "mxf/demuxer/EssenceWalk.h"

#include "mxf/Limits.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/PartitionReading.h"

#include <algorithm>

namespace TamrelMxf {

CEssenceWalk::SExtent CEssenceWalk::Look(CMediaSource& source, const CMxfUlDict& dict, const CPartitionPack& header)
{
    openBytes_ = 0;
    const std::int64_t size = source.GetSize();
    if (position_ >= 0 || Begin(source, header))
        for (int steps = kMaxEssenceKlvsALook; steps > 0 && Step(source, dict, size); --steps) {
        }
    return {.elements = whole_.elements, .bytes = whole_.bytes + openBytes_};
}

bool CEssenceWalk::Begin(CMediaSource& source, const CPartitionPack& header)
{
    position_ = FindEssenceStart(source, header.extent);
    partitionSid_ = header.bodySID;
    return position_ >= 0;
}

/// Steps over one KLV. \return false where the walk must wait for more, or ends
bool CEssenceWalk::Step(CMediaSource& source, const CMxfUlDict& dict, std::int64_t size)
{
    SKlvHeader klv;
    if (ReadKlvHeader(source, position_, klv) != kSuccess) return false;
    if (Keys::IsPartitionPack(klv.key)) {
        const auto pack = ReadPartitionPackAt(source, dict, position_);
        if (!pack || pack->kind == EPartitionKind::footer) return false;
        const std::int64_t next = FindEssenceStart(source, pack->extent);
        if (next <= position_) return false; // its header metadata or index table is still being written
        position_ = next;
        partitionSid_ = pack->bodySID;
        return true;
    }

    const bool isOurs = IsOurs(klv.key);
    const std::int64_t value = position_ + klv.HeaderSize();
    // A length of 0 stands for one that is not known yet, unless something follows.
    SKlvHeader after;
    const bool isOpen = klv.IsIndefinite() || klv.TotalSize() > size - position_ ||
                        (klv.length == 0 && isOurs && ReadKlvHeader(source, value, after) != kSuccess);
    if (isOpen) {
        if (isOurs) openBytes_ = std::max<std::int64_t>(size - value, 0);
        return false;
    }
    if (isOurs) {
        ++whole_.elements;
        whole_.bytes += klv.length;
    }
    position_ += klv.TotalSize();
    return true;
}

/// By the kind of the item, the kind of the element and its number. The count of elements in byte 14 is left out, as
/// some writers state it differently in key and track.
bool CEssenceWalk::IsOurs(const SUl& key) const
{
    if (partitionSid_ != bodySid_ || !Keys::IsEssenceElement(key)) return false;
    const auto number = static_cast<std::uint32_t>(key.Item());
    return trackNumber_ == 0 || ((number ^ trackNumber_) & 0xFF00FFFF) == 0;
}

} // namespace TamrelMxf
