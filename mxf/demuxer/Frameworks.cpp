#include "mxf/demuxer/Frameworks.h"

#include "mxf/Limits.h"
#include "mxf/metadata/ValueText.h"

#include <algorithm>
#include <utility>

namespace TamrelMxf {

CFrameworkList::CFrameworkList(const SHeaderModel& model)
{
    for (const CMxfPackage& package : model.packages)
        for (const CMxfTrack& track : package.tracks)
            for (const CMxfClip& clip : track.sequence.clips)
                if (clip.framework) Add(package, track, clip);
}

void CFrameworkList::Add(const CMxfPackage& package, const CMxfTrack& track, const CMxfClip& clip)
{
    const SMetadataObject& framework = *clip.framework;
    mxf_dmd_framework record{};
    std::ranges::copy(framework.instanceUid.bytes, record.instance_uid);
    std::ranges::copy(framework.key.bytes, record.key);
    record.class_name = framework.definition == nullptr ? "" : Keep(std::string{framework.definition->name});
    record.comment = Keep(clip.comment);
    record.track_id = track.id.value_or(0);
    record.material = package.kind == CMxfPackage::EKind::material ? 1 : 0;
    record.event_start = clip.eventStart.value_or(-1);
    record.duration = clip.duration.value_or(-1);
    std::vector<mxf_dmd_property>& properties = properties_.emplace_back();
    AddProperties(framework, "", properties);
    record.property_count = static_cast<std::uint32_t>(properties.size());
    record.properties = properties.empty() ? nullptr : properties.data();
    records_.push_back(record);
}

/// As deep as the model was read: kMaxReferenceDepth.
void CFrameworkList::AddProperties(const SMetadataObject& object, const std::string& prefix,
                                   std::vector<mxf_dmd_property>& properties)
{
    for (const SMetadataObject::SProperty& property : object.properties) {
        if (texts_.size() >= kMaxFrameworkTexts) return;
        if (property.definition == nullptr) continue;
        const std::string name = prefix + std::string{property.definition->name};
        if (property.objects.empty())
            properties.push_back({Keep(name), Keep(ValueText(property.definition, property.value))});
        for (const SMetadataObject& owned : property.objects)
            AddProperties(owned, name + '.', properties);
    }
}

} // namespace TamrelMxf
