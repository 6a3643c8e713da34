#include "project/Clips.h"

#include "media/FixedText.h"
#include "media/ZANFCPAdditions.h"
#include "project/ClipParts.h"
#include "xml/CommonElements.h"
#include "xml/ElementKeys.h"
#include "xml/MajorElements.h"
#include "xml/Parameter.h"

namespace zanfcp::Convenience {

using namespace ClipParts;

namespace {

std::shared_ptr<PELElement> qtCodecElement(const PELCodecProperties& codec)
{
    auto element = PELElement::elementWithKey(PELQTCodecKey);
    addText(*element, PELCodecNameKey, fixedText(codec.name));
    addText(*element, PELCodecTypeNameKey, fixedText(codec.typeName));
    addText(*element, PELCodecTypeCodeKey, ZANFCPAdditions::stringWithFourCharCode(codec.typeCode));
    element->addChild(PELElement::elementWithKeyStringValue(PELCodecVendorCodeKey, codec.vendorCode));
    addInteger(*element, PELSpatialQualityKey, codec.spatialQuality);
    addInteger(*element, PELTemporalQualityKey, codec.temporalQuality);
    addInteger(*element, PELKeyframeRateKey, codec.keyframeRate);
    addInteger(*element, PELDataRateKey, codec.dataRate);
    return element;
}

/// A clip item that shows all of the clip's file.
std::shared_ptr<PELElement> wholeFileItem(const Clip& clip, const char* kind, NSInteger index)
{
    const auto& file = clip.fileElement;
    const NSInteger duration = file->movieProperties().duration;
    auto item = CommonElements::clipItemElementWithID({.identifier = itemID(file, kind, index),
                                                       .name = file->name(),
                                                       .duration = duration,
                                                       .rate = &clip.rate,
                                                       .start = 0,
                                                       .end = duration});
    if (!item) return nullptr;
    addInteger(*item, PELInKey, 0);
    addInteger(*item, PELOutKey, duration);
    return item;
}

std::shared_ptr<PELElement> videoItem(const Clip& clip)
{
    const auto& file = clip.fileElement;
    const PELMovieProperties& properties = file->movieProperties();
    auto item = wholeFileItem(clip, "V", 1);
    if (!item) return nullptr;
    addText(*item, PELPixelAspectRatioKey, NSStringFromPELPixelAspectRatio(properties.pixelAspectRatio));
    addBoolean(*item, PELAnamorphicKey, properties.anamorphic);
    addText(*item, PELAlphaTypeKey, PELAlphaTypeNone);
    addText(*item, PELFieldDominanceKey, NSStringFromPELFieldDominance(properties.videoCodec.fieldDominance));
    addText(*item, PELMasterClipIDKey, masterClipID(file));
    addOptional(*item, clip.loggingInfo);
    item->addChild(file);
    item->addChild(sourceTrackElementWithMediaType(kVideo, NSNotFound));
    item->addChildren(linkElementsForFileElement(file));
    return item;
}

std::shared_ptr<PELElement> audioItem(const Clip& clip, NSInteger channel)
{
    auto item = wholeFileItem(clip, "A", channel);
    if (!item) return nullptr;
    addOptional(*item, clip.loggingInfo);
    addText(*item, PELMasterClipIDKey, masterClipID(clip.fileElement));
    addFileReference(*item, clip.fileElement);
    item->addChild(sourceTrackElementWithMediaType(kAudio, channel));
    return item;
}

std::shared_ptr<PELElement> mediaOf(const Clip& clip)
{
    auto media = CommonElements::mediaElement();
    media->addChild(PELElement::elementWithKeyChildren(PELVideoKey, {track(videoItem(clip))}));

    const PELMovieProperties& properties = clip.fileElement->movieProperties();
    if (!properties.hasAudio) return media;
    const auto audio = media->addChild(PELElement::elementWithKey(PELAudioKey));
    addUnsetInAndOut(*audio);
    for (NSInteger channel = 1; channel <= static_cast<NSInteger>(properties.audioChannelCount); ++channel)
        audio->addChild(track(audioItem(clip, channel)));
    return media;
}

} // namespace

std::shared_ptr<PELElement> codecElementWithMovieProperties(const PELMovieProperties* movieProperties)
{
    if (!Parameter::requireObject(movieProperties, "movieProperties")) return nullptr;
    const PELCodecProperties& codec = movieProperties->videoCodec;
    auto element = PELElement::elementWithKey(PELCodecKey);
    addText(*element, PELNameKey, fixedText(codec.name));
    const auto application = element->addChild(PELElement::elementWithKey(PELAppSpecificDataKey));
    addText(*application, PELAppNameKey, "Final Cut Pro");
    addText(*application, PELAppManufacturerKey, "Apple Inc.");
    addText(*application, PELAppVersionKey, "7.0");
    application->addChild(PELElement::elementWithKeyChildren(PELDataKey, {qtCodecElement(codec)}));
    return element;
}

std::shared_ptr<PELElement> sourceTrackElementWithMediaType(std::optional<std::string_view> mediaType,
                                                            NSInteger trackIndex)
{
    if (!Parameter::requireObject(mediaType ? &*mediaType : nullptr, "mediaType")) return nullptr;
    auto element = PELElement::elementWithKey(PELSourceTrackKey);
    addText(*element, PELMediaTypeKey, *mediaType);
    if (trackIndex != NSNotFound) addInteger(*element, PELTrackIndexKey, trackIndex);
    return element;
}

PELElements linkElementsForFileElement(const std::shared_ptr<PELFileElement>& file)
{
    return links(file, "");
}

std::shared_ptr<PELElement> clipElementWithID(const Clip& clip)
{
    if (!Parameter::requireObject(clip.fileElement.get(), "file")) return nullptr;
    auto element = MajorElements::clipElementWithID(clip.identifier, clip.name, clip.duration, &clip.rate);
    addOptional(*element, clip.loggingInfo);
    addText(*element, PELMasterClipIDKey, masterClipID(clip.fileElement));
    addBoolean(*element, PELIsMasterClipKey, true);
    addUnsetInAndOut(*element);
    if (!clip.useClipItems) {
        element->addChild(clip.fileElement);
        return element;
    }
    addText(*element, PELUpdateBehaviorKey, PELUpdateBehaviorAdd);
    element->addChild(mediaOf(clip));
    return element;
}

PELElements clipsForFileElements(const Clips& clips)
{
    PELElements all;
    all.reserve(clips.fileElements.size());
    for (const auto& file : clips.fileElements) {
        const PELMovieProperties& properties = movieProperties(file);
        const auto clip = clipElementWithID({.identifier = masterClipID(file),
                                             .name = nameOf(file),
                                             .duration = properties.duration,
                                             .rate = properties.timecode.rate,
                                             .fileElement = file,
                                             .loggingInfo = clips.loggingInfo,
                                             .useClipItems = clips.useClipItems});
        if (clip) {
            CommonElements::addLabel(*clip, clips.label);
            CommonElements::addCommentForCommentKey(*clip, clips.masterComment, PELMasterComment1Key);
        }
        all.push_back(clip);
    }
    return all;
}

} // namespace zanfcp::Convenience
