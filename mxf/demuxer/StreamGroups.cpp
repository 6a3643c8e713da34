#include "mxf/demuxer/StreamGroups.h"

#include <algorithm>
#include <map>
#include <utility>

namespace TamrelMxf {

SStreamGroups JoinStreams(std::span<const SStreamLink> streams)
{
    std::vector<SStreamGroups::CGroup> groups;
    std::map<const CMxfTrack*, std::size_t> groupOf; // by the material track
    for (std::size_t i = 0; i < streams.size(); ++i) {
        const CMxfTrack* played = streams[i].materialTrack;
        const auto known = played == nullptr ? groupOf.end() : groupOf.find(played);
        if (known != groupOf.end()) {
            groups[known->second].push_back(i);
            continue;
        }
        if (played != nullptr) groupOf.emplace(played, groups.size());
        groups.push_back({i});
    }

    SStreamGroups joined;
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
    for (const CGroup* group : {&pictures, &sounds})
        if (!group->empty()) leaders.push_back(group->front());
    const bool isJoined = !leaders.empty();
    for (const CGroup& group : others)
        leaders.insert(leaders.end(), group.begin(), isJoined ? group.begin() + 1 : group.end());
    std::ranges::sort(leaders);
    return leaders;
}

} // namespace TamrelMxf
