#include "mxf/model/Packages.h"

#include "mxf/metadata/ValueText.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace TamrelMxf {
namespace {

/// The UUIDs that stood for data definitions before there were labels.
struct SOldDefinition {
    SUUID uuid;
    EDataKind kind;
};
constexpr std::array<SOldDefinition, 3> kOldDefinitions{{
    {{{0x6F, 0x3C, 0x8C, 0xE1, 0x6C, 0xEF, 0x11, 0xD2, 0x80, 0x7D, 0x00, 0x60, 0x08, 0x14, 0x3E, 0x6F}},
     EDataKind::picture},
    {{{0x78, 0xE1, 0xEB, 0xE1, 0x6C, 0xEF, 0x11, 0xD2, 0x80, 0x7D, 0x00, 0x60, 0x08, 0x14, 0x3E, 0x6F}},
     EDataKind::sound},
    {{{0x7F, 0x27, 0x5E, 0x81, 0x77, 0xE5, 0x11, 0xD2, 0x80, 0x7F, 0x00, 0x60, 0x08, 0x14, 0x3E, 0x6F}},
     EDataKind::timecode},
}};

} // namespace

EDataKind DataKindOf(const SUl& dataDefinition)
{
    if (dataDefinition.IsSmpte()) {
        switch (dataDefinition.Item()) {
        case 0x0103020101000000:
        case 0x0103020102000000:
        case 0x0103020103000000: return EDataKind::timecode;
        case 0x0103020110000000: return EDataKind::descriptive;
        case 0x0103020201000000: return EDataKind::picture;
        case 0x0103020202000000: return EDataKind::sound;
        case 0x0103020203000000: return EDataKind::data;
        case 0x0103020301000000: return EDataKind::auxiliary;
        case 0x0103020302000000: return EDataKind::parsedText;
        default: return EDataKind::unknown;
        }
    }
    // In the place of a label a UUID has its halves swapped; not every writer knew.
    SUUID straight = SUUID::From(dataDefinition.bytes.data());
    SUUID swapped = straight;
    std::rotate(swapped.bytes.begin(), swapped.bytes.begin() + 8, swapped.bytes.end());
    for (const SOldDefinition& old : kOldDefinitions)
        if (old.uuid == straight || old.uuid == swapped) return old.kind;
    return EDataKind::unknown;
}

std::optional<std::int64_t> CMxfSequence::TotalDuration() const
{
    if (duration || clips.empty()) return duration;
    std::int64_t total = 0;
    for (const CMxfClip& clip : clips) {
        if (!clip.duration) return std::nullopt;
        const bool overlaps = clip.kind == CMxfClip::EKind::transition;
        if (overlaps ? __builtin_sub_overflow(total, *clip.duration, &total)
                     : __builtin_add_overflow(total, *clip.duration, &total))
            return std::nullopt;
    }
    return total < 0 ? std::nullopt : std::optional{total};
}

EDataKind CMxfTrack::DataKind() const
{
    if (sequence.dataKind != EDataKind::unknown) return sequence.dataKind;
    for (const CMxfClip& clip : sequence.clips)
        if (clip.dataKind != EDataKind::unknown) return clip.dataKind;
    return EDataKind::unknown;
}

const CMxfClip* CMxfTrack::FirstClip(CMxfClip::EKind wanted) const
{
    const auto found = std::ranges::find(sequence.clips, wanted, &CMxfClip::kind);
    return found == sequence.clips.end() ? nullptr : &*found;
}

const CMxfTrack* CMxfPackage::FindTrack(std::uint32_t id) const
{
    const auto found = std::ranges::find(tracks, std::optional{id}, &CMxfTrack::id);
    return found == tracks.end() ? nullptr : &*found;
}

const SMetadataObject::SProperty* SMetadataObject::Find(std::string_view name) const
{
    const auto found = std::ranges::find_if(properties, [&](const SProperty& property) {
        return property.definition != nullptr && property.definition->name == name;
    });
    return found == properties.end() ? nullptr : &*found;
}

std::string SMetadataObject::Text(std::string_view name) const
{
    const SProperty* property = Find(name);
    return property == nullptr ? std::string{} : ValueText(property->definition, property->value);
}

} // namespace TamrelMxf
