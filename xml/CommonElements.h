#pragma once

#include "../platform/FileURL.h"
#include "../platform/Integers.h"
#include "../platform/PELColor.h"
#include "../timecode/PELRate.h"
#include "../timecode/PELTimecode.h"
#include "ElementKeys.h"
#include "PELElement.h"
#include "PELFieldDominance.h"
#include "PELPixelAspectRatio.h"

/// Factories of the smaller elements, and the operations that add labels and comments.
/// Each factory returns a new element. A refused argument gives null and one error line with the argument's name.
/// Children come in the order in which they are named. Optional texts are left out when absent or empty. A missing rate
/// that is no ground for refusal is logged ("rate"), and the element does without. Booleans are written "TRUE" and
/// "FALSE", integers in decimal with their low 32 bits (see ElementText.h). NSNotFound marks an undefined integer;
/// where that is no ground for refusal it is written like any other number ("-1"). Records passed by pointer are
/// borrowed for the call.
namespace zanfcp::CommonElements {

/// "rate" with "ntsc" and "timebase" (unsigned, 64 bits). Refused: null ("rate").
std::shared_ptr<PELElement> rateElementWithRate(const PELRate* rate);

/// "timecode" with the rate, "frame" (unsigned, 64 bits) and "displayformat" ("DF" or "NDF"). Refused: null
/// ("timecode").
std::shared_ptr<PELElement> timecodeElementWithTimecode(const PELTimecode* timecode);
/// The same, followed by an optional "source" and an optional reel.
std::shared_ptr<PELElement> timecodeElementWithTimecode(const PELTimecode* timecode, std::string_view source,
                                                        std::string_view reel);

/// "reel" with its name. Refused: empty ("name").
std::shared_ptr<PELElement> reelElementWithName(std::string_view name);

struct Marker {
    std::string_view name = {};
    std::string_view comment = {};
    const PELColor* color = nullptr;
    NSInteger inPoint = 0;   ///< frames
    NSInteger outPoint = -1; ///< frames, -1 for none
};
/// "marker" with name, optional comment and colour, "in" and "out". Refused: an empty name ("name").
std::shared_ptr<PELElement> markerElementWithName(const Marker& marker);

/// "color" with "red", "green", "blue", "alpha" from 0 to 255, truncated. A component outside 0 to 1 goes on in
/// proportion, within 32 bits; one that is not a number is written 0. Refused: null ("color").
std::shared_ptr<PELElement> colorElementWithColor(const PELColor* color);

struct ClipItem {
    std::string_view identifier = {};
    std::string_view name = {};
    NSInteger duration = 0; ///< frames
    const PELRate* rate = nullptr;
    NSInteger start = 0; ///< frames on the track, -1 beside a transition
    NSInteger end = 0;   ///< frames on the track, -1 beside a transition
};
/// "clipitem" with name, duration, rate, start and end. Refused: an empty name ("name").
std::shared_ptr<PELElement> clipItemElementWithID(const ClipItem& item);

struct File {
    std::string_view identifier = {};
    NSInteger duration = NSNotFound; ///< frames
    const PELRate* rate = nullptr;
    std::string_view name = {};
    FileURL pathURL = {};
};
/// Fills `element` ("file" with its identifier already set) and returns true, or refuses, in this order: no rate
/// ("rate"), an undefined duration ("duration"), neither name nor URL ("name", "pathurl").
bool fillFileElement(PELElement& element, const File& file);
/// "file" with optional name and path URL, rate and duration, of the class `Self`.
template <typename Self = PELElement> std::shared_ptr<Self> fileElementWithID(const File& file)
{
    auto element = Self::elementWithKeyIdentifier(PELFileKey, file.identifier);
    return fillFileElement(*element, file) ? element : nullptr;
}

/// "video" with duration and "samplecharacteristics" of width and height. Refused: undefined "width", "height".
std::shared_ptr<PELElement> videoElementWithDuration(NSInteger duration, NSInteger width, NSInteger height);

struct Video {
    NSInteger duration = 0; ///< frames
    NSInteger width = NSNotFound;
    NSInteger height = NSNotFound;
    bool anamorphic = false;
    PELPixelAspectRatio pixelAspectRatio = PELPixelAspectRatio::notSet;
    PELFieldDominance fieldDominance = PELFieldDominance::undecided;
    const PELRate* rate = nullptr;
};
/// The same, the sample characteristics followed by anamorphic, pixel aspect ratio, field dominance and rate.
std::shared_ptr<PELElement> videoElementWithDuration(const Video& video);

/// "video" with a "format" that holds the given element. Refused: null ("sampleCharacteristics").
std::shared_ptr<PELElement> videoElementWithSampleCharacteristics(std::shared_ptr<PELElement> sampleCharacteristics);

/// "audio" with rate (samples a second), depth (bits) and channel count. Refused: undefined "samplerate", "depth",
/// "channelCount".
std::shared_ptr<PELElement> audioElementWithSampleRate(NSInteger sampleRate, NSInteger depth, NSInteger channelCount);

struct Format {
    NSInteger width = NSNotFound;
    NSInteger height = NSNotFound;
    bool anamorphic = false;
    std::string_view pixelAspectRatio = {};
    std::string_view fieldDominance = {};
    const PELRate* rate = nullptr;
};
/// "format" with sample characteristics. Refused: undefined "width", "height", an empty pixel aspect ratio ("par").
std::shared_ptr<PELElement> formatElementWithWidth(const Format& format);

/// An empty "media".
std::shared_ptr<PELElement> mediaElement();

/// "track" with the clip item. Refused: null ("clipItem").
std::shared_ptr<PELElement> trackElementWithClipItem(std::shared_ptr<PELElement> clipItem);

/// "multiclip" with its name and angles. Refused: no angles ("angles"), an empty name ("name").
std::shared_ptr<PELElement> multiclipElementWithID(std::string_view identifier, std::string_view name,
                                                   const PELElements& angles);

/// "angle" with a copy of `clip` (its identifier cleared) and a flag element for each flag that is set. Unless
/// undefined, the media delay in frames is added to the first clip item of the copy's picture
/// ("media/video/track/clipitem") and to every clip item of every track of its sound. `clip` itself stays as it is.
/// Refused: null ("clip").
std::shared_ptr<PELElement> angleElementWithClip(const std::shared_ptr<PELElement>& clip, bool isActiveVideoAngle,
                                                 bool isActiveAudioAngle, NSInteger mediaDelay);
/// "angle" with the flags, then a reference to an existing clip. Refused: an empty identifier ("clipID").
std::shared_ptr<PELElement> angleElementWithClipID(std::string_view clipID, bool isActiveVideoAngle,
                                                   bool isActiveAudioAngle);

struct LoggingInfo {
    std::string_view description = {};
    std::string_view scene = {};
    std::string_view shottake = {};
    std::string_view lognote = {};
    bool good = false;
};
/// "logginginfo" with what is given, "good" only when set; null, without a log line, when nothing is.
std::shared_ptr<PELElement> loggingInfoElementWithDescription(const LoggingInfo& info);
/// The same with a scene and a take alone.
std::shared_ptr<PELElement> loggingInfoElementWithScene(std::string_view scene, std::string_view shottake);

/// Appends a leaf under the receiver's "labels", which is made when missing. False, and nothing added, on a leaf and
/// for an empty label.
bool addLabelForLabelKey(PELElement& receiver, std::string_view label, std::string_view key);
/// Under "label", the colour label; and under "label2".
bool addLabel(PELElement& receiver, std::string_view label);
bool addLabel2(PELElement& receiver, std::string_view label);
/// The same under "comments". False, and nothing added, also for any key but "mastercomment1" to "mastercomment4",
/// "clipcommenta" and "clipcommentb".
bool addCommentForCommentKey(PELElement& receiver, std::string_view comment, std::string_view key);

} // namespace zanfcp::CommonElements
