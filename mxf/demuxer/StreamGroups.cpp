#include "mxf/demuxer/StreamGroups.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace TamrelMxf {

SStreamGroups JoinStreams(std::span<const SStreamLink> streams)
{
    // Streams side by side whose material track is the same, those of each track in their order.
    std::vector<std::pair<const CMxfTrack*, std::size_t>> byTrack;
    byTrack.reserve(streams.size());
    for (std::size_t i = 0; i < streams.size(); ++i)
        byTrack.emplace_back(streams[i].materialTrack, i);
    std::ranges::sort(byTrack, [](const auto& a, const auto& b) {
        return a.first == b.first ? a.second < b.second : std::less<>{}(a.first, b.first);
    });
    std::vector<SStreamGroups::CGroup> groups;
    groups.reserve(streams.size());
    for (std::size_t i = 0; i < byTrack.size(); ++i) {
        const bool isNext = i > 0 && byTrack[i].first != nullptr && byTrack[i].first == byTrack[i - 1].first;
        if (!isNext) groups.emplace_back();
        groups.back().push_back(byTrack[i].second);
    }
    std::ranges::sort(groups, {}, [](const auto& group) { return group.front(); });

    SStreamGroups joined;
    joined.others.reserve(groups.size());
    for (SStreamGroups::CGroup& group : groups) {
        const EDataKind kind = streams[group.front()].kind;
        if (group.size() > 1 && kind == EDataKind::picture && joined.pictures.empty())
            joined.pictures = std::move(group);
        else if (group.size() > 1 && kind == EDataKind::sound && joined.sounds.empty())
            joined.sounds = std::move(group);
        else
            joined.others.push_back(std::move(group));
    }
    return joined;
}

std::vector<std::size_t> SStreamGroups::Leaders() const
{
    std::vector<std::size_t> leaders;
    leaders.reserve(others.size() + 2);
    for (const CGroup* group : {&pictures, &sounds})
        if (!group->empty()) leaders.push_back(group->front());
    const bool isJoined = !leaders.empty();
    for (const CGroup& group : others)
        leaders.insert(leaders.end(), group.begin(), isJoined ? group.begin() + 1 : group.end());
    std::ranges::sort(leaders);
    return leaders;
}

} // namespace TamrelMxf
