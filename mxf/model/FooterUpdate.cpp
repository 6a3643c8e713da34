#include "mxf/model/FooterUpdate.h"

#include "mxf/model/ModelBuilder.h"

#include <map>

namespace TamrelMxf {
namespace {

using SSource = CSetIndex::SAnswer;

/// The records that a later copy may change, by their Instance UIDs.
struct SRecords {
    std::map<SUUID, CMxfTrack*> tracks;
    std::map<SUUID, CMxfSequence*> sequences;
    std::map<SUUID, SDescriptor*> descriptors;

    void Add(SDescriptor& descriptor)
    {
        descriptors.try_emplace(descriptor.instanceUid, &descriptor);
        for (SDescriptor& part : descriptor.parts)
            Add(part); // as deep as the model was read
    }
};

SRecords Collect(SHeaderModel& model)
{
    SRecords records;
    for (CMxfPackage& package : model.packages) {
        for (CMxfTrack& track : package.tracks) {
            records.tracks.try_emplace(track.instanceUid, &track);
            records.sequences.try_emplace(track.sequence.instanceUid, &track.sequence);
        }
        if (package.descriptor) records.Add(*package.descriptor);
    }
    return records;
}

/// Applies `update` to each record of a kind that the footer speaks about.
template <typename Record, typename Update>
SUpdateReport::SCount UpdateAll(CSetIndex& index, ESet base, const std::map<SUUID, Record*>& records, Update update)
{
    SUpdateReport::SCount count;
    // Known ones first: they take what they own, which then is not looked for among them.
    for (const auto& [uid, record] : records) {
        const SSource source = index.Take(uid, base);
        if (source.set == nullptr || source.definition == nullptr) continue;
        if (source.set->ItemCount() < 2) {
            ++count.failed;
        } else {
            update(*record, source);
            ++count.updated;
        }
    }
    std::size_t from = 0;
    for (SSource source = index.TakeNext(base, from); source.set != nullptr; source = index.TakeNext(base, from))
        ++(source.set->InstanceUid() && source.set->ItemCount() > 1 ? count.notFound : count.failed);
    return count;
}

} // namespace

SUpdateReport UpdateFromFooter(SHeaderModel& model, const SHeaderSets& footer)
{
    const SRecords records = Collect(model);
    CModelBuilder builder{footer.sets, footer.primer, model};
    SUpdateReport report;
    report.tracks = UpdateAll(builder.Index(), ESet::GenericTrack, records.tracks,
                              [&](CMxfTrack& track, const SSource& source) { builder.ReadTrackFields(track, source); });
    report.sequences =
        UpdateAll(builder.Index(), ESet::Sequence, records.sequences,
                  [&](CMxfSequence& sequence, const SSource& source) { builder.ReadSequence(sequence, source); });
    // Components that stand on a track without a sequence.
    for (const auto& [uid, sequence] : records.sequences) {
        if (!sequence->isBare) continue;
        const SSource source = builder.Index().Take(uid, ESet::StructuralComponent);
        if (source.set != nullptr) builder.ReadSequence(*sequence, source);
    }
    report.descriptors =
        UpdateAll(builder.Index(), ESet::FileDescriptor, records.descriptors,
                  [&](SDescriptor& descriptor, const SSource& source) {
                      const CSetReader reader = builder.Reader(*source.set);
                      reader.ReadRate(Prop::FileDescriptor::SampleRate, descriptor.sampleRate);
                      reader.ReadTime(Prop::FileDescriptor::ContainerDuration, descriptor.containerDuration);
                  });
    return report;
}

} // namespace TamrelMxf
