#include "project/Sequence.h"

#include "platform/Format.h"
#include "platform/Log.h"
#include "project/ClipParts.h"
#include "project/Clips.h"
#include "project/Options.h"
#include "timecode/PELTimecodeObject.h"
#include "xml/CommonElements.h"
#include "xml/ElementKeys.h"

#include <string>
#include <utility>

namespace zanfcp::Convenience {

using namespace ClipParts;

namespace {

/// The record at `index`; an empty one where the list holds something else than a dictionary, or ends.
const PELDictionary& recordAt(const PELArray& cuts, std::size_t index)
{
    static const PELDictionary none;
    const PELDictionary* record = index < cuts.size() ? cuts[index].as<PELDictionary>() : nullptr;
    return record != nullptr ? *record : none;
}

bool hasType(const PELDictionary& record, std::string_view type)
{
    return record.stringFor(PELCutType) == type;
}

/// A label of a record and the frames it stands for.
struct Label {
    std::string text;
    NSInteger frames = 0;

    Label(const PELDictionary& record, std::string_view key)
        : text{record.stringFor(key).value_or("")}, frames{PELTimecodeObject::framesFromString(text)}
    {}
};

std::shared_ptr<PELElement> cutElement(const Cuts& cuts, std::size_t index)
{
    const PELDictionary& record = recordAt(cuts.cuts, index);
    const Label start{record, PELCutStartTimecode};
    const Label end{record, PELCutEndTimecode};
    // A trace of the cut list rather than an error, at the level that every log keeps.
    ZAN_LOG_ERROR("PELElement: Element from %s (%i) to %s (%i) with frames %i", start.text.c_str(),
                  static_cast<int>(start.frames), end.text.c_str(), static_cast<int>(end.frames),
                  static_cast<int>(end.frames - start.frames));
    const std::string identifier = format("Sequence Cut Multiclip %04i", static_cast<int>(index + 1));
    return multiclipCutWithID(
        {.identifier = identifier,
         .files = cuts.files,
         .activeAngleIndex = record.integerFor(PELCutActiveAngleIndex),
         .multiclipDuration = cuts.multiclipDuration,
         .clips = cuts.clips,
         .highestOffsetOfFiles = cuts.highestOffsetOfFiles,
         .start = start.frames,
         .end = end.frames,
         .previousIsDissolve = index > 0 && hasType(recordAt(cuts.cuts, index - 1), PELCutTypeDissolve),
         .nextIsDissolve = hasType(recordAt(cuts.cuts, index + 1), PELCutTypeDissolve),
         .sequenceOffset = cuts.sequenceOffset,
         .loggingInfo = cuts.loggingInfo});
}

/// The multiclip as one cut shows it: only the picture's angle is marked, sound has tracks of its own.
void addMulticlip(PELElement& item, const MulticlipCut& cut)
{
    const auto multiclip = item.addChildWithKeyIdentifier(PELMulticlipKey, cut.identifier);
    addMulticlipSettings(*multiclip);
    for (std::size_t i = 0; i < cut.files.size(); ++i) {
        const auto clip = i < cut.clips.size() ? cut.clips[i] : nullptr;
        const NSInteger mediaDelay = cut.files[i] ? cut.files[i]->mediaDelay() : 0;
        const bool isShown = static_cast<NSInteger>(i) == cut.activeAngleIndex;
        multiclip->addChild(CommonElements::angleElementWithClip(clip, isShown, false, mediaDelay));
    }
}

/// The clip item of one audio track, placed by the file's own offset.
std::shared_ptr<PELElement> audioItem(const SequenceAudio& audio, const PELRate& rate, NSInteger trackIndex)
{
    auto item = CommonElements::clipItemElementWithID(
        {.name = nameOf(audio.file), .duration = audio.duration, .rate = &rate, .start = 0, .end = audio.duration});
    if (!item) return nullptr;
    const NSInteger in = wrappingSum(wrappingSum(audio.file->offset(), audio.sequenceOffset), audio.file->mediaDelay());
    addOptional(*item, audio.loggingInfo);
    addInteger(*item, PELInKey, in);
    addInteger(*item, PELOutKey, wrappingSum(in, audio.duration));
    addFileReference(*item, audio.file);
    item->addChild(sourceTrackElementWithMediaType(kAudio, trackIndex));
    return item;
}

} // namespace

NSInteger sequenceOffsetForFiles(const PELFileElements& files, const PELTimecode& sequenceStart)
{
    const auto first = fileAtIndex(files, 0);
    const NSInteger common = wrappingSum(startFrame(first), first ? first->offset() : 0);
    return wrappingDifference(static_cast<NSInteger>(sequenceStart.frames), common);
}

PELElements cutsForCuts(const Cuts& cuts)
{
    PELElements elements;
    elements.reserve(cuts.cuts.size());
    const PELRate& rate = movieProperties(fileAtIndex(cuts.files, cuts.multiclipMainFileIndex)).timecode.rate;
    for (std::size_t i = 0; i < cuts.cuts.size(); ++i) {
        const PELDictionary& record = recordAt(cuts.cuts, i);
        if (hasType(record, PELCutTypeCut))
            elements.push_back(cutElement(cuts, i));
        else if (hasType(record, PELCutTypeDissolve))
            elements.push_back(dissolveWithStart(Label{record, PELCutStartTimecode}.frames,
                                                 Label{record, PELCutEndTimecode}.frames, &rate));
    }
    return elements;
}

std::shared_ptr<PELElement> multiclipCutWithID(const MulticlipCut& cut)
{
    if (cut.activeAngleIndex < 0 || std::cmp_greater_equal(cut.activeAngleIndex, cut.files.size())) {
        ZAN_LOG_ERROR("PELElement: Index out of bounds: %i (# of files: %i)", static_cast<int>(cut.activeAngleIndex),
                      static_cast<int>(cut.files.size()));
        return nullptr;
    }
    const auto file = fileAtIndex(cut.files, cut.activeAngleIndex);
    const PELMovieProperties& properties = movieProperties(file);
    auto item = CommonElements::clipItemElementWithID({.name = nameOf(file),
                                                       .duration = cut.multiclipDuration,
                                                       .rate = &properties.timecode.rate,
                                                       .start = cut.previousIsDissolve ? -1 : cut.start,
                                                       .end = cut.nextIsDissolve ? -1 : cut.end});
    if (!item) return nullptr;
    const NSInteger highestOffset = cut.highestOffsetOfFiles == NSIntegerMax ? 0 : cut.highestOffsetOfFiles;
    const NSInteger base = wrappingSum(cut.sequenceOffset, highestOffset);
    addInteger(*item, PELInKey, wrappingSum(base, cut.start));
    addInteger(*item, PELOutKey, wrappingSum(base, cut.end));
    addText(*item, PELPixelAspectRatioKey, NSStringFromPELPixelAspectRatio(properties.pixelAspectRatio));
    addBoolean(*item, PELEnabledKey, true);
    addBoolean(*item, PELAnamorphicKey, properties.anamorphic);
    addText(*item, PELAlphaTypeKey, PELAlphaTypeNone);
    addText(*item, PELMasterClipIDKey, masterClipID(file));
    addInteger(*item, PELSyncOffsetKey, 0);
    addOptional(*item, cut.loggingInfo);
    addFileReference(*item, file);
    item->addChild(sourceTrackElementWithMediaType(kVideo, NSNotFound));
    addText(*item, PELFieldDominanceKey, NSStringFromPELFieldDominance(properties.videoCodec.fieldDominance));
    addMulticlip(*item, cut);
    return item;
}

std::shared_ptr<PELElement> multiclipCutWithFiles(MulticlipCut cut)
{
    cut.identifier = {};
    return multiclipCutWithID(cut);
}

std::shared_ptr<PELElement> dissolveWithStart(NSInteger start, NSInteger end, const PELRate* rate)
{
    auto element = PELElement::elementWithKey(PELTransitionItemKey);
    element->addChild(CommonElements::rateElementWithRate(rate));
    addInteger(*element, PELStartKey, start);
    addInteger(*element, PELEndKey, end);
    addText(*element, PELAlignmentKey, PELAlignmentCenter);
    element->addChild(crossDissolveEffectElement());
    return element;
}

std::shared_ptr<PELElement> crossDissolveEffectElement()
{
    auto element = PELElement::elementWithKey(PELEffectKey);
    addText(*element, PELNameKey, PELCrossDissolveName);
    addText(*element, PELEffectIDKey, PELCossDissolceEffectID);
    addText(*element, PELEffectCategoryKey, "Dissolve");
    addText(*element, PELEffectTypeKey, "transition");
    addText(*element, PELMediaTypeKey, kVideo);
    addInteger(*element, PELWipeCodeKey, 0);
    addInteger(*element, PELWipeAccuracyKey, 100);
    addInteger(*element, PELStartRatioKey, 0);
    addInteger(*element, PELEndRatioKey, 1);
    addBoolean(*element, PELReverseKey, false);
    return element;
}

std::shared_ptr<PELElement> audioElementForSequenceWithTracksFromFile(const SequenceAudio& audio)
{
    const PELMovieProperties& properties = movieProperties(audio.file);
    const auto characteristics = PELElement::elementWithKey(PELSampleCharacteristicsKey);
    addInteger(*characteristics, PELDepthKey, static_cast<NSInteger>(properties.audioBitDepth));
    addInteger(*characteristics, PELSampleRateKey, static_cast<NSInteger>(properties.audioSampleRate));

    auto element = PELElement::elementWithKey(PELAudioKey);
    element->addChild(PELElement::elementWithKeyChildren(PELFormatKey, {characteristics}));
    element->addChild(outputsElementForFile(audio.file));
    addUnsetInAndOut(*element);

    const PELRate& rate = audio.rate != nullptr ? *audio.rate : properties.timecode.rate;
    for (NSInteger t = 1; t <= static_cast<NSInteger>(properties.audioChannelCount); ++t)
        element->addChild(PELElement::elementWithKey(PELTrackKey))->addChild(audioItem(audio, rate, t));
    return element;
}

std::shared_ptr<PELElement> outputsElementForFile(const std::shared_ptr<PELFileElement>& file)
{
    const auto channels = static_cast<NSInteger>(movieProperties(file).audioChannelCount);
    const auto group = PELElement::elementWithKey(PELGroupKey);
    addInteger(*group, PELIndexKey, 1);
    addInteger(*group, PELNumChannelsKey, channels);
    addInteger(*group, PELDownmixKey, 0);
    for (NSInteger c = 1; c <= channels; ++c)
        addInteger(*group->addChild(PELElement::elementWithKey(PELChannelKey)), PELIndexKey, c);
    return PELElement::elementWithKeyChildren(PELOutputsKey, {group});
}

} // namespace zanfcp::Convenience
