#pragma once

#include "mxf/model/HeaderModel.h"
#include "mxf/model/SetIndex.h"
#include "mxf/model/SetReader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace TamrelMxf {

/// Makes the records of the model out of sets. One builder works on the sets of one copy of the header metadata.
class CModelBuilder {
public:
    /// All are borrowed for the life of the builder.
    /// \param model  receives the notes; everything else only by Build
    CModelBuilder(const CMetadataArray& sets, const CPrimerPack& primer, SHeaderModel& model)
        : index_{sets}, primer_{primer}, model_{model}
    {}

    /// Reads everything.
    void Build();

    /// Reads one record from its set, again if need be. What the record owns comes from the sets of this builder.
    void ReadTrack(CMxfTrack& track, const CSetIndex::SAnswer& source);
    void ReadTrackFields(CMxfTrack& track, const CSetIndex::SAnswer& source);
    void ReadSequence(CMxfSequence& sequence, const CSetIndex::SAnswer& source);
    void ReadDescriptor(SDescriptor& descriptor, const CSetIndex::SAnswer& source);

    CSetIndex& Index() { return index_; }
    CSetReader Reader(const CMetadataSet& set) const { return {set, primer_}; }

private:
    /// The set behind a strong reference; null, and a note, when there is none to own.
    CSetIndex::SAnswer Take(const SUUID& uid, ESet base);
    CSetIndex::SAnswer Take(const CSetReader& reader, SPropertyId id, ESet base);
    /// Calls `read(record, source)` for each set behind an array of references and collects the records.
    template <typename Record, typename Read>
    void ReadAll(const CSetReader& reader, SPropertyId id, ESet base, std::vector<Record>& out, Read read);

    void ReadPreface(const CSetIndex::SAnswer& source);
    void ReadContentStorage(const CSetIndex::SAnswer& source);
    void ReadIdentification(SIdentification& identification, const CSetIndex::SAnswer& source) const;
    void ReadContainer(SEssenceContainerData& container, const CSetIndex::SAnswer& source) const;
    void ReadPackage(CMxfPackage& package, const CSetIndex::SAnswer& source);
    void ReadMarker(SPackageMarker& marker, const CSetIndex::SAnswer& source) const;
    void ReadClip(CMxfClip& clip, const CSetIndex::SAnswer& source);
    void ReadAlternatives(CMxfClip& clip, const CSetReader& reader);
    void ReadTaggedValue(STaggedValue& value, const CSetIndex::SAnswer& source) const;

    void ReadPicture(SPictureDescriptor& picture, const CSetReader& reader, const SSetDef* definition) const;
    void ReadSound(SSoundDescriptor& sound, const CSetReader& reader, const SSetDef* definition) const;
    void ReadData(SDataDescriptor& data, const CSetReader& reader, const SSetDef* definition) const;
    void ReadPhysical(SPhysicalDescriptor& physical, const CSetReader& reader, const SSetDef& definition) const;
    void ReadLocator(SLocator& locator, const CSetIndex::SAnswer& source) const;
    void ReadSubDescriptor(SSubDescriptor& sub, const CSetIndex::SAnswer& source);
    void ReadObject(SMetadataObject& object, const CSetIndex::SAnswer& source);

    /// Counts the sets around the one being read.
    class CDepth {
    public:
        explicit CDepth(int& depth) : depth_{depth} { ++depth_; }
        ~CDepth() { --depth_; }
        CDepth(const CDepth&) = delete;
        CDepth& operator=(const CDepth&) = delete;

    private:
        int& depth_;
    };

    CSetIndex index_;
    const CPrimerPack& primer_;
    SHeaderModel& model_;
    int depth_ = 0;
};

template <typename Record, typename Read>
void CModelBuilder::ReadAll(const CSetReader& reader, SPropertyId id, ESet base, std::vector<Record>& out, Read read)
{
    constexpr std::size_t kUsual = 16; // more than that only when they are really there
    auto entries = ReferenceEntries(reader.Value(id));
    out.reserve(std::min(entries.size() / SUUID::kSize, kUsual));
    for (; !entries.empty(); entries = entries.subspan(SUUID::kSize)) {
        const auto source = Take(SUUID::From(entries.data()), base);
        if (source.set != nullptr) read(out.emplace_back(), source);
    }
}

} // namespace TamrelMxf
