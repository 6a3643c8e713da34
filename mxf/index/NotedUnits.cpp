#include "mxf/index/NotedUnits.h"

#include "mxf/Limits.h"

#include <algorithm>

namespace TamrelMxf {
namespace {

constexpr unsigned kFlagBits = 8;
constexpr std::int64_t kMaxOffset = (std::int64_t{1} << 55) - 1;
constexpr std::int64_t kMaxEditUnit = std::int64_t{1} << 62;

std::int64_t OffsetOf(std::uint64_t unit)
{
    return static_cast<std::int64_t>(unit >> kFlagBits);
}

SIndexEntry EntryOf(std::uint64_t unit)
{
    return {.flags = static_cast<std::uint8_t>(unit), .streamOffset = unit >> kFlagBits};
}

} // namespace

const CNotedUnits::SRun* CNotedUnits::RunOf(std::int64_t editUnit) const
{
    const auto behind = std::ranges::upper_bound(runs_, editUnit, {}, &SRun::start);
    if (behind == runs_.begin() || editUnit >= (behind - 1)->End()) return nullptr;
    return &*(behind - 1);
}

void CNotedUnits::Note(std::int64_t editUnit, std::int64_t streamOffset, std::uint8_t flags)
{
    if (editUnit < 0 || editUnit > kMaxEditUnit || streamOffset < 0 || streamOffset > kMaxOffset) return;
    if (count_ >= kMaxNotedUnits) return;
    const auto behind = std::ranges::upper_bound(runs_, editUnit, {}, &SRun::start);
    if (behind != runs_.end() && streamOffset >= OffsetOf(behind->units.front())) return;
    const std::uint64_t unit = static_cast<std::uint64_t>(streamOffset) << kFlagBits | flags;
    if (behind != runs_.begin()) {
        SRun& run = *(behind - 1);
        if (editUnit < run.End() || streamOffset <= OffsetOf(run.units.back())) return;
        if (editUnit == run.End()) {
            run.units.push_back(unit);
            ++count_;
            return;
        }
    }
    if (runs_.size() >= kMaxNotedRuns) return;
    runs_.insert(behind, SRun{.start = editUnit, .units = {unit}});
    ++count_;
}

std::optional<SIndexedUnit> CNotedUnits::Find(std::int64_t editUnit) const
{
    const SRun* const run = RunOf(editUnit);
    if (run == nullptr) return std::nullopt;
    const auto at = static_cast<std::size_t>(editUnit - run->start);
    SIndexedUnit found;
    found.editUnit = found.displayed = found.keyFrame = editUnit;
    found.entry = EntryOf(run->units[at]);
    found.streamOffset = OffsetOf(run->units[at]);
    found.isKey = found.entry.IsKey();
    const SRun* const next = at + 1 < run->units.size() ? run : RunOf(editUnit + 1);
    if (next != nullptr)
        found.size = OffsetOf(next->units[static_cast<std::size_t>(editUnit + 1 - next->start)]) - found.streamOffset;
    for (std::size_t back = 1; !found.isKey && back <= std::min<std::size_t>(at, kMaxKeyFrameDistance); ++back) {
        if (!EntryOf(run->units[at - back]).IsKey()) continue;
        found.keyFrame = editUnit - static_cast<std::int64_t>(back);
        break;
    }
    return found;
}

std::optional<std::int64_t> CNotedUnits::UnitAtOffset(std::int64_t streamOffset) const
{
    const auto first = [](const SRun& run) { return OffsetOf(run.units.front()); };
    const auto run = std::ranges::upper_bound(runs_, streamOffset, {}, first);
    if (run == runs_.begin()) return std::nullopt;
    const auto& units = (run - 1)->units;
    const auto unit = std::ranges::upper_bound(units, streamOffset, {}, OffsetOf);
    return (run - 1)->start + (unit - units.begin()) - 1;
}

} // namespace TamrelMxf
