#include "cli/Json.h"
#include "cli/OptionReader.h"
#include "cli/OptionTable.h"
#include "cli/Suggestion.h"
#include "project/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace zanfcp::cli {
namespace {

using ::testing::HasSubstr;

struct Refusal {
    const char* name;
    std::string input;
    const char* path; ///< the key the error is about
    const char* why;  ///< part of what it says
};

template <typename Read> void expectRefusals(std::span<const Refusal> cases, Read read)
{
    for (const Refusal& c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = read(c.input);
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().path, c.path);
        EXPECT_THAT(result.error().what, HasSubstr(c.why));
        EXPECT_EQ(lineOf(result.error()).find('\n'), std::string::npos);
    }
}

TEST(OptionsJson, EveryKeyKeepsItsTypeAndValue)
{
    const auto options = optionsFromJson(R"json({
        "importOptions": {"createnewproject": true, "filterincludemarkers": "FALSE", "targetprojectname": "Show"},
        "addProject": false, "projectName": "Überblick", "binName": "Rushes", "binLabel": "", "clipLabel": "B Roll",
        "addSequence": true, "addMulticlip": true, "useClipItems": false, "multiclipMainFileIndex": 1,
        "sequenceTemplateFileIndex": 0, "soundSourceIndex": 2, "sequenceName": "Cut", "sequenceLabel": "Best Take",
        "sequenceStartTimecode": "01:00:00:00", "sequenceDuration": 2147483647, "sequenceCorrectFileOffsets": true,
        "projectScene": "12", "projectTake": "3", "masterComment1": "rain", "masterComment1AddToSequence": true,
        "masterComment1ToClipsAndMulticlips": true, "logGoodShot": true, "logGoodShotAddToSequence": true,
        "logGoodShotAddToClipsAndMulticlips": true, "useFirstClipSettings": false, "interlaced": true,
        "measureSoundFiles": false,
        "sequenceOverrides": {"anamorphicOverride": true, "editingTimebaseOverride": 30,
            "fieldDominanceOverride": "upper", "frameSizeWidthOverride": 1920, "frameSizeHeightOverride": 1080,
            "pixelAspectRatioOverride": "HD-(1440x1080)"},
        "cuts": [{"type": "cut", "activeAngleIndex": 0, "start": "00:00:00:00", "end": 50},
                 {"type": "dissolve", "start": "00:00:01;20", "end": "75"}],
        "markers": [{"name": "M", "comment": "c", "color": "#00ff33", "startFrame": 12, "duration": -1},
                    {"name": "N", "color": [1, 0.5, 0, 1.0], "startFrame": "00:00:02:00"},
                    {"name": "O", "color": "#FF000080", "startFrame": "0"}]
})json");
    ASSERT_TRUE(options) << lineOf(options.error());

    for (const OptionSpec& spec : projectOptions())
        EXPECT_TRUE(options->contains(spec.key)) << spec.key << " is in the table but not in this test";
    EXPECT_EQ(options->integerFor("sequenceDuration"), 2147483647);
    EXPECT_EQ(options->stringFor("projectName"), "Überblick");
    EXPECT_EQ(*options->find("addProject"), PELValue(false));
    const PELDictionary* import = options->dictionaryFor(PELImportOptions);
    ASSERT_NE(import, nullptr);
    EXPECT_EQ(*import->find("createnewproject"), PELValue(true)); // written as TRUE, because it is a boolean
    EXPECT_EQ(*import->find("filterincludemarkers"), PELValue("FALSE"));
    EXPECT_EQ(options->dictionaryFor("sequenceOverrides")->integerFor("frameSizeWidthOverride"), 1920);

    const PELArray& cuts = *options->arrayFor("cuts");
    ASSERT_EQ(cuts.size(), 2U);
    EXPECT_EQ(cuts[0].as<PELDictionary>()->stringFor("end"), "50"); // frames become the text that the library reads
    const PELArray& markers = *options->arrayFor("markers");
    EXPECT_EQ(*markers[0].as<PELDictionary>()->colorFor("color"), (PELColor{0, 1, 0x33 / 255.0, 1}));
    EXPECT_EQ(*markers[1].as<PELDictionary>()->colorFor("color"), (PELColor{1, 0.5, 0, 1}));
    EXPECT_EQ(*markers[2].as<PELDictionary>()->colorFor("color"), (PELColor{1, 0, 0, 128 / 255.0}));
    EXPECT_EQ(markers[0].as<PELDictionary>()->integerFor("duration"), -1);
}

TEST(OptionsJson, RefusalsNameTheKeyAndTheReason)
{
    const std::string cut = R"("type": "cut", "activeAngleIndex": 0, "start": "00:00:00:00", "end": "00:00:01:00")";
    ASSERT_TRUE(optionsFromJson("{\"cuts\": [{" + cut + "}]}")); // so that each edit below is the only fault
    ASSERT_TRUE(optionsFromJson(R"({"markers": [{"name": "M", "startFrame": 0}]})"));

    const Refusal cases[] = {
        {"unknown key", R"({"projectNam": "x"})", "projectNam", "did you mean projectName?"},
        {"other case", R"({"ProjectName": "x"})", "ProjectName", "did you mean projectName?"},
        {"nothing near", R"({"wallpaper": "x"})", "wallpaper", "no such key"},
        {"the name of the constant", R"({"masterComment1AddToClipsAndMulticlips": true})",
         "masterComment1AddToClipsAndMulticlips", "did you mean masterComment1ToClipsAndMulticlips?"},
        {"number for a text", R"({"projectName": 5})", "projectName", "not the number 5"},
        {"list for a text", R"({"projectName": []})", "projectName", "not a list"},
        {"empty name", R"({"projectName": ""})", "projectName", "not empty"},
        {"text for a boolean", R"({"addSequence": "true"})", "addSequence", "true or false, not the text \"true\""},
        {"number for a boolean", R"({"addSequence": 1})", "addSequence", "true or false"},
        {"fraction for an integer", R"({"sequenceDuration": 1.5})", "sequenceDuration", "whole number from 1"},
        {"whole number as a fraction", R"({"sequenceDuration": 25.0})", "sequenceDuration", "whole number"},
        {"duration of 0", R"({"sequenceDuration": 0})", "sequenceDuration", "from 1"},
        {"duration beyond 32 bits", R"({"sequenceDuration": 2147483648})", "sequenceDuration", "whole number"},
        {"duration beyond 64 bits", R"({"sequenceDuration": 99999999999999999999})", "sequenceDuration",
         "whole number"},
        {"negative index", R"({"soundSourceIndex": -1})", "soundSourceIndex", "counted from 0"},
        {"null", R"({"binName": null})", "binName", "leave the key out"},
        {"key given twice", R"({"binName": "a", "binName": "b"})", "binName", "twice"},
        {"no object", R"(["binName"])", "", "must be an object, not a list"},
        {"import option that the format lacks", R"({"importOptions": {"foo": true}})", "importOptions.foo",
         "the format has no such import option"},
        {"import option as a number", R"({"importOptions": {"createnewproject": 1}})", "importOptions.createnewproject",
         "true or false"},
        {"override of a rate that timecode lacks", R"({"sequenceOverrides": {"editingTimebaseOverride": 29}})",
         "sequenceOverrides.editingTimebaseOverride", "one of 24, 25, 30, 50, 60"},
        {"override with another name", R"({"sequenceOverrides": {"fieldDominanceOverride": "Upper"}})",
         "sequenceOverrides.fieldDominanceOverride", "one of none, upper, lower"},
        {"width of 0", R"({"sequenceOverrides": {"frameSizeWidthOverride": 0}})",
         "sequenceOverrides.frameSizeWidthOverride", "from 1"},
        {"override outside its object", R"({"frameSizeWidthOverride": 1920})", "frameSizeWidthOverride", "no such key"},
        {"start timecode without form", R"({"sequenceStartTimecode": "1:00:00:00"})", "sequenceStartTimecode",
         "a timecode"},
        {"cuts as an object", R"({"cuts": {}})", "cuts", "list of objects"},
        {"cut as a text", R"({"cuts": ["cut"]})", "cuts[0]", "must be an object"},
        {"type in capitals", R"({"cuts": [{"type": "Cut", "activeAngleIndex": 0, "start": 0, "end": 1}]})",
         "cuts[0].type", "one of cut, dissolve"},
        {"no type", R"({"cuts": [{"activeAngleIndex": 0, "start": 0, "end": 1}]})", "cuts[0].type", "is missing"},
        {"no end", R"({"cuts": [{"type": "dissolve", "start": 0}]})", "cuts[0].end", "is missing"},
        {"cut without an angle", R"({"cuts": [{"type": "dissolve", "start": 0, "end": 1},
                                              {"type": "cut", "start": 0, "end": 1}]})",
         "cuts[1].activeAngleIndex", "is missing"},
        {"timecode with letters", R"({"cuts": [{"type": "dissolve", "start": "0:00:0x:00", "end": 1}]})",
         "cuts[0].start", "a timecode"},
        {"negative frames", R"({"cuts": [{"type": "dissolve", "start": -5, "end": 1}]})", "cuts[0].start",
         "a timecode"},
        {"misspelt key of a cut", R"({"cuts": [{"typ": "cut"}]})", "cuts[0].typ", "did you mean type?"},
        {"marker without a name", R"({"markers": [{"startFrame": 0}]})", "markers[0].name", "is missing"},
        {"marker with an empty name", R"({"markers": [{"name": "", "startFrame": 0}]})", "markers[0].name",
         "not empty"},
        {"colour with five digits", R"({"markers": [{"name": "M", "startFrame": 0, "color": "#12345"}]})",
         "markers[0].color", "#rrggbb"},
        {"colour that is no number", R"({"markers": [{"name": "M", "startFrame": 0, "color": "#12345g"}]})",
         "markers[0].color", "#rrggbb"},
        {"three fractions", R"({"markers": [{"name": "M", "startFrame": 0, "color": [0, 0, 0]}]})", "markers[0].color",
         "four fractions"},
        {"fraction above 1", R"({"markers": [{"name": "M", "startFrame": 0, "color": [0, 0, 0, 255]}]})",
         "markers[0].color", "four fractions"},
    };
    expectRefusals(cases, [](const std::string& text) { return optionsFromJson(text); });
}

TEST(OptionsJson, BrokenJsonIsRefusedWithLineAndColumn)
{
    const Refusal cases[] = {
        {"nothing at all", "", "", "line 1, column 1"},
        {"comma before the brace", "{\n  \"binName\": \"a\",\n}", "", "line 3, column 1"},
        {"unclosed", "{\"binName\": \"a\"", "", "line 1, column 16"},
        {"two values", "{} {}", "", "line 1, column 4"},
        {"comment", "{ // x\n}", "", "line 1, column 3"},
        {"invalid UTF-8", "{\"binName\": \"\xFF\"}", "", "invalid"},
        {"number beyond all bounds", "{\"sequenceDuration\": 1e999}", "", "1e999"},
        {"not a number", "{\"sequenceDuration\": NaN}", "", "line 1, column 22"},
    };
    expectRefusals(cases, [](const std::string& text) { return optionsFromJson(text); });
}

TEST(OptionsJson, DepthWidthAndSizeAreBounded)
{
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    std::string wide = "{";
    for (int i = 0; i < 2000; ++i)
        wide += (i == 0 ? "\"" : ",\"") + std::to_string(i) + "\": 0";
    wide += "}";
    const std::string atDepth = std::string(kMaxJsonDepth, '[') + std::string(kMaxJsonDepth, ']');
    EXPECT_TRUE(parseJson(atDepth));
    for (const std::string& text : {deep, "[" + atDepth + "]", wide, std::string(kMaxJsonBytes + 1, ' ')}) {
        const auto value = parseJson(text);
        ASSERT_FALSE(value);
        EXPECT_EQ(value.error().fault, Fault::limit);
    }
}

TEST(SetOption, ReadsTheValueAsTheRowOfItsKeySays)
{
    PELDictionary options;
    for (const char* assignment :
         {"projectName=A=B", "binName=25", "addSequence=true", "addProject=0", "sequenceDuration=250",
          "sequenceStartTimecode=01:00:00:00", "sequenceOverrides.frameSizeWidthOverride=1920",
          "sequenceOverrides.frameSizeHeightOverride=1080", "sequenceOverrides.anamorphicOverride=no",
          "importOptions.createnewproject=FALSE", "importOptions.targetprojectname=", "binName=Rushes"}) {
        const Status status = setOption(options, assignment);
        EXPECT_TRUE(status) << assignment << ": " << (status ? "" : lineOf(status.error()));
    }
    const PELDictionary expected = {
        {"projectName", "A=B"},
        {"binName", "Rushes"},
        {"addSequence", true},
        {"addProject", false},
        {"sequenceDuration", 250},
        {"sequenceStartTimecode", "01:00:00:00"},
        {"sequenceOverrides", PELDictionary{{"frameSizeWidthOverride", 1920},
                                            {"frameSizeHeightOverride", 1080},
                                            {"anamorphicOverride", false}}},
        {"importOptions", PELDictionary{{"createnewproject", false}, {"targetprojectname", ""}}},
    };
    EXPECT_EQ(options, expected);
}

TEST(SetOption, RefusalsNameTheKeyAndTheReasonAndChangeNothing)
{
    const Refusal cases[] = {
        {"no value", "projectName", "projectName", "KEY=VALUE"},
        {"no key", "=x", "", "no such key"},
        {"unknown key", "projektName=x", "projektName", "did you mean projectName?"},
        {"unknown nested key", "sequenceOverrides.width=1", "sequenceOverrides.width", "frameSizeWidthOverride"},
        {"nested in a text", "projectName.x=1", "projectName.x", "no keys inside"},
        {"whole object", "sequenceOverrides={}", "sequenceOverrides", "sequenceOverrides.KEY=VALUE"},
        {"list", "cuts=[]", "cuts", "--cuts"},
        {"word for an integer", "sequenceDuration=long", "sequenceDuration", "whole number"},
        {"spare characters after an integer", "sequenceDuration=25x", "sequenceDuration", "whole number"},
        {"empty integer", "sequenceDuration=", "sequenceDuration", "whole number"},
        {"word for a boolean", "addSequence=maybe", "addSequence", "true or false"},
        {"label without form", "sequenceStartTimecode=ten", "sequenceStartTimecode", "a timecode"},
        {"control characters in the key", "a\nb=1", "a\\x0Ab", "no such key"},
    };
    PELDictionary options;
    expectRefusals(cases, [&options](const std::string& text) { return setOption(options, text); });
    EXPECT_TRUE(options.empty());
}

TEST(SetOption, EverySettableKeyTakesAValue)
{
    for (const SettableOption& option : settableOptions()) {
        PELDictionary options;
        const bool taken = std::ranges::any_of(
            std::initializer_list<std::string>{"true", "30", "square", "upper"},
            [&](const std::string& value) { return setOption(options, option.path + "=" + value).has_value(); });
        EXPECT_TRUE(taken) << option.path;
    }
}

PELDictionary optionsWith(const std::string& json)
{
    auto options = optionsFromJson(json);
    EXPECT_TRUE(options) << json;
    return options ? *options : PELDictionary{};
}

TEST(CheckFileIndices, AnIndexBeyondTheFilesIsRefused)
{
    const char* const cut = R"({"cuts": [{"type": "cut", "activeAngleIndex": 2, "start": 0, "end": 1}]})";
    for (const std::string json : {R"({"soundSourceIndex": 2})", R"({"multiclipMainFileIndex": 2})",
                                   R"({"sequenceTemplateFileIndex": 2})", cut}) {
        SCOPED_TRACE(json);
        EXPECT_TRUE(checkFileIndices(optionsWith(json), 3));
        const Status status = checkFileIndices(optionsWith(json), 2);
        ASSERT_FALSE(status);
        EXPECT_THAT(lineOf(status.error()), HasSubstr("there is no file 2: the files are numbered 0 to 1"));
    }
}

TEST(CheckTimecodes, LabelsMustExistAtTheRateOfTheSequence)
{
    struct Case {
        const char* name;
        const char* label;
        PELRate rate;
        bool exists;
    };
    const Case cases[] = {
        {"last frame of a second", "00:00:00:24", {25, false}, true},
        {"frame beyond the rate", "00:00:00:25", {25, false}, false},
        {"skipped by drop-frame", "00:01:00;00", {30, true}, false},
        {"not skipped in a tenth minute", "00:10:00;00", {30, true}, true},
        {"drop-frame mark at a rate without", "00:01:00;02", {25, false}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string label = c.label;
        const auto markers = optionsWith(R"({"markers": [{"name": "M", "startFrame": ")" + label + "\"}]}");
        const auto start = optionsWith(R"({"sequenceStartTimecode": ")" + label + "\"}");
        EXPECT_EQ(checkTimecodes(markers, c.rate).has_value(), c.exists);
        EXPECT_EQ(checkTimecodes(start, c.rate).has_value(), c.exists);
        if (c.exists) continue;
        EXPECT_EQ(checkTimecodes(markers, c.rate).error().path, "markers[0].startFrame");
    }
}

TEST(CheckTimecodes, ACutMustEndAfterItsStart)
{
    const auto options = optionsWith(R"({"cuts": [{"type": "dissolve", "start": "00:00:01:00", "end": 26},
                                                  {"type": "dissolve", "start": "00:00:01:00", "end": 25}]})");
    const Status status = checkTimecodes(options, {25, false});
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().path, "cuts[1].end");
    EXPECT_TRUE(checkTimecodes(options, {24, false})); // there, a second is 24 frames long
}

TEST(NearestName, FindsTheSlipOfTheFingerAndNothingElse)
{
    const std::vector<std::string> names = {"inspect", "build", "validate", "labels", "timecode"};
    struct Case {
        const char* word;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"biuld", "build"},  {"INSPECT", "inspect"}, {"timcode", "timecode"},
        {"label", "labels"}, {"export", {}},         {"", {}},
        {"xy", {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(nearestName(c.word, names), c.expected) << c.word;
    EXPECT_EQ(nearestName(std::string(100000, 'a'), names), std::nullopt);
}

} // namespace
} // namespace zanfcp::cli
