#include "tests/support/LogCapture.h"
#include "tests/support/XmlComparison.h"
#include "xml/CommonElements.h"
#include "xml/MajorElements.h"
#include "xml/PELRootElement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace zanfcp::test {
namespace {

using namespace CommonElements;
using namespace MajorElements;

using Element = std::shared_ptr<PELElement>;

const PELRate kRate{30, true};

Element fileOf(const std::string& text)
{
    const PELTimecode timecode{.rate = kRate, .frames = 107892, .hasDropframe = true};
    auto media = mediaElement();
    media->addChild(videoElementWithDuration({.duration = 250,
                                              .width = 720,
                                              .height = 480,
                                              .anamorphic = true,
                                              .pixelAspectRatio = PELPixelAspectRatio::ntsc601,
                                              .fieldDominance = PELFieldDominance::lower,
                                              .rate = &kRate}));
    media->addChild(audioElementWithSampleRate(48000, 24, 2));
    auto file = fileElementWithID({.identifier = text,
                                   .duration = 250,
                                   .rate = &kRate,
                                   .name = text,
                                   .pathURL = FileURL::fileURLWithPath("/media/" + text)});
    file->addChildren({timecodeElementWithTimecode(&timecode, text, text), media});
    return file;
}

Element clipItemOf(const std::string& text, PELElements children)
{
    auto item = clipItemElementWithID(
        {.identifier = text, .name = text, .duration = 250, .rate = &kRate, .start = -1, .end = 250});
    item->addChildren(children);
    return item;
}

Element loggingInfoOf(const std::string& text)
{
    return loggingInfoElementWithDescription(
        {.description = text, .scene = text, .shottake = text, .lognote = text, .good = true});
}

Element clipOf(const std::string& text)
{
    auto video = PELElement::elementWithKey(PELVideoKey);
    video->addChild(trackElementWithClipItem(clipItemOf(text, {fileOf(text)})));
    auto audio = PELElement::elementWithKey(PELAudioKey);
    audio->addChild(trackElementWithClipItem(clipItemOf(text, {})));
    auto media = mediaElement();
    media->addChildren({video, audio});
    auto clip = clipElementWithID(text, text, 250, &kRate);
    clip->addChildren({loggingInfoOf(text), media});
    addLabel(*clip, text);
    addLabel2(*clip, text);
    for (const char* key : {PELMasterComment1Key, PELMasterComment2Key, PELMasterComment3Key, PELMasterComment4Key,
                            PELClipCommentA, PELClipCommentB})
        addCommentForCommentKey(*clip, text, key);
    return clip;
}

Element sequenceOf(const std::string& text, const Element& clip)
{
    const PELTimecode start{.rate = {25, false}, .frames = 90000};
    const PELColor color{1, 0.5, 0, 1};
    const auto multiclip = multiclipElementWithID(
        text, text, {angleElementWithClip(clip, true, true, 3), angleElementWithClipID(text, false, false)});
    const auto format = formatElementWithWidth({.width = 720,
                                                .height = 480,
                                                .anamorphic = false,
                                                .pixelAspectRatio = "NTSC-601",
                                                .fieldDominance = "lower",
                                                .rate = &kRate});
    auto video = videoElementWithSampleCharacteristics(format->childNamed(PELSampleCharacteristicsKey));
    video->addChild(trackElementWithClipItem(clipItemOf(text, {multiclip, loggingInfoElementWithScene(text, text)})));
    auto plainVideo = videoElementWithDuration(250, 720, 480);
    plainVideo->addChild(format);
    auto media = mediaElement();
    media->addChildren({video, plainVideo});

    auto sequence = sequenceElementWithID(text, text, 250, &kRate);
    sequence->addChildren(
        {timecodeElementWithTimecode(&start), media,
         markerElementWithName({.name = text, .comment = text, .color = &color, .inPoint = 3, .outPoint = 9})});
    return sequence;
}

/// A document in which every factory has made something, with `text` wherever a text can stand.
std::shared_ptr<PELRootElement> documentOf(const std::string& text)
{
    const Element clip = clipOf(text);
    auto bin = binElementWithName(text);
    bin->childNamed(PELChildrenKey)->addChild(clip);
    auto project = projectElementWithName(text);
    project->childNamed(PELChildrenKey)->addChildren({bin, sequenceOf(text, clip)});

    auto root = std::make_shared<PELRootElement>();
    root->addChild(
        importOptionsElementWithOptions({{PELCreateNewProjectKey, true}, {PELDefSequencePresetNameKey, text}}));
    root->addChild(project);
    return root;
}

const char* const kTexts[] = {
    "A001C003",
    "Tom & Jerry <\"cut\" & 'paste'> ]]> &amp;",
    " blanks\tand\nlines\r\n at both ends ",
    "Ärger composed, A\xCC\x88rger decomposed, 撮影, \xF0\x9F\x8E\xAC",
    "%i %s %n",
};

template <typename Visit> void visitAll(const PELElement& element, const Visit& visit)
{
    visit(element);
    if (const PELElements* children = element.children())
        for (const auto& child : *children)
            visitAll(*child, visit);
}

TEST(FactoriesDocument, IsValidWithEveryElementThatFactoriesMake)
{
    const auto root = documentOf(kTexts[0]);
    std::set<std::string> keys;
    visitAll(*root, [&keys](const PELElement& element) { keys.insert(element.key()); });
    EXPECT_THAT(keys, testing::IsSupersetOf({PELImportOptionsKey,
                                             PELProjectKey,
                                             PELBinKey,
                                             PELChildrenKey,
                                             PELClipKey,
                                             PELSequenceKey,
                                             PELNameKey,
                                             PELDurationKey,
                                             PELRateKey,
                                             PELNTSCKey,
                                             PELTimebaseKey,
                                             PELTimecodeKey,
                                             PELFrameKey,
                                             PELDisplayFormatKey,
                                             PELSourceKey,
                                             PELReelKey,
                                             PELMarkerKey,
                                             PELCommentKey,
                                             PELInKey,
                                             PELOutKey,
                                             PELColorKey,
                                             PELColorRed,
                                             PELColorGreen,
                                             PELColorBlue,
                                             PELColorAlpha,
                                             PELClipItemKey,
                                             PELStartKey,
                                             PELEndKey,
                                             PELFileKey,
                                             PELPathURLKey,
                                             PELVideoKey,
                                             PELAudioKey,
                                             PELSampleCharacteristicsKey,
                                             PELWidthKey,
                                             PELHeightKey,
                                             PELAnamorphicKey,
                                             PELPixelAspectRatioKey,
                                             PELFieldDominanceKey,
                                             PELFormatKey,
                                             PELSampleRateKey,
                                             PELDepthKey,
                                             PELChannelCountKey,
                                             PELMediaKey,
                                             PELTrackKey,
                                             PELMulticlipKey,
                                             PELAngleKey,
                                             PELMediaDelayKey,
                                             PELActiveVideoAngleKey,
                                             PELActiveAudioAngleKey,
                                             PELLoggingInfoKey,
                                             PELDescriptionKey,
                                             PELSceneKey,
                                             PELShotTakeKey,
                                             PELLogNoteKey,
                                             PELGoodKey,
                                             PELLabelsKey,
                                             PELLabelKey,
                                             PELLabel2Key,
                                             PELCommentsKey,
                                             PELMasterComment1Key,
                                             PELMasterComment2Key,
                                             PELMasterComment3Key,
                                             PELMasterComment4Key,
                                             PELClipCommentA,
                                             PELClipCommentB}));
    ValidationError error;
    EXPECT_TRUE(root->validateAndReturnError(&error)) << error.localizedDescription << error.userInfo["stdErr"];
}

TEST(FactoriesDocument, IsValidAndWrittenAsItsNodesPrintWithAwkwardTexts)
{
    for (const char* text : kTexts) {
        SCOPED_TRACE(text);
        const LogCapture log;
        const auto root = documentOf(text);
        ValidationError error;
        EXPECT_TRUE(root->validateAndReturnError(&error)) << error.localizedDescription << error.userInfo["stdErr"];
        expectSameXml(*root);
        for (const auto& child : *root->children())
            visitAll(*child, [](const PELElement& element) { expectSameXml(element); });
        EXPECT_THAT(log.lines(), testing::IsEmpty());
    }
}

} // namespace
} // namespace zanfcp::test
