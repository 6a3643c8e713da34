#include "mxf/essence/TrackMatch.h"

#include "mxf/essence/EssenceKeys.h"

#include <algorithm>

namespace TamrelMxf {
namespace {

/// Elements of one container that are told apart; more of them belong to no track.
constexpr std::size_t kMostElements = 1024;

bool CarriesType(EssenceKeys::EItem item, EStreamType type)
{
    switch (item) {
    case EssenceKeys::EItem::picture: return type == EStreamType::picture;
    case EssenceKeys::EItem::sound: return type == EStreamType::sound;
    case EssenceKeys::EItem::data: return type == EStreamType::data;
    case EssenceKeys::EItem::compound: return type == EStreamType::picture || type == EStreamType::sound;
    default: return false;
    }
}

} // namespace

CTrackMatch::CTrackMatch(std::span<const SEssenceTrack> tracks)
{
    for (const SEssenceTrack& track : tracks)
        tracks_.push_back({.number = track.format.trackNumber, .type = track.format.type});
}

std::optional<std::size_t> CTrackMatch::Find(const SUl& key)
{
    const std::uint32_t number = EssenceKeys::NumberOf(key);
    const auto known = std::ranges::find(known_, number, [](const auto& entry) { return entry.first; });
    if (known != known_.end()) return known->second;
    if (known_.size() >= kMostElements) return std::nullopt;
    const auto exact = std::ranges::find(tracks_, number, &STrack::number);
    if (exact == tracks_.end()) return known_.emplace_back(number, Search(key)).second;
    // Whoever took its place before had a damaged key.
    const auto track = static_cast<std::size_t>(exact - tracks_.begin());
    for (auto& entry : known_)
        if (entry.second == track) entry.second.reset();
    return known_.emplace_back(number, track).second;
}

std::optional<std::size_t> CTrackMatch::Search(const SUl& key) const
{
    const std::uint32_t number = EssenceKeys::NumberOf(key);
    const auto only = [&](auto fits) {
        std::optional<std::size_t> found;
        for (std::size_t i = 0; i < tracks_.size(); ++i) {
            const auto isHere = [i](const auto& entry) { return entry.second == i; };
            if (!fits(tracks_[i]) || std::ranges::any_of(known_, isHere)) continue;
            if (found) return std::optional<std::size_t>{};
            found = i;
        }
        return found;
    };
    // Byte 14 counts the elements of the item and is wrong in some files; byte 16 may not be filled in.
    for (const std::uint32_t mask : {0xFF00FFFFU, 0xFF00FF00U}) {
        const auto found = only([&](const STrack& track) { return ((track.number ^ number) & mask) == 0; });
        if (found) return found;
    }
    // A track without a number, or whose number stands for nothing here: it is meant when it is the only one of its
    // kind.
    const EssenceKeys::EItem item = EssenceKeys::ItemOf(key.bytes[12]);
    return only([&](const STrack& track) { return CarriesType(item, track.type); });
}

} // namespace TamrelMxf
