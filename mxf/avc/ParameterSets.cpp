#include "mxf/avc/ParameterSets.h"

#include "mxf/Limits.h"
#include "mxf/Status.h"
#include "mxf/avc/NalUnit.h"

#include <algorithm>
#include <utility>

namespace TamrelMxf {
namespace {

template <typename TEntries> std::vector<std::span<const std::uint8_t>> Units(const TEntries& entries)
{
    std::vector<std::span<const std::uint8_t>> units;
    for (const auto& [id, entry] : entries)
        units.emplace_back(entry.nal);
    return units;
}

} // namespace

int CAvcParameterSets::Add(std::span<const std::uint8_t> nal)
{
    while (!nal.empty() && nal.back() == 0) // no unit ends so; as a byte stream it would lose them
        nal = nal.first(nal.size() - 1);
    if (nal.empty()) return kCutShort;
    if (nal.size() > kMaxAvcParameterSetBytes || FindStartCode(nal, 0) != nal.size()) return kFailed;
    switch (static_cast<ENalType>(nal[0] & 0x1F)) {
    case ENalType::sequenceParameterSet: return AddSequence(nal);
    case ENalType::pictureParameterSet: return AddPicture(nal);
    default: return kFailed;
    }
}

int CAvcParameterSets::AddSequence(std::span<const std::uint8_t> nal)
{
    for (const auto& [id, known] : sequences_) // intra streams repeat theirs in every picture
        if (std::ranges::equal(known.nal, nal)) return kSuccess;
    SAvcSps sps;
    if (const int status = sps.Parse(nal); status != kSuccess) return status;
    const std::uint32_t id = sps.id;
    sequences_[id] = {{nal.begin(), nal.end()}, std::move(sps), ++lastVersion_};
    return kSuccess;
}

int CAvcParameterSets::AddPicture(std::span<const std::uint8_t> nal)
{
    if (const int sequence = SAvcPps::SequenceIdOf(nal); sequence < 0) return sequence;
    CBitsReader bits{nal.subspan(1)};
    const std::uint32_t id = bits.Ue();
    if (id > 255) return kFailed;
    SPicture& entry = pictures_[id];
    if (std::ranges::equal(entry.nal, nal)) return kSuccess;
    entry = {{nal.begin(), nal.end()}, {}, 0, false};
    return kSuccess;
}

const SAvcSps* CAvcParameterSets::Sps(std::uint32_t id) const
{
    const auto found = sequences_.find(id);
    return found == sequences_.end() ? nullptr : &found->second.sps;
}

const SAvcPps* CAvcParameterSets::Pps(std::uint32_t id)
{
    const auto found = pictures_.find(id);
    if (found == pictures_.end()) return nullptr;
    SPicture& picture = found->second;
    const int sequenceId = SAvcPps::SequenceIdOf(picture.nal);
    const auto sequence = sequences_.find(static_cast<std::uint32_t>(sequenceId));
    if (sequence == sequences_.end()) return nullptr;
    if (picture.spsVersion != sequence->second.version) {
        picture.isGood = picture.pps.Parse(picture.nal, sequence->second.sps) == kSuccess;
        picture.spsVersion = sequence->second.version;
    }
    return picture.isGood ? &picture.pps : nullptr;
}

const SAvcSps* CAvcParameterSets::FirstSps() const
{
    return sequences_.empty() ? nullptr : &sequences_.begin()->second.sps;
}

std::vector<std::span<const std::uint8_t>> CAvcParameterSets::SpsUnits() const
{
    return Units(sequences_);
}

std::vector<std::span<const std::uint8_t>> CAvcParameterSets::PpsUnits() const
{
    return Units(pictures_);
}

void CAvcParameterSets::Clear()
{
    *this = {};
}

} // namespace TamrelMxf
