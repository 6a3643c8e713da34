#include "mxf/model/ModelBuilder.h"

#include "mxf/Limits.h"
#include "mxf/metadata/ValueText.h"

#include <utility>

namespace TamrelMxf {
namespace {

using SSource = CSetIndex::SAnswer;

/// Material End Relative Times: a node of the register that early writers used as a label.
constexpr SPropertyId kMaterialEndRelativeTimes{0, 0x0702010302000000};

} // namespace

SSource CModelBuilder::Take(const SUUID& uid, ESet base)
{
    using EKind = SModelNote::EKind;
    const auto note = [&](EKind kind) {
        if (model_.notes.size() < kMaxModelNotes) model_.notes.push_back({kind, uid, base});
        ++model_.noteCount;
        return SSource{};
    };
    if (depth_ >= kMaxReferenceDepth) return note(EKind::tooDeep);
    const SSource answer = index_.Take(uid, base);
    switch (answer.result) {
    case CSetIndex::EResult::found: return answer;
    case CSetIndex::EResult::missing: return note(EKind::missingSet);
    case CSetIndex::EResult::wrongClass: return note(EKind::wrongClass);
    case CSetIndex::EResult::taken: return note(EKind::ownedTwice);
    }
    return {};
}

SSource CModelBuilder::Take(const CSetReader& reader, SPropertyId id, ESet base)
{
    const auto uid = Values::Uuid(reader.Value(id));
    return uid && !uid->IsZero() ? Take(*uid, base) : SSource{};
}

void CModelBuilder::Build()
{
    std::size_t from = 0;
    if (const SSource preface = index_.TakeNext(ESet::Preface, from); preface.set != nullptr) ReadPreface(preface);
    from = 0;
    if (model_.packages.empty() && model_.essenceContainers.empty()) { // not reached from the preface
        if (const SSource storage = index_.TakeNext(ESet::ContentStorage, from); storage.set != nullptr)
            ReadContentStorage(storage);
    }
    // Nor from there: what is in the file belongs to it.
    const auto readRest = [&](ESet base, auto& records, auto read) {
        if (!records.empty()) return;
        from = 0;
        for (SSource source = index_.TakeNext(base, from); source.set != nullptr; source = index_.TakeNext(base, from))
            (this->*read)(records.emplace_back(), source);
    };
    readRest(ESet::GenericPackage, model_.packages, &CModelBuilder::ReadPackage);
    readRest(ESet::EssenceContainerData, model_.essenceContainers, &CModelBuilder::ReadContainer);
    readRest(ESet::Identification, model_.identifications, &CModelBuilder::ReadIdentification);

    for (const CMxfPackage& package : model_.packages)
        if (package.marker) model_.markers.push_back(*package.marker);
    from = 0;
    for (SSource marker = index_.TakeNext(ESet::PackageMarker, from); marker.set != nullptr;
         marker = index_.TakeNext(ESet::PackageMarker, from))
        ReadMarker(model_.markers.emplace_back(), marker);
    model_.SortByUid();
}

void CModelBuilder::ReadPreface(const SSource& source)
{
    namespace P = Prop::Preface;
    const CDepth deeper{depth_};
    const CSetReader reader = Reader(*source.set);
    SPreface& preface = model_.preface.emplace();
    preface.instanceUid = source.set->InstanceUid().value_or(SUUID{});
    reader.Read(P::Version, preface.version);
    reader.Read(P::LastModifiedDate, preface.lastModified);
    reader.Read(P::ObjectModelVersion, preface.objectModelVersion);
    reader.Read(P::PrimaryPackage, preface.primaryPackage);
    reader.Read(P::OperationalPattern, preface.operationalPattern);
    reader.Read(P::EssenceContainers, preface.essenceContainers);
    reader.Read(P::DMSchemes, preface.descriptiveSchemes);
    reader.Read(P::IsRIPPresent, preface.isRipPresent);
    ReadAll(reader, P::Identifications, ESet::Identification, model_.identifications,
            [&](SIdentification& record, const SSource& set) { ReadIdentification(record, set); });
    if (const SSource storage = Take(reader, P::ContentStorage, ESet::ContentStorage); storage.set != nullptr)
        ReadContentStorage(storage);
}

void CModelBuilder::ReadContentStorage(const SSource& source)
{
    namespace P = Prop::ContentStorage;
    const CDepth deeper{depth_};
    const CSetReader reader = Reader(*source.set);
    ReadAll(reader, P::Packages, ESet::GenericPackage, model_.packages,
            [&](CMxfPackage& record, const SSource& set) { ReadPackage(record, set); });
    ReadAll(reader, P::EssenceContainerData, ESet::EssenceContainerData, model_.essenceContainers,
            [&](SEssenceContainerData& record, const SSource& set) { ReadContainer(record, set); });
}

void CModelBuilder::ReadIdentification(SIdentification& identification, const SSource& source) const
{
    namespace P = Prop::Identification;
    const CSetReader reader = Reader(*source.set);
    identification.instanceUid = source.set->InstanceUid().value_or(SUUID{});
    reader.Read(P::CompanyName, identification.companyName);
    reader.Read(P::ProductName, identification.productName);
    reader.Read(P::VersionString, identification.versionString);
    reader.Read(P::Platform, identification.platform);
    reader.Read(P::ProductVersion, identification.productVersion);
    reader.Read(P::ToolkitVersion, identification.toolkitVersion);
    reader.Read(P::ProductUID, identification.productUid);
    reader.Read(P::ThisGenerationUID, identification.generationUid);
    reader.Read(P::ModificationDate, identification.modificationDate);
}

void CModelBuilder::ReadContainer(SEssenceContainerData& container, const SSource& source) const
{
    namespace P = Prop::EssenceContainerData;
    const CSetReader reader = Reader(*source.set);
    container.instanceUid = source.set->InstanceUid().value_or(SUUID{});
    container.linkedPackage = Values::Umid(reader.Value(P::LinkedPackageUID)).value_or(SUmid{});
    container.bodySid = Values::Number<std::uint32_t>(reader.Value(P::BodySID)).value_or(0);
    container.indexSid = Values::Number<std::uint32_t>(reader.Value(P::IndexSID)).value_or(0);
}

void CModelBuilder::ReadPackage(CMxfPackage& package, const SSource& source)
{
    namespace P = Prop::GenericPackage;
    namespace Marks = Prop::PackageMarker;
    const CDepth deeper{depth_};
    const CSetReader reader = Reader(*source.set);
    package.instanceUid = source.set->InstanceUid().value_or(SUUID{});
    package.definition = source.definition;
    if (source.definition != nullptr && source.definition->Is(ESet::MaterialPackage))
        package.kind = CMxfPackage::EKind::material;
    else if (source.definition != nullptr && source.definition->Is(ESet::SourcePackage))
        package.kind = CMxfPackage::EKind::source;
    package.uid = Values::Umid(reader.Value(P::PackageUID)).value_or(SUmid{});
    reader.Read(P::PackageName, package.name);
    reader.Read(P::PackageCreationDate, package.created);
    reader.Read(P::PackageModifiedDate, package.modified);
    reader.Read(P::PackageUsage, package.usage);

    package.tracks.Import(reader.Value(P::Tracks), true);
    for (CMxfTrack& track : package.tracks)
        if (const SSource set = Take(track.instanceUid, ESet::GenericTrack); set.set != nullptr) ReadTrack(track, set);
    package.tracks.Drop([](const CMxfTrack& track) { return track.kind == CMxfTrack::EKind::missing; });

    const auto readTagged = [&](STaggedValue& value, const SSource& set) { ReadTaggedValue(value, set); };
    ReadAll(reader, P::PackageUserComments, ESet::TaggedValue, package.comments, readTagged);
    ReadAll(reader, P::PackageAttributes, ESet::TaggedValue, package.attributes, readTagged);
    if (const SSource set = Take(reader, Prop::SourcePackage::Descriptor, ESet::GenericDescriptor); set.set != nullptr)
        ReadDescriptor(package.descriptor.emplace(), set);
    if (const SSource set = Take(reader, Prop::MaterialPackage::PackageMarker, ESet::PackageMarker);
        set.set != nullptr) {
        ReadMarker(package.marker.emplace(), set);
        package.marker->package = package.uid;
    }
    reader.ReadTime(Marks::PackageMarkInPosition, package.markIn);
    reader.ReadTime(Marks::PackageMarkOutPosition, package.markOut);
    reader.ReadTime(kMaterialEndRelativeTimes, package.materialEndRelativeTime);
    reader.Read(Marks::TimebaseReferenceTrackID, package.timebaseReferenceTrackId);
}

void CModelBuilder::ReadMarker(SPackageMarker& marker, const SSource& source) const
{
    namespace P = Prop::PackageMarker;
    const CSetReader reader = Reader(*source.set);
    marker.identifier = source.set->InstanceUid().value_or(SUUID{});
    reader.Read(P::TimebaseReferenceTrackID, marker.timebaseTrackId);
    reader.ReadTime(P::PackageMarkInPosition, marker.markIn);
    reader.ReadTime(P::PackageMarkOutPosition, marker.markOut);
}

void CModelBuilder::ReadTrackFields(CMxfTrack& track, const SSource& source)
{
    namespace G = Prop::GenericTrack;
    namespace T = Prop::TimelineTrack;
    using EKind = CMxfTrack::EKind;
    const CSetReader reader = Reader(*source.set);
    const SSetDef* definition = source.definition;
    if (definition != nullptr && definition->Is(ESet::EventTrack))
        track.kind = EKind::event;
    else if (definition != nullptr && definition->Is(ESet::StaticTrack))
        track.kind = EKind::fixed;
    else
        track.kind = EKind::timeline;
    reader.Read(G::TrackID, track.id);
    reader.Read(G::TrackNumber, track.number);
    reader.Read(G::TrackName, track.name);
    if (track.kind == EKind::event) {
        reader.ReadRate(Prop::EventTrack::EventEditRate, track.editRate);
        reader.ReadSigned(Prop::EventTrack::EventOrigin, track.origin);
    } else {
        reader.ReadRate(T::EditRate, track.editRate);
        reader.ReadSigned(T::Origin, track.origin);
    }
    reader.ReadTime(T::MarkIn, track.markIn);
    reader.ReadTime(T::MarkOut, track.markOut);
    reader.ReadTime(T::UserPosition, track.userPosition);
    reader.ReadTime(T::PackageMarkInPosition, track.packageMarkIn);
    reader.ReadTime(T::PackageMarkOutPosition, track.packageMarkOut);
}

void CModelBuilder::ReadTrack(CMxfTrack& track, const SSource& source)
{
    const CDepth deeper{depth_};
    ReadTrackFields(track, source);
    const CSetReader reader = Reader(*source.set);
    track.sequence = {};
    track.sequence.instanceUid = Values::Uuid(reader.Value(Prop::GenericTrack::Sequence)).value_or(SUUID{});
    const SSource set = Take(reader, Prop::GenericTrack::Sequence, ESet::StructuralComponent);
    if (set.set != nullptr) ReadSequence(track.sequence, set);
}

void CModelBuilder::ReadSequence(CMxfSequence& sequence, const SSource& source)
{
    namespace P = Prop::StructuralComponent;
    const CDepth deeper{depth_};
    const CSetReader reader = Reader(*source.set);
    sequence.isPresent = true;
    sequence.isBare = source.definition == nullptr || !source.definition->Is(ESet::Sequence);
    reader.Read(P::DataDefinition, sequence.dataDefinition);
    sequence.dataKind = sequence.dataDefinition ? DataKindOf(*sequence.dataDefinition) : EDataKind::unknown;
    reader.ReadTime(P::Duration, sequence.duration);
    sequence.clips.Drop([](const CMxfClip&) { return true; });
    if (sequence.isBare) {
        CMxfClip clip;
        clip.instanceUid = sequence.instanceUid;
        ReadClip(clip, source);
        sequence.clips.Append(std::move(clip));
        return;
    }
    sequence.clips.Import(reader.Value(Prop::Sequence::StructuralComponents), true);
    for (CMxfClip& clip : sequence.clips)
        if (const SSource set = Take(clip.instanceUid, ESet::StructuralComponent); set.set != nullptr)
            ReadClip(clip, set);
    sequence.clips.Drop([](const CMxfClip& clip) { return clip.kind == CMxfClip::EKind::missing; });
}

void CModelBuilder::ReadClip(CMxfClip& clip, const SSource& source)
{
    namespace P = Prop::StructuralComponent;
    using EKind = CMxfClip::EKind;
    const CDepth deeper{depth_};
    const CSetReader reader = Reader(*source.set);
    const SSetDef* definition = source.definition;
    const auto is = [&](ESet base) { return definition != nullptr && definition->Is(base); };

    clip.definition = definition;
    reader.Read(P::DataDefinition, clip.dataDefinition);
    clip.dataKind = clip.dataDefinition ? DataKindOf(*clip.dataDefinition) : EDataKind::unknown;
    reader.ReadTime(P::Duration, clip.duration);
    ReadAll(reader, P::ComponentUserComments, ESet::TaggedValue, clip.comments,
            [&](STaggedValue& value, const SSource& set) { ReadTaggedValue(value, set); });

    clip.kind = EKind::other;
    if (is(ESet::SourceReference)) {
        namespace R = Prop::SourceReference;
        clip.kind = EKind::sourceClip;
        reader.Read(R::SourcePackageID, clip.sourcePackage);
        reader.Read(R::SourceTrackID, clip.sourceTrackId);
        reader.ReadSigned(Prop::SourceClip::StartPosition, clip.startPosition);
        reader.Read(Prop::DMSourceClip::DMSourceClipTrackIDs, clip.trackIds);
    } else if (is(ESet::TimecodeComponent)) {
        namespace T = Prop::TimecodeComponent;
        clip.kind = EKind::timecode;
        reader.ReadSigned(T::StartTimecode, clip.startTimecode);
        reader.Read(T::RoundedTimecodeBase, clip.timecodeBase);
        reader.Read(T::DropFrame, clip.dropFrame);
    } else if (is(ESet::Filler)) {
        clip.kind = EKind::filler;
    } else if (is(ESet::Event)) {
        clip.kind = is(ESet::DMSegment) ? EKind::descriptive : EKind::event;
        reader.ReadSigned(Prop::Event::EventStartPosition, clip.eventStart);
        reader.Read(Prop::Event::EventComment, clip.comment);
        reader.Read(Prop::DMSegment::TrackIDs, clip.trackIds);
        if (const SSource set = Take(reader, Prop::DMSegment::DMFramework, ESet::DMFramework); set.set != nullptr) {
            clip.framework = std::make_unique<SMetadataObject>();
            ReadObject(*clip.framework, set);
        }
    } else if (is(ESet::Transition)) {
        clip.kind = EKind::transition;
    } else {
        ReadAlternatives(clip, reader);
    }
}

void CModelBuilder::ReadAlternatives(CMxfClip& clip, const CSetReader& reader)
{
    const auto read = [&](CMxfClip& inner, const SSource& set) {
        inner.instanceUid = set.set->InstanceUid().value_or(SUUID{});
        ReadClip(inner, set);
    };
    // What is chosen or played comes first.
    for (const SPropertyId one : {Prop::Selector::SelectedSegment, Prop::Pulldown::InputSegment})
        if (const SSource set = Take(reader, one, ESet::StructuralComponent); set.set != nullptr)
            read(clip.alternatives.emplace_back(), set);
    for (const SPropertyId many :
         {Prop::EssenceGroup::Choices, Prop::Selector::AlternateSegments, Prop::OperationGroup::InputSegments,
          Prop::NestedScope::NestedScopeTracks, Prop::Sequence::StructuralComponents})
        ReadAll(reader, many, ESet::StructuralComponent, clip.alternatives, read);
    if (!clip.alternatives.empty()) clip.kind = CMxfClip::EKind::choice;
}

void CModelBuilder::ReadTaggedValue(STaggedValue& value, const SSource& source) const
{
    const CSetReader reader = Reader(*source.set);
    reader.Read(Prop::TaggedValue::Tag, value.name);
    value.value = Values::IndirectText(reader.Value(Prop::TaggedValue::IndirectValue)).value_or(std::string{});
}

void CModelBuilder::ReadObject(SMetadataObject& object, const SSource& source)
{
    const CDepth deeper{depth_};
    object.key = source.set->Key();
    object.definition = source.definition;
    object.instanceUid = source.set->InstanceUid().value_or(SUUID{});
    for (const auto& [tag, item] : source.set->Items()) {
        if (tag == CMetadataSet::kInstanceUid) continue;
        SMetadataObject::SProperty& property = object.properties.emplace_back();
        property.tag = tag;
        property.definition = PropertyOf(source.definition, tag, &primer_);
        const auto bytes = item.Value();
        property.value.assign(bytes.begin(), bytes.end());
        if (property.definition == nullptr || property.definition->value != EValue::strongRef) continue;

        const auto own = [&](const SUUID& uid) {
            const SSource set = Take(uid, ESet::InterchangeObject);
            if (set.set != nullptr) ReadObject(property.objects.emplace_back(), set);
        };
        if (property.definition->shape == EShape::single) {
            if (const auto uid = Values::Uuid(bytes); uid && !uid->IsZero()) own(*uid);
            continue;
        }
        auto entries = ReferenceEntries(bytes);
        for (; !entries.empty(); entries = entries.subspan(SUUID::kSize))
            own(SUUID::From(entries.data()));
    }
}

} // namespace TamrelMxf
