#include "project/ProjectRoot.h"

#include "media/FileTiming.h"
#include "platform/Log.h"
#include "project/ClipParts.h"
#include "project/Clips.h"
#include "project/Multiclip.h"
#include "project/Options.h"
#include "project/ProjectSettings.h"
#include "project/Sequence.h"
#include "project/SequenceFormat.h"
#include "timecode/PELTimecodeObject.h"
#include "xml/CommonElements.h"
#include "xml/ElementKeys.h"
#include "xml/ElementText.h"
#include "xml/MajorElements.h"

namespace zanfcp::Convenience {

using namespace ClipParts;

namespace {

constexpr std::int32_t kDone = 0;
constexpr std::int32_t kWrongArgument = -50;

std::int32_t fail(std::int32_t status, const char* line)
{
    ZAN_LOG_ERROR("%s", line);
    return status;
}

/// True when the leaf was appended.
bool add(PELElement& parent, std::string_view key, std::string text)
{
    return parent.addChildWithKey(key, std::move(text)) != nullptr;
}

/// Builds one document, from the outside in. Each step returns 0 or the code of what failed.
class DocumentBuilder {
public:
    DocumentBuilder(const PELFileElements& files, const PELDictionary& options)
        : files_{files}, settings_{readProjectSettings(options)}
    {}

    std::int32_t build()
    {
        chooseFiles();
        if (const auto status = makeLoggingInfos()) return status;
        applyOverrides(format_, settings_.sequenceOverrides);
        if (const auto status = addImportOptions()) return status;
        if (const auto status = addProject()) return status;
        if (const auto status = addBin()) return status;
        if (const auto status = addClips()) return status;
        if (const auto status = addMulticlip()) return status;
        if (const auto status = settings_.addSequence ? addSequence() : kDone) return status;
        ZAN_LOG_DEFAULT("PELElement: Created XML");
        return kDone;
    }
    const std::shared_ptr<PELRootElement>& root() const { return root_; }

private:
    void chooseFiles();
    std::int32_t makeLoggingInfos();
    std::int32_t addImportOptions();
    std::int32_t addProject();
    std::int32_t addBin();
    std::int32_t addClips();
    std::int32_t addMulticlip();

    std::int32_t addSequence();
    std::int32_t makeSequence();
    std::int32_t placeSequence();
    std::int32_t addSequenceVideo();
    std::int32_t addSequenceCuts();
    std::int32_t addDefaultCut();
    std::int32_t addSequenceAudio();
    std::int32_t addMarkers();

    const PELFileElements& files_;
    const ProjectSettings settings_;

    std::shared_ptr<PELFileElement> soundFile_;
    SequenceFormat format_;
    NSInteger highestOffset_ = 0;                     ///< frames
    NSInteger multiclipDuration_ = 0;                 ///< frames
    NSInteger sequenceDuration_ = 0;                  ///< frames
    NSInteger sequenceOffset_ = 0;                    ///< frames
    std::shared_ptr<PELElement> sequenceLoggingInfo_; ///< null when nothing is to be logged
    std::shared_ptr<PELElement> clipLoggingInfo_;     ///< null when nothing is to be logged

    std::shared_ptr<PELRootElement> root_ = makeElement<PELRootElement>();
    std::shared_ptr<PELElement> container_ = root_; ///< of bin and sequence: the project's children, or the root
    PELElements clips_;
    std::shared_ptr<PELElement> sequence_;
    std::shared_ptr<PELElement> media_; ///< of the sequence
    std::shared_ptr<PELElement> track_; ///< the sequence's one video track
};

void DocumentBuilder::chooseFiles()
{
    const NSInteger sound = settings_.soundSourceIndex.value_or(PELGetIndexOfFileWithMostSoundTracks(files_));
    soundFile_ = fileAtIndex(files_, sound);
    format_ = sequenceFormatOfFile(fileAtIndex(files_, settings_.sequenceTemplateFileIndex));
    highestOffset_ = PELFileElement::highestOffsetOfFiles(files_);
    sequenceDuration_ = settings_.sequenceDuration.value_or(PELGetSequenceDurationForFileElements(files_));
    multiclipDuration_ = PELGetMulticlipDurationOfFileElements(files_);
}

std::int32_t DocumentBuilder::makeLoggingInfos()
{
    // The factory gives nothing when nothing is to be logged, and documents do without the element then. Only an
    // element that is missing although there is something to log is a failure.
    const bool hasText = !settings_.scene.empty() || !settings_.take.empty();
    const auto make = [&](bool good) {
        return CommonElements::loggingInfoElementWithDescription(
            {.scene = settings_.scene, .shottake = settings_.take, .good = good});
    };
    sequenceLoggingInfo_ = make(settings_.sequenceIsGood);
    if (!sequenceLoggingInfo_ && (hasText || settings_.sequenceIsGood)) return 758;
    clipLoggingInfo_ = make(settings_.clipsAreGood);
    if (!clipLoggingInfo_ && (hasText || settings_.clipsAreGood)) return 765;
    return kDone;
}

std::int32_t DocumentBuilder::addImportOptions()
{
    if (!root_->addChild(MajorElements::importOptionsElementWithOptions(settings_.importOptions)))
        return fail(827, "PELElement: Could not add import options");
    return kDone;
}

std::int32_t DocumentBuilder::addProject()
{
    ZAN_LOG_DEFAULT("PELElement: Adding project");
    if (!settings_.addProject) return kDone;
    if (!root_->addChild(MajorElements::projectElementWithName(settings_.projectName)))
        return fail(838, "PELElement: Could not add project");
    container_ = root_->childAtPath("/project/children");
    return kDone;
}

std::int32_t DocumentBuilder::addBin()
{
    ZAN_LOG_DEFAULT("PELElement: Adding bin");
    const auto bin = container_->addChild(MajorElements::binElementWithName(settings_.binName));
    if (!bin) return fail(852, "PELElement: Could not add bin");
    if (!settings_.binLabel.empty() && !CommonElements::addLabel(*bin, settings_.binLabel))
        return fail(859, "PELElement: Could not set bin label");
    return kDone;
}

std::int32_t DocumentBuilder::addClips()
{
    ZAN_LOG_DEFAULT("PELElement: Adding clips");
    clips_ = clipsForFileElements({.fileElements = files_,
                                   .label = settings_.clipLabel,
                                   .loggingInfo = clipLoggingInfo_,
                                   .masterComment = settings_.clipComment,
                                   .useClipItems = settings_.useClipItems});
    if (clips_.empty()) return fail(875, "PELElement: Could not create clips");
    if (!container_->addChildrenAtPath(clips_, "/bin/children")) {
        ZAN_LOG_DEFAULT("PELElement: Could not add clips"); // the one failure that is not logged as an error
        return 883;
    }
    return kDone;
}

std::int32_t DocumentBuilder::addMulticlip()
{
    if (!settings_.addMulticlip) return kDone;
    ZAN_LOG_DEFAULT("PELElement: Adding multiclip");
    const auto multiclip = multiclipElementForFiles({.files = files_,
                                                     .mainFileIndex = settings_.multiclipMainFileIndex,
                                                     .multiclipDuration = multiclipDuration_,
                                                     .clips = clips_,
                                                     .loggingInfo = clipLoggingInfo_});
    if (!multiclip) return fail(902, "PELElement: Could not create multiclip");
    if (!container_->addChildAtPath(multiclip, "/bin/children"))
        return fail(910, "PELElement: Could not add multiclip");
    return kDone;
}

std::int32_t DocumentBuilder::addSequence()
{
    // Every label below is one of the sequence, whichever file was read last.
    PELSetFPSForRate(format_.properties.timecode.rate);
    if (const auto status = makeSequence()) return status;
    if (const auto status = placeSequence()) return status;
    if (const auto status = addSequenceVideo()) return status;
    if (const auto status = addSequenceCuts()) return status;
    if (const auto status = addSequenceAudio()) return status;
    if (!add(*sequence_, PELIsMasterClipKey, booleanText(false)))
        return fail(1139, "PELElement: Could not add is master clip");
    return addMarkers();
}

std::int32_t DocumentBuilder::makeSequence()
{
    ZAN_LOG_DEFAULT("PELElement: Adding sequence");
    sequence_ = MajorElements::sequenceElementWithID({}, settings_.sequenceName, sequenceDuration_,
                                                     &format_.properties.timecode.rate);
    if (!sequence_) return fail(926, "PELElement: Could not create sequence");
    if (!add(*sequence_, PELUpdateBehaviorKey, PELUpdateBehaviorAdd))
        return fail(932, "PELElement: Could not add behaviour");
    addOptional(*sequence_, sequenceLoggingInfo_);
    if (!settings_.sequenceComment.empty() &&
        !CommonElements::addCommentForCommentKey(*sequence_, settings_.sequenceComment, PELMasterComment1Key))
        return fail(940, "PELElement: Could not add comment");
    if (!container_->addChild(sequence_)) return fail(947, "PELElement: Could not add sequence");
    if (!settings_.sequenceLabel.empty() && !CommonElements::addLabel(*sequence_, settings_.sequenceLabel))
        return fail(956, "PELElement: Could not set sequence label");
    return kDone;
}

/// Start timecode, in and out point; and from the start timecode the offset, or else the duration, of the sequence.
std::int32_t DocumentBuilder::placeSequence()
{
    if (settings_.sequenceStartTimecode) {
        const PELTimecode start =
            PELTimecodeMakeWithString(*settings_.sequenceStartTimecode, format_.properties.timecode.rate);
        if (!sequence_->addChild(CommonElements::timecodeElementWithTimecode(&start)))
            return fail(967, "PELElement: Could not set sequence timecode");

        const PELDictionary* lastCut = settings_.cuts.empty() ? nullptr : settings_.cuts.back().as<PELDictionary>();
        const auto lastEnd = lastCut != nullptr ? lastCut->stringFor(PELCutEndTimecode) : std::nullopt;
        if (settings_.sequenceCorrectFileOffsets) {
            sequenceOffset_ = sequenceOffsetForFiles(files_, start);
        } else if (lastEnd) {
            sequenceDuration_ = PELTimecodeObject::framesFromString(*lastEnd);
            const auto duration = sequence_->childNamed(PELDurationKey);
            if (!duration) return fail(984, "PELElement: Could not set sequence duration");
            duration->setValue(integerText(sequenceDuration_));
        }
    }
    if (!add(*sequence_, PELInKey, integerText(-1))) return fail(997, "PELElement: Could not set in-point");
    if (!add(*sequence_, PELOutKey, integerText(-1))) return fail(1002, "PELElement: Could not set out-point");
    return kDone;
}

std::int32_t DocumentBuilder::addSequenceVideo()
{
    ZAN_LOG_DEFAULT("PELElement: Adding sequence media");
    media_ = sequence_->addChild(CommonElements::mediaElement());
    if (!media_) return fail(1012, "PELElement: Could not add sequence media");

    if (settings_.useFirstClipSettings) {
        ZAN_LOG_DEFAULT("PELElement: Will use first clip settings");
        const auto characteristics = PELElement::elementWithKey(PELSampleCharacteristicsKey);
        if (!characteristics) return fail(1022, "PELElement: Could not set sample characteristics");
        if (!media_->addChild(CommonElements::videoElementWithSampleCharacteristics(characteristics)))
            return fail(1028, "PELElement: Could not add video element");
    } else {
        if (!media_->addChild(CommonElements::videoElementWithSampleCharacteristics(format_.sampleCharacteristics)))
            return fail(1036, "PELElement: Could not add video element");
        if (!media_->addChildAtPath(codecElementWithMovieProperties(&format_.properties),
                                    "video/format/samplecharacteristics"))
            return fail(1045, "PELElement: Could not add codec element");
    }

    ZAN_LOG_DEFAULT("PELElement: Adding sequence video");
    track_ = sequence_->addChildAtPath(PELElement::elementWithKey(PELTrackKey), "media/video");
    if (!track_) return fail(1059, "PELElement: Did not find a video track");
    return kDone;
}

std::int32_t DocumentBuilder::addSequenceCuts()
{
    ZAN_LOG_DEFAULT("PELElement: Adding sequence cuts");
    if (settings_.cuts.empty()) return addDefaultCut();
    ZAN_LOG_DEFAULT("PELElement: Has cuts, creating multiclip cut");
    if (!track_->addChildren(cutsForCuts({.cuts = settings_.cuts,
                                          .files = files_,
                                          .multiclipMainFileIndex = settings_.multiclipMainFileIndex,
                                          .multiclipDuration = multiclipDuration_,
                                          .clips = clips_,
                                          .highestOffsetOfFiles = highestOffset_,
                                          .sequenceOffset = sequenceOffset_,
                                          .loggingInfo = clipLoggingInfo_})))
        return fail(1106, "PELElement: Could not add multiclip cut");
    return kDone;
}

std::int32_t DocumentBuilder::addDefaultCut()
{
    ZAN_LOG_DEFAULT("PELElement: Has no cuts, creating default");
    const auto cut = multiclipCutWithFiles({.files = files_,
                                            .activeAngleIndex = settings_.multiclipMainFileIndex,
                                            .multiclipDuration = multiclipDuration_,
                                            .clips = clips_,
                                            .highestOffsetOfFiles = highestOffset_,
                                            .start = 0,
                                            .end = sequenceDuration_,
                                            .sequenceOffset = sequenceOffset_,
                                            .loggingInfo = clipLoggingInfo_});
    if (!cut) return fail(1083, "PELElement: Could not create multiclip cut");
    if (!track_->addChild(cut)) return fail(1089, "PELElement: Could not add multiclip cut");
    return kDone;
}

std::int32_t DocumentBuilder::addSequenceAudio()
{
    if (!movieProperties(soundFile_).hasAudio) return kDone;
    ZAN_LOG_DEFAULT("PELElement: Adding sequence audio");
    const auto audio = audioElementForSequenceWithTracksFromFile({.file = soundFile_,
                                                                  .duration = sequenceDuration_,
                                                                  .highestOffsetOfFiles = highestOffset_,
                                                                  .rate = &format_.properties.timecode.rate,
                                                                  .sequenceOffset = sequenceOffset_,
                                                                  .loggingInfo = clipLoggingInfo_});
    if (!audio) return fail(1125, "PELElement: Could not create sequence audio");
    if (!media_->addChild(audio)) return fail(1131, "PELElement: Could not add sequence audio");
    return kDone;
}

std::int32_t DocumentBuilder::addMarkers()
{
    ZAN_LOG_DEFAULT("PELElement: Adding markers");
    static const PELDictionary nothing;
    for (const PELValue& entry : settings_.markers) {
        const PELDictionary* given = entry.as<PELDictionary>();
        const PELDictionary& marker = given != nullptr ? *given : nothing; // refused below for want of a name
        const std::string name = marker.stringFor(PELMarkerName).value_or("");
        const std::string comment = marker.stringFor(PELMarkerComment).value_or("");
        const NSInteger inPoint =
            PELTimecodeObject::framesFromString(marker.stringFor(PELMarkerStartFrame).value_or(""));
        const NSInteger duration = marker.integerFor(PELMarkerDuration);
        if (!sequence_->addChild(CommonElements::markerElementWithName(
                {.name = name,
                 .comment = comment,
                 .color = marker.colorFor(PELMarkerColor),
                 .inPoint = inPoint,
                 .outPoint = duration > 0 ? wrappingSum(inPoint, duration) : -1})))
            return fail(1162, "PELElement: Could not add marker");
    }
    return kDone;
}

} // namespace

std::int32_t rootElementForProject(std::shared_ptr<PELRootElement>* root, const PELFileElements& files,
                                   const PELDictionary& options)
{
    if (root == nullptr || files.empty()) return kWrongArgument;
    DocumentBuilder builder{files, options};
    if (const std::int32_t status = builder.build()) return status;
    *root = builder.root();
    return kDone;
}

} // namespace zanfcp::Convenience
