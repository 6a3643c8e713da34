#include "mxf/model/SetIndex.h"

#include "mxf/labels/BigEndian.h"

#include <algorithm>
#include <optional>

namespace TamrelMxf {

CSetIndex::SEntry::SEntry(const SUUID& uid, std::uint32_t setIndex)
    : upper{BigEndian64(uid.bytes.data())}, lower{BigEndian64(uid.bytes.data() + 8)}, index{setIndex}
{}

CSetIndex::CSetIndex(const CMetadataArray& sets) : sets_{sets}, taken_(sets.Size())
{
    byUid_.reserve(sets.Size());
    definitions_.reserve(sets.Size());
    for (std::size_t i = 0; i < sets.Size(); ++i) {
        definitions_.push_back(FindSet(sets[i].Key()));
        if (const auto uid = sets[i].InstanceUid()) byUid_.emplace_back(*uid, static_cast<std::uint32_t>(i));
    }
    // Sorted, not hashed: a file cannot make the look-up slow.
    std::ranges::sort(byUid_);
}

CSetIndex::SAnswer CSetIndex::TakeAt(std::size_t index)
{
    if (taken_[index]) return {.result = EResult::taken};
    taken_[index] = true;
    return {.result = EResult::found, .set = &sets_[index], .definition = definitions_[index]};
}

CSetIndex::SAnswer CSetIndex::Take(const SUUID& uid, ESet base)
{
    constexpr int kMostNamesakes = 16; // of sets that share an Instance UID

    const SEntry wanted{uid, 0};
    auto entry = std::ranges::lower_bound(byUid_, wanted);
    SAnswer answer;
    std::optional<std::size_t> unknown;
    for (int i = 0; i < kMostNamesakes && entry != byUid_.end() && entry->SharesUid(wanted); ++i, ++entry) {
        const SSetDef* definition = definitions_[entry->index];
        if (definition == nullptr) {
            if (!unknown) unknown = entry->index;
        } else if (definition->Is(base)) {
            answer = TakeAt(entry->index);
            if (answer.result == EResult::found) return answer;
        } else if (answer.result == EResult::missing) {
            answer.result = EResult::wrongClass;
        }
    }
    return unknown && answer.result != EResult::taken ? TakeAt(*unknown) : answer;
}

CSetIndex::SAnswer CSetIndex::TakeNext(ESet base, std::size_t& from)
{
    for (; from < definitions_.size(); ++from) {
        if (taken_[from] || definitions_[from] == nullptr || !definitions_[from]->Is(base)) continue;
        return TakeAt(from++);
    }
    return {};
}

} // namespace TamrelMxf
