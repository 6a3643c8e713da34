#include "mxf/model/ModelBuilder.h"

#include <algorithm>
#include <span>

namespace TamrelMxf {
namespace {

using SSource = CSetIndex::SAnswer;

/// Component code and depth by turns, ended by zeros.
std::vector<SPixelComponent> PixelLayout(std::span<const std::uint8_t> value)
{
    std::vector<SPixelComponent> layout;
    for (; value.size() >= 2 && value[0] != 0; value = value.subspan(2))
        layout.push_back({static_cast<char>(value[0]), value[1]});
    return layout;
}

/// The item numbers of the picture and sound properties: what tells the kind of a descriptor of an unknown class.
bool HasItemOf(const CMetadataSet& set, std::uint16_t firstTag)
{
    const auto item = set.Items().lower_bound(firstTag);
    return item != set.Items().end() && item->first <= (firstTag | 0xFF);
}

void ReadMpeg(SMpegVideo& mpeg, const CSetReader& reader)
{
    namespace P = Prop::MPEGVideoDescriptor;
    reader.Read(P::SingleSequence, mpeg.singleSequence);
    reader.Read(P::ConstantBPictureCount, mpeg.constantBPictureCount);
    reader.Read(P::CodedContentScanning, mpeg.codedContentScanning);
    reader.Read(P::LowDelay, mpeg.lowDelay);
    reader.Read(P::ClosedGOP, mpeg.closedGop);
    reader.Read(P::IdenticalGOP, mpeg.identicalGop);
    reader.Read(P::MaxGOP, mpeg.maxGop);
    reader.Read(P::MaxBPictureCount, mpeg.maxBPictureCount);
    reader.Read(P::BitRate, mpeg.bitRate);
    reader.Read(P::ProfileAndLevel, mpeg.profileAndLevel);
}

void ReadAvc(SCodedVideo& video, const CSetReader& reader)
{
    namespace P = Prop::AVCSubDescriptor;
    reader.Read(P::AVCProfile, video.profile);
    reader.Read(P::AVCProfileConstraint, video.profileConstraint);
    reader.Read(P::AVCLevel, video.level);
    reader.Read(P::AVCCodedContentKind, video.codedContentKind);
    reader.Read(P::AVCConstantBPictureFlag, video.constantBPictures);
    reader.Read(P::AVCClosedGOPIndicator, video.closedGop);
    reader.Read(P::AVCIdenticalGOPIndicator, video.identicalGop);
    reader.Read(P::AVCMaximumGOPSize, video.maxGop);
    reader.Read(P::AVCMaximumBPictureCount, video.maxBPictureCount);
    reader.Read(P::AVCMaximumBitRate, video.maximumBitRate);
    reader.Read(P::AVCAverageBitRate, video.averageBitRate);
    reader.Read(P::AVCDecodingDelay, video.decodingDelay);
    reader.Read(P::AVCMaximumRefFrames, video.maxRefFrames);
    reader.Read(P::AVCSequenceParameterSetFlag, video.sequenceParameterSetFlag);
    reader.Read(P::AVCPictureParameterSetFlag, video.pictureParameterSetFlag);
}

void ReadHevc(SCodedVideo& video, const CSetReader& reader)
{
    namespace P = Prop::HEVCSubDescriptor;
    reader.Read(P::HEVCProfile, video.profile);
    reader.Read(P::HEVCProfileConstraint, video.profileConstraint);
    reader.Read(P::HEVCLevel, video.level);
    reader.Read(P::HEVCTier, video.tier);
    reader.Read(P::HEVCCodedContentKind, video.codedContentKind);
    reader.Read(P::HEVCConstantBPictureFlag, video.constantBPictures);
    reader.Read(P::HEVCClosedGOPIndicator, video.closedGop);
    reader.Read(P::HEVCIdenticalGOPIndicator, video.identicalGop);
    reader.Read(P::HEVCMaximumGOPSize, video.maxGop);
    reader.Read(P::HEVCMaximumBPictureCount, video.maxBPictureCount);
    reader.Read(P::HEVCMaximumBitRate, video.maximumBitRate);
    reader.Read(P::HEVCAverageBitRate, video.averageBitRate);
    reader.Read(P::HEVCDecodingDelay, video.decodingDelay);
    reader.Read(P::HEVCMaximumRefFrames, video.maxRefFrames);
    reader.Read(P::HEVCSequenceParameterSetFlag, video.sequenceParameterSetFlag);
    reader.Read(P::HEVCPictureParameterSetFlag, video.pictureParameterSetFlag);
}

void ReadJpeg2000(SJpeg2000& jpeg, const CSetReader& reader)
{
    namespace P = Prop::JPEG2000PictureSubDescriptor;
    reader.Read(P::Rsiz, jpeg.rsiz);
    reader.Read(P::Xsiz, jpeg.xsiz);
    reader.Read(P::Ysiz, jpeg.ysiz);
    reader.Read(P::XOsiz, jpeg.xosiz);
    reader.Read(P::YOsiz, jpeg.yosiz);
    reader.Read(P::XTsiz, jpeg.xtsiz);
    reader.Read(P::YTsiz, jpeg.ytsiz);
    reader.Read(P::XTOsiz, jpeg.xtosiz);
    reader.Read(P::YTOsiz, jpeg.ytosiz);
    reader.Read(P::Csiz, jpeg.csiz);
    const Values::SList components = Values::List(reader.Value(P::PictureComponentSizing), 3);
    for (std::size_t i = 0; i < components.count; ++i)
        jpeg.components.push_back({components[i][0], components[i][1], components[i][2]});
    reader.ReadBytes(P::CodingStyleDefault, jpeg.codingStyleDefault);
    reader.ReadBytes(P::QuantizationDefault, jpeg.quantizationDefault);
    jpeg.layout = PixelLayout(reader.Value(P::J2CLayout));
}

void ReadMcaLabel(SMcaLabel& label, const CSetReader& reader, const SSetDef& definition)
{
    namespace P = Prop::MCALabelSubDescriptor;
    using EKind = SMcaLabel::EKind;
    if (definition.Is(ESet::AudioChannelLabelSubDescriptor))
        label.kind = EKind::channel;
    else if (definition.Is(ESet::SoundfieldGroupLabelSubDescriptor))
        label.kind = EKind::soundfieldGroup;
    else if (definition.Is(ESet::GroupOfSoundfieldGroupsLabelSubDescriptor))
        label.kind = EKind::groupOfSoundfieldGroups;
    reader.Read(P::MCALabelDictionaryID, label.dictionaryId);
    reader.Read(P::MCALinkID, label.linkId);
    reader.Read(P::MCATagSymbol, label.tagSymbol);
    reader.Read(P::MCATagName, label.tagName);
    reader.Read(P::MCAChannelID, label.channelId);
    reader.ReadUtf8(P::RFC5646SpokenLanguage, label.spokenLanguage);
    reader.Read(P::MCATitle, label.title);
    reader.Read(P::MCATitleVersion, label.titleVersion);
    reader.Read(P::MCATitleSubVersion, label.titleSubVersion);
    reader.Read(P::MCAEpisode, label.episode);
    reader.Read(P::MCAAudioContentKind, label.audioContentKind);
    reader.Read(P::MCAAudioElementKind, label.audioElementKind);
    reader.Read(Prop::AudioChannelLabelSubDescriptor::SoundfieldGroupLinkID, label.soundfieldGroupLinkId);
    auto links = ReferenceEntries(reader.Value(Prop::SoundfieldGroupLabelSubDescriptor::GroupOfSoundfieldGroupsLinkID));
    for (; !links.empty(); links = links.subspan(SUUID::kSize))
        label.groupOfSoundfieldGroupsLinkIds.push_back(SUUID::From(links.data()));
}

void ReadYCbCr(SPictureDescriptor& picture, const CSetReader& reader)
{
    namespace P = Prop::CDCIPictureEssenceDescriptor;
    reader.Read(P::ComponentDepth, picture.componentDepth);
    reader.Read(P::HorizontalSubsampling, picture.horizontalSubsampling);
    reader.Read(P::VerticalSubsampling, picture.verticalSubsampling);
    reader.Read(P::ColorSiting, picture.colorSiting);
    reader.Read(P::BlackRefLevel, picture.blackRefLevel);
    reader.Read(P::WhiteRefLevel, picture.whiteRefLevel);
    reader.Read(P::ColorRange, picture.colorRange);
    reader.Read(P::PaddingBits, picture.paddingBits);
    reader.Read(P::AlphaSampleDepth, picture.alphaSampleDepth);
    reader.Read(P::ReversedByteOrder, picture.reversedByteOrder);
}

void ReadRgba(SPictureDescriptor& picture, const CSetReader& reader)
{
    namespace P = Prop::RGBAPictureEssenceDescriptor;
    picture.pixelLayout = PixelLayout(reader.Value(P::PixelLayout));
    reader.Read(P::ComponentMaxRef, picture.componentMaxRef);
    reader.Read(P::ComponentMinRef, picture.componentMinRef);
    reader.Read(P::AlphaMaxRef, picture.alphaMaxRef);
    reader.Read(P::AlphaMinRef, picture.alphaMinRef);
    reader.Read(P::ScanningDirection, picture.scanningDirection);
}

} // namespace

void CModelBuilder::ReadPicture(SPictureDescriptor& picture, const CSetReader& reader, const SSetDef* definition) const
{
    namespace P = Prop::GenericPictureEssenceDescriptor;
    reader.Read(P::PictureEssenceCoding, picture.coding);
    reader.Read(P::StoredWidth, picture.storedWidth);
    reader.Read(P::StoredHeight, picture.storedHeight);
    reader.Read(P::SampledWidth, picture.sampledWidth);
    reader.Read(P::SampledHeight, picture.sampledHeight);
    reader.Read(P::SampledXOffset, picture.sampledXOffset);
    reader.Read(P::SampledYOffset, picture.sampledYOffset);
    reader.Read(P::DisplayWidth, picture.displayWidth);
    reader.Read(P::DisplayHeight, picture.displayHeight);
    reader.Read(P::DisplayXOffset, picture.displayXOffset);
    reader.Read(P::DisplayYOffset, picture.displayYOffset);
    reader.Read(P::ActiveWidth, picture.activeWidth);
    reader.Read(P::ActiveHeight, picture.activeHeight);
    reader.Read(P::ActiveXOffset, picture.activeXOffset);
    reader.Read(P::ActiveYOffset, picture.activeYOffset);
    reader.Read(P::FrameLayout, picture.frameLayout);
    reader.Read(P::VideoLineMap, picture.videoLineMap);
    reader.ReadRate(P::AspectRatio, picture.aspectRatio);
    reader.Read(P::FieldDominance, picture.fieldDominance);
    reader.Read(P::StoredF2Offset, picture.storedF2Offset);
    reader.Read(P::DisplayF2Offset, picture.displayF2Offset);
    reader.Read(P::SignalStandard, picture.signalStandard);
    reader.Read(P::ActiveFormatDescriptor, picture.activeFormatDescriptor);
    reader.Read(P::AlphaTransparency, picture.alphaTransparency);
    reader.Read(P::TransferCharacteristic, picture.transferCharacteristic);
    reader.Read(P::ColorPrimaries, picture.colorPrimaries);
    reader.Read(P::CodingEquations, picture.codingEquations);
    reader.Read(P::ImageAlignmentFactor, picture.imageAlignmentFactor);
    reader.Read(P::ImageStartOffset, picture.imageStartOffset);
    reader.Read(P::ImageEndOffset, picture.imageEndOffset);
    reader.Read(P::MasteringDisplayMaximumLuminance, picture.masteringMaximumLuminance);
    reader.Read(P::MasteringDisplayMinimumLuminance, picture.masteringMinimumLuminance);
    ReadYCbCr(picture, reader);
    ReadRgba(picture, reader);
    if (definition == nullptr) return;
    if (definition->Is(ESet::VC1VideoDescriptor))
        reader.ReadBytes(Prop::VC1VideoDescriptor::VC1InitializationMetadata, picture.initializationData);
    if (definition->Is(ESet::MPEGVideoDescriptor)) ReadMpeg(picture.mpeg.emplace(), reader);
}

void CModelBuilder::ReadSound(SSoundDescriptor& sound, const CSetReader& reader, const SSetDef* definition) const
{
    namespace G = Prop::GenericSoundEssenceDescriptor;
    namespace W = Prop::WaveAudioEssenceDescriptor;
    namespace A = Prop::AES3AudioEssenceDescriptor;
    reader.ReadRate(G::AudioSamplingRate, sound.samplingRate);
    reader.Read(G::Locked, sound.locked);
    reader.Read(G::AudioRefLevel, sound.refLevel);
    reader.Read(G::ElectroSpatialFormulation, sound.electroSpatialFormulation);
    reader.Read(G::ChannelCount, sound.channelCount);
    reader.Read(G::QuantizationBits, sound.quantizationBits);
    reader.Read(G::DialNorm, sound.dialNorm);
    reader.Read(G::SoundEssenceCoding, sound.coding);
    reader.Read(G::ReferenceAudioAlignmentLevel, sound.referenceAudioAlignmentLevel);
    reader.ReadRate(G::ReferenceImageEditRate, sound.referenceImageEditRate);
    reader.Read(W::BlockAlign, sound.blockAlign);
    reader.Read(W::SequenceOffset, sound.sequenceOffset);
    reader.Read(W::AvgBps, sound.averageBytesPerSecond);
    reader.Read(W::ChannelAssignment, sound.channelAssignment);
    sound.isAes3 = definition != nullptr && definition->Is(ESet::AES3AudioEssenceDescriptor);
    if (!sound.isAes3) return;
    reader.Read(A::Emphasis, sound.emphasis);
    reader.Read(A::BlockStartOffset, sound.blockStartOffset);
    reader.Read(A::AuxBitsMode, sound.auxBitsMode);
    reader.Read(A::ChannelStatusMode, sound.channelStatusMode);
    const Values::SList status = Values::List(reader.Value(A::FixedChannelStatusData), 1);
    sound.fixedChannelStatus.assign(status.entries.begin(), status.entries.end());
    reader.Read(A::UserDataMode, sound.userDataMode);
    reader.Read(A::LinkedTimecodeTrackID, sound.linkedTimecodeTrackId);
    reader.Read(A::SMPTE337MDataStreamNumber, sound.dataStreamNumber);
}

void CModelBuilder::ReadData(SDataDescriptor& data, const CSetReader& reader, const SSetDef* definition) const
{
    namespace T = Prop::TimedTextDescriptor;
    using EKind = SDataDescriptor::EKind;
    reader.Read(Prop::GenericDataEssenceDescriptor::DataEssenceCoding, data.coding);
    if (definition == nullptr) return;
    if (definition->Is(ESet::ANCDataDescriptor)) data.kind = EKind::ancillary;
    if (definition->Is(ESet::VBIDataDescriptor)) data.kind = EKind::vbi;
    if (!definition->Is(ESet::TimedTextDescriptor)) return;
    data.kind = EKind::timedText;
    reader.Read(T::ResourceID, data.resourceId);
    reader.Read(T::UCSEncoding, data.encoding);
    reader.Read(T::NamespaceURI, data.namespaceUri);
    reader.Read(T::RFC5646LanguageTagList, data.languageTags);
}

void CModelBuilder::ReadPhysical(SPhysicalDescriptor& physical, const CSetReader& reader,
                                 const SSetDef& definition) const
{
    using EKind = SPhysicalDescriptor::EKind;
    if (definition.Is(ESet::TapeDescriptor)) {
        namespace T = Prop::TapeDescriptor;
        physical.kind = EKind::tape;
        reader.Read(T::TapeFormFactor, physical.formFactor);
        reader.Read(T::VideoSignal, physical.videoSignal);
        reader.Read(T::TapeFormat, physical.format);
        reader.Read(T::TapeCapacity, physical.minutes);
        reader.Read(T::TapeManufacturer, physical.manufacturer);
        reader.Read(T::TapeStock, physical.stock);
        reader.Read(T::TapeBatchNumber, physical.batchNumber);
    } else if (definition.Is(ESet::FilmDescriptor)) {
        namespace F = Prop::FilmDescriptor;
        physical.kind = EKind::film;
        reader.Read(F::FilmFormat, physical.format);
        reader.Read(F::FrameRate, physical.frameRate);
        reader.ReadRate(F::FilmAspectRatio, physical.aspectRatio);
        reader.Read(F::FilmStockManufacturer, physical.manufacturer);
        reader.Read(F::FilmStockKind, physical.stock);
        reader.Read(F::FilmBatchNumber, physical.batchNumber);
    } else if (definition.Is(ESet::ImportDescriptor)) {
        physical.kind = EKind::imported;
    } else if (definition.Is(ESet::RecordingDescriptor)) {
        physical.kind = EKind::recording;
    } else if (definition.Is(ESet::AuxiliaryDescriptor)) {
        physical.kind = EKind::auxiliary;
        reader.Read(Prop::AuxiliaryDescriptor::MIMEType, physical.mimeType);
    }
}

void CModelBuilder::ReadLocator(SLocator& locator, const SSource& source) const
{
    const CSetReader reader = Reader(*source.set);
    const bool isNetwork = source.definition != nullptr && source.definition->Is(ESet::NetworkLocator);
    locator.kind = isNetwork ? SLocator::EKind::network : SLocator::EKind::text;
    reader.Read(isNetwork ? Prop::NetworkLocator::URLString : Prop::TextLocator::LocatorName, locator.text);
}

void CModelBuilder::ReadSubDescriptor(SSubDescriptor& sub, const SSource& source)
{
    const CDepth deeper{depth_};
    const CSetReader reader = Reader(*source.set);
    const SSetDef* definition = source.definition;
    const auto is = [&](ESet base) { return definition != nullptr && definition->Is(base); };
    sub.definition = definition;
    sub.instanceUid = source.set->InstanceUid().value_or(SUUID{});
    if (is(ESet::AVCSubDescriptor)) {
        ReadAvc(sub.codedVideo.emplace(), reader);
    } else if (is(ESet::HEVCSubDescriptor)) {
        ReadHevc(sub.codedVideo.emplace(), reader);
    } else if (is(ESet::JPEG2000PictureSubDescriptor)) {
        ReadJpeg2000(sub.jpeg2000.emplace(), reader);
    } else if (is(ESet::MCALabelSubDescriptor)) {
        ReadMcaLabel(sub.mca.emplace(), reader, *definition);
    } else if (is(ESet::TimedTextResourceSubDescriptor)) {
        namespace R = Prop::TimedTextResourceSubDescriptor;
        STimedTextResource& resource = sub.resource.emplace();
        reader.Read(R::AncillaryResourceID, resource.resourceId);
        reader.Read(R::MIMEType, resource.mimeType);
        reader.Read(R::BodySID, resource.bodySid);
    } else {
        ReadObject(sub.object.emplace(), source);
    }
}

void CModelBuilder::ReadDescriptor(SDescriptor& descriptor, const SSource& source)
{
    namespace F = Prop::FileDescriptor;
    namespace G = Prop::GenericDescriptor;
    const CDepth deeper{depth_};
    const CSetReader reader = Reader(*source.set);
    const SSetDef* definition = source.definition;
    const auto is = [&](ESet base) { return definition != nullptr && definition->Is(base); };

    descriptor.key = source.set->Key();
    descriptor.definition = definition;
    descriptor.instanceUid = source.set->InstanceUid().value_or(SUUID{});
    descriptor.isMultiple = is(ESet::MultipleDescriptor);
    reader.Read(F::LinkedTrackID, descriptor.linkedTrackId);
    reader.ReadRate(F::SampleRate, descriptor.sampleRate);
    reader.ReadTime(F::ContainerDuration, descriptor.containerDuration);
    reader.Read(F::EssenceContainer, descriptor.essenceContainer);
    reader.Read(F::Codec, descriptor.codec);

    // Descriptors of unknown classes, experimental ones of cameras among them, show their kind by what they hold.
    const bool isUnknown = definition == nullptr;
    if (is(ESet::GenericPictureEssenceDescriptor) || (isUnknown && HasItemOf(*source.set, 0x3200)))
        ReadPicture(descriptor.picture.emplace(), reader, definition);
    else if (is(ESet::GenericSoundEssenceDescriptor) || (isUnknown && HasItemOf(*source.set, 0x3D00)))
        ReadSound(descriptor.sound.emplace(), reader, definition);
    else if (is(ESet::GenericDataEssenceDescriptor) || (isUnknown && HasItemOf(*source.set, 0x3E00)))
        ReadData(descriptor.data.emplace(), reader, definition);
    else if (!isUnknown && !is(ESet::FileDescriptor))
        ReadPhysical(descriptor.physical.emplace(), reader, *definition);

    ReadAll(reader, G::Locators, ESet::GenericLocator, descriptor.locators,
            [&](SLocator& locator, const SSource& set) { ReadLocator(locator, set); });
    ReadAll(reader, G::SubDescriptors, ESet::SubDescriptor, descriptor.subDescriptors,
            [&](SSubDescriptor& sub, const SSource& set) { ReadSubDescriptor(sub, set); });
    if (descriptor.isMultiple)
        ReadAll(reader, Prop::MultipleDescriptor::SubDescriptorUIDs, ESet::GenericDescriptor, descriptor.parts,
                [&](SDescriptor& part, const SSource& set) { ReadDescriptor(part, set); });
}

} // namespace TamrelMxf
