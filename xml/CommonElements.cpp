#include "xml/CommonElements.h"

#include "xml/ElementText.h"
#include "xml/Parameter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace zanfcp::CommonElements {
namespace {

void addText(PELElement& parent, std::string_view key, std::string_view text)
{
    parent.addChild(PELElement::elementWithKeyStringValue(key, text));
}

void addOptionalText(PELElement& parent, std::string_view key, std::string_view text)
{
    if (!text.empty()) addText(parent, key, text);
}

void addInteger(PELElement& parent, std::string_view key, NSInteger value)
{
    addText(parent, key, integerText(value));
}

void addBoolean(PELElement& parent, std::string_view key, bool value)
{
    addText(parent, key, booleanText(value));
}

/// A flag element is written when set, and left out otherwise.
void addFlag(PELElement& parent, std::string_view key, bool isSet)
{
    if (isSet) addBoolean(parent, key, true);
}

/// A missing rate is logged by its factory, and the element does without.
void addRate(PELElement& parent, const PELRate* rate)
{
    if (auto element = rateElementWithRate(rate)) parent.addChild(std::move(element));
}

/// A fraction from 0 to 1 as a number from 0 to 255. Fractions outside, which no display has but a record can hold,
/// go on in proportion as far as 32 bits reach; what is not a number counts as 0.
NSInteger colorComponent(double fraction)
{
    using Limits = std::numeric_limits<std::int32_t>;
    const double scaled = fraction * 255.0;
    if (std::isnan(scaled)) return 0;
    return static_cast<NSInteger>(
        std::clamp(scaled, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

std::shared_ptr<PELElement> sampleCharacteristicsOfSize(NSInteger width, NSInteger height)
{
    auto element = PELElement::elementWithKey(PELSampleCharacteristicsKey);
    addInteger(*element, PELWidthKey, width);
    addInteger(*element, PELHeightKey, height);
    return element;
}

bool requireSize(NSInteger width, NSInteger height)
{
    return Parameter::requireDefined(width, "width") && Parameter::requireDefined(height, "height");
}

/// Adds the delay to each clip item directly under `track`.
void delayClipItems(const PELElement& track, const std::string& delay)
{
    if (const PELElements* items = track.children())
        for (const auto& item : *items)
            if (item->key() == PELClipItemKey) item->addChildWithKey(PELMediaDelayKey, delay);
}

/// Adds the delay to the picture's clip item and to every clip item of every sound track of `clip`.
void delayMedia(PELElement& clip, const std::string& delay)
{
    if (const auto item = clip.childAtPath("media/video/track/clipitem"))
        item->addChildWithKey(PELMediaDelayKey, delay);
    const auto audio = clip.childAtPath("media/audio");
    if (const PELElements* tracks = audio ? audio->children() : nullptr)
        for (const auto& track : *tracks)
            if (track->key() == PELTrackKey) delayClipItems(*track, delay);
}

void addActiveAngleFlags(PELElement& angle, bool isActiveVideoAngle, bool isActiveAudioAngle)
{
    addFlag(angle, PELActiveVideoAngleKey, isActiveVideoAngle);
    addFlag(angle, PELActiveAudioAngleKey, isActiveAudioAngle);
}

/// Appends a leaf to the receiver's direct child `listKey`, which is made when missing.
bool addToList(PELElement& receiver, std::string_view listKey, std::string_view key, std::string_view text)
{
    if (!receiver.canHaveChildren() || text.empty()) return false;
    auto list = receiver.childNamed(listKey);
    if (!list) list = receiver.addChild(PELElement::elementWithKey(listKey));
    return list->addChildWithKey(key, std::string(text)) != nullptr;
}

} // namespace

std::shared_ptr<PELElement> rateElementWithRate(const PELRate* rate)
{
    if (!Parameter::requireObject(rate, "rate")) return nullptr;
    auto element = PELElement::elementWithKey(PELRateKey);
    addBoolean(*element, PELNTSCKey, rate->isNTSC);
    addText(*element, PELTimebaseKey, unsignedText(static_cast<std::uint64_t>(rate->timebase)));
    return element;
}

std::shared_ptr<PELElement> timecodeElementWithTimecode(const PELTimecode* timecode)
{
    if (!Parameter::requireObject(timecode, "timecode")) return nullptr;
    auto element = PELElement::elementWithKey(PELTimecodeKey);
    addRate(*element, &timecode->rate);
    addText(*element, PELFrameKey, unsignedText(timecode->frames));
    addText(*element, PELDisplayFormatKey, timecode->hasDropframe ? "DF" : "NDF");
    return element;
}

std::shared_ptr<PELElement> timecodeElementWithTimecode(const PELTimecode* timecode, std::string_view source,
                                                        std::string_view reel)
{
    auto element = timecodeElementWithTimecode(timecode);
    if (!element) return nullptr;
    addOptionalText(*element, PELSourceKey, source);
    if (!reel.empty()) element->addChild(reelElementWithName(reel));
    return element;
}

std::shared_ptr<PELElement> reelElementWithName(std::string_view name)
{
    if (!Parameter::requireText(name, "name")) return nullptr;
    auto element = PELElement::elementWithKey(PELReelKey);
    addText(*element, PELNameKey, name);
    return element;
}

std::shared_ptr<PELElement> markerElementWithName(const Marker& marker)
{
    if (!Parameter::requireText(marker.name, "name")) return nullptr;
    auto element = PELElement::elementWithKey(PELMarkerKey);
    addText(*element, PELNameKey, marker.name);
    addOptionalText(*element, PELCommentKey, marker.comment);
    if (marker.color != nullptr) element->addChild(colorElementWithColor(marker.color));
    addInteger(*element, PELInKey, marker.inPoint);
    addInteger(*element, PELOutKey, marker.outPoint);
    return element;
}

std::shared_ptr<PELElement> colorElementWithColor(const PELColor* color)
{
    if (!Parameter::requireObject(color, "color")) return nullptr;
    auto element = PELElement::elementWithKey(PELColorKey);
    addInteger(*element, PELColorRed, colorComponent(color->red));
    addInteger(*element, PELColorGreen, colorComponent(color->green));
    addInteger(*element, PELColorBlue, colorComponent(color->blue));
    addInteger(*element, PELColorAlpha, colorComponent(color->alpha));
    return element;
}

std::shared_ptr<PELElement> clipItemElementWithID(const ClipItem& item)
{
    if (!Parameter::requireText(item.name, "name")) return nullptr;
    auto element = PELElement::elementWithKeyIdentifier(PELClipItemKey, item.identifier);
    addText(*element, PELNameKey, item.name);
    addInteger(*element, PELDurationKey, item.duration);
    addRate(*element, item.rate);
    addInteger(*element, PELStartKey, item.start);
    addInteger(*element, PELEndKey, item.end);
    return element;
}

bool fillFileElement(PELElement& element, const File& file)
{
    if (!Parameter::requireObject(file.rate, "rate") || !Parameter::requireDefined(file.duration, "duration") ||
        !Parameter::requireEither(!file.name.empty(), "name", !file.pathURL.empty(), "pathurl"))
        return false;
    addOptionalText(element, PELNameKey, file.name);
    if (!file.pathURL.empty()) addText(element, PELPathURLKey, file.pathURL.absoluteString());
    addRate(element, file.rate);
    addInteger(element, PELDurationKey, file.duration);
    return true;
}

std::shared_ptr<PELElement> videoElementWithDuration(NSInteger duration, NSInteger width, NSInteger height)
{
    if (!requireSize(width, height)) return nullptr;
    auto element = PELElement::elementWithKey(PELVideoKey);
    addInteger(*element, PELDurationKey, duration);
    element->addChild(sampleCharacteristicsOfSize(width, height));
    return element;
}

std::shared_ptr<PELElement> videoElementWithDuration(const Video& video)
{
    auto element = videoElementWithDuration(video.duration, video.width, video.height);
    if (!element) return nullptr;
    PELElement& characteristics = *element->childNamed(PELSampleCharacteristicsKey);
    addBoolean(characteristics, PELAnamorphicKey, video.anamorphic);
    addText(characteristics, PELPixelAspectRatioKey, NSStringFromPELPixelAspectRatio(video.pixelAspectRatio));
    if (const auto dominance = PEL_StringFromPELFieldDominance(video.fieldDominance))
        addText(characteristics, PELFieldDominanceKey, *dominance);
    addRate(characteristics, video.rate);
    return element;
}

std::shared_ptr<PELElement> videoElementWithSampleCharacteristics(std::shared_ptr<PELElement> sampleCharacteristics)
{
    if (!Parameter::requireObject(sampleCharacteristics.get(), "sampleCharacteristics")) return nullptr;
    auto element = PELElement::elementWithKey(PELVideoKey);
    element->addChild(PELElement::elementWithKeyChildren(PELFormatKey, {std::move(sampleCharacteristics)}));
    return element;
}

std::shared_ptr<PELElement> audioElementWithSampleRate(NSInteger sampleRate, NSInteger depth, NSInteger channelCount)
{
    if (!Parameter::requireDefined(sampleRate, "samplerate") || !Parameter::requireDefined(depth, "depth") ||
        !Parameter::requireDefined(channelCount, "channelCount"))
        return nullptr;
    auto characteristics = PELElement::elementWithKey(PELSampleCharacteristicsKey);
    addInteger(*characteristics, PELSampleRateKey, sampleRate);
    addInteger(*characteristics, PELDepthKey, depth);
    auto element = PELElement::elementWithKey(PELAudioKey);
    element->addChild(std::move(characteristics));
    addInteger(*element, PELChannelCountKey, channelCount);
    return element;
}

std::shared_ptr<PELElement> formatElementWithWidth(const Format& format)
{
    if (!requireSize(format.width, format.height) || !Parameter::requireText(format.pixelAspectRatio, "par"))
        return nullptr;
    auto characteristics = sampleCharacteristicsOfSize(format.width, format.height);
    addBoolean(*characteristics, PELAnamorphicKey, format.anamorphic);
    addText(*characteristics, PELPixelAspectRatioKey, format.pixelAspectRatio);
    addOptionalText(*characteristics, PELFieldDominanceKey, format.fieldDominance);
    addRate(*characteristics, format.rate);
    return PELElement::elementWithKeyChildren(PELFormatKey, {std::move(characteristics)});
}

std::shared_ptr<PELElement> mediaElement()
{
    return PELElement::elementWithKey(PELMediaKey);
}

std::shared_ptr<PELElement> trackElementWithClipItem(std::shared_ptr<PELElement> clipItem)
{
    if (!Parameter::requireObject(clipItem.get(), "clipItem")) return nullptr;
    return PELElement::elementWithKeyChildren(PELTrackKey, {std::move(clipItem)});
}

std::shared_ptr<PELElement> multiclipElementWithID(std::string_view identifier, std::string_view name,
                                                   const PELElements& angles)
{
    if (!Parameter::requireEntries(angles.size(), "angles") || !Parameter::requireText(name, "name")) return nullptr;
    auto element = PELElement::elementWithKeyIdentifier(PELMulticlipKey, identifier);
    addText(*element, PELNameKey, name);
    element->addChildren(angles);
    return element;
}

std::shared_ptr<PELElement> angleElementWithClip(const std::shared_ptr<PELElement>& clip, bool isActiveVideoAngle,
                                                 bool isActiveAudioAngle, NSInteger mediaDelay)
{
    if (!Parameter::requireObject(clip.get(), "clip")) return nullptr;
    const auto copy = clip->copy();
    copy->setIdentifier({}); // an identifier stands for one clip, and the master clip has it
    if (mediaDelay != NSNotFound) delayMedia(*copy, integerText(mediaDelay));
    auto element = PELElement::elementWithKeyChildren(PELAngleKey, {copy});
    addActiveAngleFlags(*element, isActiveVideoAngle, isActiveAudioAngle);
    return element;
}

std::shared_ptr<PELElement> angleElementWithClipID(std::string_view clipID, bool isActiveVideoAngle,
                                                   bool isActiveAudioAngle)
{
    if (!Parameter::requireText(clipID, "clipID")) return nullptr;
    auto element = PELElement::elementWithKey(PELAngleKey);
    addActiveAngleFlags(*element, isActiveVideoAngle, isActiveAudioAngle);
    element->addChildWithKeyIdentifier(PELClipKey, clipID);
    return element;
}

std::shared_ptr<PELElement> loggingInfoElementWithDescription(const LoggingInfo& info)
{
    auto element = PELElement::elementWithKey(PELLoggingInfoKey);
    addOptionalText(*element, PELDescriptionKey, info.description);
    addOptionalText(*element, PELSceneKey, info.scene);
    addOptionalText(*element, PELShotTakeKey, info.shottake);
    addOptionalText(*element, PELLogNoteKey, info.lognote);
    addFlag(*element, PELGoodKey, info.good);
    return element->children() != nullptr ? element : nullptr;
}

std::shared_ptr<PELElement> loggingInfoElementWithScene(std::string_view scene, std::string_view shottake)
{
    return loggingInfoElementWithDescription({.scene = scene, .shottake = shottake});
}

bool addLabelForLabelKey(PELElement& receiver, std::string_view label, std::string_view key)
{
    return addToList(receiver, PELLabelsKey, key, label);
}

bool addLabel(PELElement& receiver, std::string_view label)
{
    return addLabelForLabelKey(receiver, label, PELLabelKey);
}

bool addLabel2(PELElement& receiver, std::string_view label)
{
    return addLabelForLabelKey(receiver, label, PELLabel2Key);
}

bool addCommentForCommentKey(PELElement& receiver, std::string_view comment, std::string_view key)
{
    static constexpr auto kKeys =
        std::to_array<std::string_view>({PELMasterComment1Key, PELMasterComment2Key, PELMasterComment3Key,
                                         PELMasterComment4Key, PELClipCommentA, PELClipCommentB});
    return std::ranges::find(kKeys, key) != kKeys.end() && addToList(receiver, PELCommentsKey, key, comment);
}

} // namespace zanfcp::CommonElements
