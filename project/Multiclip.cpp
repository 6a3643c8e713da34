#include "project/Multiclip.h"

#include "project/ClipParts.h"
#include "project/Clips.h"
#include "xml/CommonElements.h"
#include "xml/ElementKeys.h"
#include "xml/MajorElements.h"

namespace zanfcp::Convenience {

using namespace ClipParts;

namespace {

/// A clip item of the multiclip, as long as the multiclip is.
std::shared_ptr<PELElement> multiclipItem(const std::shared_ptr<PELFileElement>& file, const char* kind,
                                          NSInteger index, NSInteger duration)
{
    auto item = CommonElements::clipItemElementWithID({.identifier = itemID(file, kind, index),
                                                       .name = nameOf(file),
                                                       .duration = duration,
                                                       .rate = &movieProperties(file).timecode.rate,
                                                       .start = 0,
                                                       .end = duration});
    if (!item) return nullptr;
    addInteger(*item, PELInKey, 0);
    addInteger(*item, PELOutKey, duration);
    return item;
}

/// The multiclip itself, with one angle for each clip; the main file's is the active one.
std::shared_ptr<PELElement> angles(const MulticlipVideoTrack& track)
{
    auto multiclip = PELElement::elementWithKeyIdentifier(PELMulticlipKey, kMulticlipID);
    addMulticlipSettings(*multiclip);
    for (std::size_t i = 0; i < track.clips.size(); ++i) {
        const auto file = fileAtIndex(track.files, static_cast<NSInteger>(i));
        const bool isActive = file && file == track.mainFile;
        multiclip->addChild(
            CommonElements::angleElementWithClip(track.clips[i], isActive, isActive, file ? file->mediaDelay() : 0));
    }
    return multiclip;
}

} // namespace

std::shared_ptr<PELElement> multiclipElementForFiles(const Multiclip& multiclip)
{
    const auto main = fileAtIndex(multiclip.files, multiclip.mainFileIndex);
    const PELMovieProperties& properties = movieProperties(main);
    const NSInteger duration = multiclip.multiclipDuration;

    auto clip = MajorElements::clipElementWithID(itemID(main, "Multiclip ", 1), kMulticlipName, duration,
                                                 &properties.timecode.rate);
    addUnsetInAndOut(*clip);
    addText(*clip, PELUpdateBehaviorKey, PELUpdateBehaviorAdd);
    addText(*clip, PELMasterClipIDKey, masterClipID(main)); // the main file's, on purpose: there is no master multiclip
    addBoolean(*clip, PELIsMasterClipKey, false);
    addOptional(*clip, multiclip.loggingInfo);

    const auto media = clip->addChild(CommonElements::mediaElement());
    const auto video = media->addChild(PELElement::elementWithKey(PELVideoKey));
    const auto audio = media->addChild(PELElement::elementWithKey(PELAudioKey));
    const auto videoTrack =
        videoTrackForMulticlipWithFiles({.files = multiclip.files,
                                         .mainFile = main,
                                         .clips = multiclip.clips,
                                         .duration = duration,
                                         .loggingInfo = multiclip.loggingInfo,
                                         .linkElements = linkElementsForMulticlipElement(clip, main)});
    addTrackState(*videoTrack);
    video->addChild(videoTrack);
    addUnsetInAndOut(*audio);
    for (NSInteger i = 1; i <= static_cast<NSInteger>(properties.audioChannelCount); ++i)
        audio->addChild(track(audioTrackForMulticlipWithFile(main, i, duration, multiclip.loggingInfo)));
    return clip;
}

std::shared_ptr<PELElement> videoTrackForMulticlipWithFiles(const MulticlipVideoTrack& track)
{
    auto element = PELElement::elementWithKey(PELTrackKey);
    const PELMovieProperties& properties = movieProperties(track.mainFile);
    const auto item = element->addChild(multiclipItem(track.mainFile, "Multiclip V", 1, track.duration));
    if (!item) return element;
    addText(*item, PELPixelAspectRatioKey, NSStringFromPELPixelAspectRatio(properties.pixelAspectRatio));
    addBoolean(*item, PELAnamorphicKey, properties.anamorphic);
    addText(*item, PELAlphaTypeKey, PELAlphaTypeNone);
    addText(*item, PELMasterClipIDKey, masterClipID(track.mainFile));
    addInteger(*item, PELSyncOffsetKey, 0);
    addOptional(*item, track.loggingInfo);
    addFileReference(*item, track.mainFile);
    item->addChild(sourceTrackElementWithMediaType(kVideo, NSNotFound));
    item->addChildren(track.linkElements);
    addText(*item, PELFieldDominanceKey, NSStringFromPELFieldDominance(properties.videoCodec.fieldDominance));
    item->addChild(angles(track));
    return element;
}

std::shared_ptr<PELElement> audioTrackForMulticlipWithFile(const std::shared_ptr<PELFileElement>& file, NSInteger index,
                                                           NSInteger duration,
                                                           const std::shared_ptr<PELElement>& loggingInfo)
{
    auto item = multiclipItem(file, "Multiclip A", index, duration);
    if (!item) return nullptr;
    addText(*item, PELMasterClipIDKey, masterClipID(file));
    addInteger(*item, PELSyncOffsetKey, 0);
    addOptional(*item, loggingInfo);
    addFileReference(*item, file);
    item->addChild(sourceTrackElementWithMediaType(kAudio, index));
    item->addChildWithKeyIdentifier(PELMulticlipKey, kMulticlipID);
    return item;
}

PELElements linkElementsForMulticlipElement(const std::shared_ptr<PELElement>& /*multiclip*/,
                                            const std::shared_ptr<PELFileElement>& mainFile)
{
    return links(mainFile, "Multiclip ");
}

} // namespace zanfcp::Convenience
