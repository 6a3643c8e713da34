#include "mxf/klv/MetadataChoice.h"

#include "mxf/Limits.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/PartitionReading.h"
#include "mxf/klv/RandomIndexPack.h"

#include <limits>
#include <utility>
#include <vector>

namespace TamrelMxf {

namespace {

class CMetadataSearch {
public:
    CMetadataSearch(CMediaSource& source, const CMxfUlDict& dict, const CPartitionPack& header,
                    std::int64_t runInCorrection)
        : source_{source}, dict_{dict}, header_{header}, runInCorrection_{runInCorrection}, size_{source.GetSize()}
    {}

    std::unique_ptr<CPartitionPack> Run()
    {
        auto footer = Read(header_.footerPartition == 0 ? -1 : ToPosition(header_.footerPartition, runInCorrection_));
        if (footer && footer->kind != EPartitionKind::footer) footer = nullptr;
        if (footer && IsUsable(*footer)) return footer;
        if (const auto rip = CRandomIndexPack::LoadFromEnd(source_, dict_, runInCorrection_, false))
            return LatestOf(*rip);
        return footer ? LatestBefore(*footer) : LatestOnTheWay();
    }

private:
    std::unique_ptr<CPartitionPack> Read(std::int64_t position)
    {
        return position > header_.extent.position ? ReadPartitionPackAt(source_, dict_, position) : nullptr;
    }

    bool IsUsable(const CPartitionPack& pack) const
    {
        const auto end = static_cast<std::uint64_t>(pack.extent.position) +
                         static_cast<std::uint64_t>(pack.extent.packSize); // both fit 63 bits
        return pack.HasMetadata() && pack.status != EPartitionStatus::genericStream && size_ >= 0 &&
               end <= static_cast<std::uint64_t>(size_) &&
               pack.extent.headerByteCount <= static_cast<std::uint64_t>(size_) - end;
    }

    std::unique_ptr<CPartitionPack> LatestOf(const CRandomIndexPack& rip)
    {
        int tries = kMaxKlvsWalked;
        for (auto offset = rip.Offsets().rbegin(); offset != rip.Offsets().rend() && tries > 0; ++offset, --tries)
            if (auto pack = Read(static_cast<std::int64_t>(*offset)); pack && IsUsable(*pack)) return pack;
        return nullptr;
    }

    std::unique_ptr<CPartitionPack> LatestBefore(const CPartitionPack& footer)
    {
        std::int64_t from = footer.extent.position;
        std::uint64_t previous = footer.previousPartition;
        for (int tries = kMaxKlvsWalked; tries > 0; --tries) {
            const std::int64_t position = ToPosition(previous, runInCorrection_);
            if (position >= from) return nullptr; // the chain leads down, or nowhere
            auto pack = Read(position);
            if (!pack || IsUsable(*pack)) return pack;
            from = position;
            previous = pack->previousPartition;
        }
        return nullptr;
    }

    std::unique_ptr<CPartitionPack> LatestOnTheWay()
    {
        std::unique_ptr<CPartitionPack> latest;
        std::int64_t position = FindEssenceStart(source_, header_.extent);
        for (int steps = kMaxKlvsWalked; steps > 0 && position >= 0; --steps) {
            SKlvHeader klv;
            if (ReadKlvHeader(source_, position, klv) != kSuccess || klv.IsIndefinite()) break;
            std::int64_t next = position;
            if (__builtin_add_overflow(position, klv.TotalSize(), &next)) break;
            if (Keys::IsPartitionPack(klv.key)) {
                auto pack = Read(position);
                if (!pack) break;
                next = FindEssenceStart(source_, pack->extent);
                if (IsUsable(*pack)) latest = std::move(pack);
            }
            position = next;
        }
        return latest;
    }

    CMediaSource& source_;
    const CMxfUlDict& dict_;
    const CPartitionPack& header_;
    std::int64_t runInCorrection_;
    std::int64_t size_;
};

} // namespace

std::unique_ptr<CPartitionPack> ChooseMetadataPartition(CMediaSource& source, const CMxfUlDict& dict,
                                                        const CPartitionPack& header, std::int64_t runInCorrection)
{
    if (header.IsClosedComplete() && header.HasMetadata()) return nullptr;
    return CMetadataSearch{source, dict, header, runInCorrection}.Run();
}

} // namespace TamrelMxf
