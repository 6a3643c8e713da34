#include "mxf/metadata/MetadataSet.h"

#include "mxf/Limits.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <memory_resource>
#include <utility>

namespace TamrelMxf {

/// Reads the items of a set. Their places are put in order first, so that each is made where it stays.
void CItemMap::Import(std::span<const std::uint8_t> value, std::uint8_t coding)
{
    constexpr std::size_t kShortestItem = 5; // an item without a value says nothing and may be cut off
    struct SPlace {
        CMetadataItem::SHeader header;
        std::uint32_t at;
    };
    std::array<std::byte, 2048> room; // enough for nearly every set
    std::pmr::monotonic_buffer_resource pool{room.data(), room.size()};
    std::pmr::vector<SPlace> places{&pool};
    places.reserve(room.size() / sizeof(SPlace) / 2);
    for (std::size_t at = 0; value.size() - at >= kShortestItem && places.size() < kMaxItemsOfASet;
         at += places.back().header.totalSize) {
        SPlace& place = places.emplace_back();
        place.at = static_cast<std::uint32_t>(at);
        if (CMetadataItem::ReadHeader(value.subspan(at), coding, place.header) != kSuccess) {
            places.pop_back();
            break;
        }
        if (place.header.exceedsStated) break; // it ends its segment: what follows are entries of its array
    }
    std::ranges::sort(places, {}, [](const SPlace& place) { return std::pair{place.header.tag, place.at}; });
    // Of two items with the same tag the later one stays.
    const auto last = std::unique(places.rbegin(), places.rend(),
                                  [](const SPlace& a, const SPlace& b) { return a.header.tag == b.header.tag; });
    places.erase(places.begin(), last.base());

    entries_.clear();
    entries_.reserve(places.size());
    for (const SPlace& place : places) {
        CEntry& entry = entries_.emplace_back();
        entry.first = place.header.tag;
        entry.second.ImportFrom(value.subspan(place.at), place.header);
    }
}

CMetadataSet::~CMetadataSet() = default;

int CMetadataSet::ImportFrom(const CKlv* klv)
{
    if (klv == nullptr) return kNullArgument;
    items_ = {};
    const std::span<const std::uint8_t> value = klv->Value();
    if (value.empty()) return kOutOfRange;
    if (std::cmp_greater(value.size(), kMaxKlvValueBytes)) return kFailed;
    key_ = klv->Key();
    items_.Import(value, key_.bytes[5]);
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
