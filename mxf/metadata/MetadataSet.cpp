#include "mxf/metadata/MetadataSet.h"

#include <limits>
#include <utility>

namespace TamrelMxf {

CMetadataSet::~CMetadataSet() = default;

int CMetadataSet::ImportFrom(const CKlv* klv)
{
    constexpr std::size_t kShortestItem = 5; // an item without a value says nothing and may be cut off

    if (klv == nullptr) return kNullArgument;
    items_.clear();
    std::span<const std::uint8_t> value = klv->Value();
    if (value.empty()) return kOutOfRange;
    key_ = klv->Key();
    while (value.size() >= kShortestItem) {
        CMetadataItem item;
        if (item.ImportFrom(value, key_.bytes[5]) != kSuccess) break;
        const std::size_t stated = item.TotalSize();
        const bool endsSegment = item.ExceedsStatedLength(); // what follows are entries of its array
        const std::uint16_t tag = item.Tag();
        items_.insert_or_assign(tag, std::move(item));
        if (endsSegment) break;
        value = value.subspan(stated);
    }
    return kSuccess;
}

const CMetadataItem* CMetadataSet::Find(std::uint16_t tag) const
{
    const auto found = items_.find(tag);
    return found == items_.end() ? nullptr : &found->second;
}

std::span<const std::uint8_t> CMetadataSet::Value(std::uint16_t tag) const
{
    const CMetadataItem* item = Find(tag);
    return item == nullptr ? std::span<const std::uint8_t>{} : item->Value();
}

std::optional<SUUID> CMetadataSet::InstanceUid() const
{
    const auto value = Value(kInstanceUid);
    if (value.size() < SUUID::kSize) return std::nullopt;
    return SUUID::From(value.data());
}

std::int32_t CMetadataArray::RepaceByUID(const SUUID& uid, std::unique_ptr<CMetadataSet>& set)
{
    for (std::size_t i = 0; i < sets_.size(); ++i) {
        if (sets_[i]->InstanceUid() != uid) continue;
        sets_[i] = std::move(set);
        return static_cast<std::int32_t>(i);
    }
    return -1;
}

} // namespace TamrelMxf
