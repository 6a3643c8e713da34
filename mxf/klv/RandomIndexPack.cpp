#include "mxf/klv/RandomIndexPack.h"

#include "mxf/Limits.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/PartitionReading.h"
#include "platform/ByteReader.h"

#include <algorithm>
#include <array>

namespace TamrelMxf {

namespace {

void Fill(SPartitionDesc& desc, const CPartitionPack& pack)
{
    desc.state = SPartitionDesc::EState::read;
    desc.extent = pack.extent;
    desc.bodyOffset = pack.bodyOffset;
    desc.indexSID = pack.indexSID;
}

} // namespace

CRandomIndexPack::~CRandomIndexPack() = default;

std::unique_ptr<CRandomIndexPack> CRandomIndexPack::LoadFromEnd(CMediaSource& source, const CMxfUlDict& dict,
                                                                std::int64_t runInCorrection, bool listPartitions)
{
    constexpr std::int64_t kShortestFile = 64;
    const std::int64_t size = source.GetSize();
    if (size < kShortestFile) return nullptr;

    // Mostly the whole pack lies in the last bytes, and the footer partition, which is read next, in the same block.
    std::array<std::uint8_t, 4096> room;
    const auto tail = std::span{room}.first(std::min(room.size(), static_cast<std::size_t>(size)));
    const auto tailSize = static_cast<std::int64_t>(tail.size());
    if (source.Seek(size - tailSize) != 0 || source.Read(tail.data(), tail.size()) != tailSize) return nullptr;
    const auto length = zanfcp::ByteReader{std::as_bytes(tail.last(4))}.read<std::uint32_t>();
    if (length > size) return nullptr;                   // a negative place would mean the end to some sources
    if (length < SKlvHeader::kProbeSize) return nullptr; // shorter than any pack with an entry

    CKlv klv;
    if (length <= tail.size()) {
        if (klv.View(tail.last(length)) != kSuccess) return nullptr;
    } else {
        SKlvHeader header;
        if (ReadKlvHeader(source, size - length, header) != kSuccess ||
            !header.key.MatchesAnyVersion(Keys::kRandomIndexPack) || source.Seek(size - length) != 0 ||
            klv.LoadFrom(&source) != kSuccess)
            return nullptr;
    }
    if (!klv.Key().MatchesAnyVersion(Keys::kRandomIndexPack)) return nullptr;
    auto rip = std::make_unique<CRandomIndexPack>(&source, dict, runInCorrection);
    if (rip->ImportFromEx(&klv, listPartitions) != kSuccess) return nullptr;
    return rip;
}

int CRandomIndexPack::ImportFromEx(const CKlv* klv, bool listPartitions)
{
    constexpr std::size_t kEntrySize = 4 + 8;
    if (klv == nullptr) return kNullArgument;
    const auto value = klv->Value();
    if (!Keys::HasPackPrefix(klv->Key()) || value.empty()) return kOutOfRange;
    const std::size_t count = value.size() / kEntrySize; // the four bytes of the overall length are left over
    if (count > kMaxPartitions) return kOutOfRange;

    value_.assign(value.begin(), value.end());
    entryCount_ = static_cast<std::uint32_t>(count);
    offsets_.clear();
    partitions_.clear();
    zanfcp::ByteReader in{std::as_bytes(std::span{value_})};
    for (std::size_t i = 0; i < count; ++i) {
        const auto bodySID = in.read<std::uint32_t>();
        const std::int64_t offset = ToPosition(in.read<std::uint64_t>(), runInCorrection_);
        if (offset < 0) continue;
        offsets_.insert(static_cast<std::uint64_t>(offset));
        if (listPartitions) partitions_[bodySID].emplace_back().offset = offset;
    }
    for (auto& [bodySID, list] : partitions_)
        std::ranges::sort(list, {}, &SPartitionDesc::offset);
    return kSuccess;
}

int CRandomIndexPack::ImportPartition(const CPartitionPack* pack, std::int64_t offset)
{
    if (pack == nullptr) return kNullArgument;
    if (offset < 0) return kOutOfRange;
    offsets_.insert(static_cast<std::uint64_t>(offset));
    auto& list = partitions_[pack->bodySID];
    auto place = std::ranges::lower_bound(list, offset, {}, &SPartitionDesc::offset);
    if (place == list.end() || place->offset != offset) place = list.emplace(place);
    place->offset = offset;
    Fill(*place, *pack);
    return kSuccess;
}

int CRandomIndexPack::ReadPartitionPack(SPartitionDesc& desc)
{
    using enum SPartitionDesc::EState;
    if (desc.state == unread) {
        const auto pack = source_ != nullptr ? ReadPartitionPackAt(*source_, *dict_, desc.offset) : nullptr;
        desc.state = unreadable;
        if (pack) Fill(desc, *pack);
    }
    return desc.state == read ? kSuccess : kFailed;
}

int CRandomIndexPack::FindPartitionIdx(std::vector<SPartitionDesc>& list, int first, int last, std::int64_t offset)
{
    int found = -1;
    if (offset < 0) return found;
    first = std::max(first, 0);
    last = std::min(last, static_cast<int>(list.size()) - 1);
    while (first <= last) {
        const int middle = first + (last - first) / 2;
        int at = middle; // the nearest partition from there down that can be read
        while (at >= first && ReadPartitionPack(list[static_cast<std::size_t>(at)]) != kSuccess)
            --at;
        if (at < first || list[static_cast<std::size_t>(at)].bodyOffset <= static_cast<std::uint64_t>(offset)) {
            if (at >= first) found = at;
            first = middle + 1;
        } else {
            last = at - 1;
        }
    }
    return found;
}

std::int64_t CRandomIndexPack::TranslateOffset(std::int64_t offset, std::uint32_t bodySID)
{
    const auto entry = partitions_.find(bodySID);
    if (offset < 0 || source_ == nullptr || entry == partitions_.end()) return -1;
    auto& list = entry->second;
    const int index = FindPartitionIdx(list, 0, static_cast<int>(list.size()) - 1, offset);
    if (index < 0) return -1;

    SPartitionDesc& desc = list[static_cast<std::size_t>(index)];
    if (desc.essenceStart < 0) desc.essenceStart = FindEssenceStart(*source_, desc.extent);
    std::int64_t position = 0;
    if (desc.essenceStart < 0 ||
        __builtin_add_overflow(desc.essenceStart, offset - static_cast<std::int64_t>(desc.bodyOffset), &position))
        return -1;
    // Where the next partition or the end of the file begins, this essence has ended.
    const auto next = offsets_.upper_bound(static_cast<std::uint64_t>(desc.offset));
    const bool isBehind = next != offsets_.end() && static_cast<std::uint64_t>(position) >= *next;
    return isBehind || position >= source_->GetSize() ? -1 : position;
}

std::span<const SPartitionDesc> CRandomIndexPack::PartitionsOf(std::uint32_t bodySID) const
{
    const auto entry = partitions_.find(bodySID);
    if (entry == partitions_.end()) return {};
    return entry->second;
}

} // namespace TamrelMxf
