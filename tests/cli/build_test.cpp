#include "tests/cli/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zanfcp::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

const std::string kCut = R"([{"type": "cut", "activeAngleIndex": 0, "start": 0, "end": 10}])";

TEST(Build, TheSampleRecordingBecomesAValidProject)
{
    const TempFolder folder;
    const std::string output = folder.file("show.xml");
    const Outcome outcome =
        zanfcp(joined({"build"}, joined(sampleFiles(), {"--sequence", "--cuts", sample("cuts.json"), "--markers",
                                                        sample("markers.json"), "--validate", "-o", output})));
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "FILE       SIZE        RATE  START        LENGTH       OFFSET\n"
                           "CAM_A.mov  1280x720    25    10:00:00:05  00:00:04:00  5\n"
                           "CAM_B.mov  1280x720    25    10:00:00:10  00:00:03:10  0\n"
                           "CAM_C.mov  1280x720    25    10:00:00:00  00:00:03:20  10\n"
                           "SOUND.mov  no picture  25    10:00:00:00  00:00:04:00  10\n"
                           "common span: 10:00:00:10 to 10:00:03:19, 85 frames (00:00:03:10)\n"
                           "wrote " +
                               output + "\n");
    EXPECT_THAT(namesIn(folder), ElementsAre("show.xml"));
    const std::string document = readFile(output);
    for (const char* part :
         {"<multiclip id=", "<transitionitem>", "<name>Welcome</name>", "<comment>Hold camera C &amp;"})
        EXPECT_THAT(document, HasSubstr(part));
    EXPECT_EQ(zanfcp({"validate", output}).out, output + ": valid\n");
}

TEST(Build, StandardOutputGetsTheSameBytesAsAFile)
{
    const TempFolder folder;
    const std::vector<std::string> arguments = joined({"build", "--multiclip"}, sampleFiles());
    const Outcome printed = zanfcp(arguments);
    ASSERT_EQ(printed.status, 0) << printed.err;
    EXPECT_THAT(printed.out, StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
    ASSERT_EQ(zanfcp(joined(arguments, {"-o", folder.file("a.xml")})).status, 0);
    EXPECT_EQ(printed.out, readFile(folder.file("a.xml")));
    EXPECT_EQ(zanfcp(joined(arguments, {"-o", "-"})).out, printed.out);
}

TEST(Build, WrongUsageSaysWhichKeyAndWritesNothing)
{
    struct Case {
        const char* name;
        std::vector<std::string> arguments;
        const char* json; ///< content of the file "in.json"
        const char* why;
    };
    const Case cases[] = {
        {"unknown key",
         {"--set", "projectNam=x"},
         "",
         "--set: projectNam: there is no such key; did you mean projectName?"},
        {"key inside an object", {"--set", "importOptions.foo=1"}, "", "importOptions.foo: the format has no such"},
        {"wrong type",
         {"--options", "in.json"},
         R"({"addSequence": 3})",
         "in.json: addSequence: must be true or false"},
        {"bad JSON", {"--options", "in.json"}, "{\n  x}", "in.json: line 2, column 3"},
        {"cuts that are no list", {"--cuts", "in.json"}, "{}", "in.json: cuts: must be a list"},
        {"label that is skipped or beyond the rate",
         {"--cuts", "in.json", "--sequence"},
         R"([{"type": "dissolve", "start": "00:00:00:25", "end": "00:00:01:00"}])",
         "cuts[0].start: \"00:00:00:25\" is no timecode: frames end at 24"},
        {"angle beyond the files",
         {"--cuts", "in.json"},
         R"([{"type": "cut", "activeAngleIndex": 1, "start": 0, "end": 9}])",
         "cuts[0].activeAngleIndex: there is no file 1"},
        {"marker without a place", {"--markers", "in.json"}, R"([{"name": "M"}])", "markers[0].startFrame: is missing"},
        {"index beyond the files", {"--set", "soundSourceIndex=1"}, "", "soundSourceIndex: there is no file 1"},
        {"unknown option", {"--sequenc"}, "", "no option --sequenc; did you mean --sequence?"},
        {"option without its value", {"--cuts"}, "", "--cuts"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TempFolder folder;
        const std::string camera = writeCamera(folder, "CAM.mov", {});
        std::vector<std::string> arguments = joined({"build", camera, "-o", folder.file("show.xml")}, c.arguments);
        for (std::string& argument : arguments)
            if (argument == "in.json") argument = folder.write("in.json", c.json);
        const Outcome outcome = zanfcp(arguments);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr(c.why));
        EXPECT_FALSE(std::filesystem::exists(folder.file("show.xml")));
    }
}

TEST(Build, AFailureLeavesTheOldDocumentAndNothingElse)
{
    struct Case {
        const char* name;
        std::vector<std::string> files;
        std::vector<std::string> arguments;
        const char* why;
    };
    const TempFolder media;
    const std::string good = writeCamera(media, "good.mov", {});
    const std::string broken = media.write("broken.mov", "moov");
    const Case cases[] = {
        {"missing file", {good, media.file("none.mov")}, {}, "none.mov: no such file"},
        {"unreadable file", {broken, good}, {}, "broken.mov: could not be read as a QuickTime movie"},
        {"unknown type", {good, media.write("a.txt", "")}, {}, "a.txt: unknown type: .txt"},
        {"options that are not there", {good}, {"--options", media.file("none.json")}, "none.json: no such file"},
        {"sequence of a file without picture",
         {sample("SOUND.mov"), good},
         {"--sequence"},
         "which has no picture; choose another file with --set sequenceTemplateFileIndex=N"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TempFolder folder;
        const std::string output = folder.write("show.xml", "old");
        const Outcome outcome = zanfcp(joined(joined({"build", "-o", output}, c.arguments), c.files));
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr(c.why));
        EXPECT_EQ(readFile(output), "old");
        EXPECT_THAT(namesIn(folder), ElementsAre("show.xml"));
    }
}

TEST(Build, AnOutputThatCannotBeWrittenFails)
{
    const TempFolder folder;
    const std::string camera = writeCamera(folder, "CAM.mov", {});
    struct Case {
        const char* name;
        std::string line;
        const char* why;
    };
    const std::string build = "$ZANFCP build -q '" + camera + "' ";
    const Case cases[] = {
        {"full disk behind standard output", build + ">/dev/full", "standard output: No space left"},
        {"full disk", build + "-o /dev/full", "No space left"},
        {"closed standard output", build + ">&-", "standard output"},
        {"no such folder", build + "-o '" + folder.file("none/show.xml") + "'", "No such file"},
        {"a folder", build + "-o '" + folder.path().string() + "'", "Is a directory"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Outcome outcome = shell(c.line);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr(c.why));
        EXPECT_THAT(namesIn(folder), ElementsAre("CAM.mov"));
    }
}

TEST(Build, AnInputIsNeverReplaced)
{
    const TempFolder folder;
    const std::string camera = writeCamera(folder, "CAM.mov", {});
    const std::string options = folder.write("options.json", "{}");
    const std::string link = folder.file("link.xml");
    std::filesystem::create_symlink(camera, link);
    const std::string before = readFile(camera);
    for (const std::string& output : {camera, link, options, folder.path().string() + "/./CAM.mov"}) {
        SCOPED_TRACE(output);
        const Outcome outcome = zanfcp({"build", camera, "--options", options, "-o", output});
        EXPECT_EQ(outcome.status, 2);
        EXPECT_THAT(outcome.err, HasSubstr("would replace"));
    }
    EXPECT_EQ(readFile(camera), before);
    EXPECT_EQ(readFile(options), "{}");
}

TEST(Build, WarnsOfWhatWillNotImportWell)
{
    struct Case {
        const char* name;
        std::vector<Camera> cameras;
        std::vector<std::string> arguments;
        const char* json;
        const char* warning;
    };
    const Case cases[] = {
        {"no common span",
         {{.start = 0}, {.start = 500}},
         {},
         "",
         "no common span: 1.mov begins at 00:00:20:00, 0.mov ends at 00:00:03:24"},
        {"mixed rates", {{}, {.timebase = 50}}, {}, "", "different rates (25, 50)"},
        {"no timecode", {{}, {.hasTimecode = false}}, {}, "", "1.mov has no timecode"},
        {"rate that timecode does not know",
         {{.timebase = 30, .ntsc = true, .hasTimecode = false}},
         {},
         "",
         "0.mov has a rate of 29 frames a second"},
        {"no frame rate",
         {{.hasTimecode = false, .hasVideo = false, .hasSound = true}},
         {},
         "",
         "0.mov has no frame rate"},
        {"neither picture nor sound", {{}, {.hasVideo = false}}, {}, "", "1.mov has neither picture nor sound"},
        {"main angle without picture",
         {{}, {.hasVideo = false, .hasSound = true}},
         {"--multiclip", "--set", "multiclipMainFileIndex=1"},
         "",
         "1.mov has no picture, but is the main angle"},
        {"cut beyond the common span",
         {{.start = 90000}, {.start = 90010}},
         {"--sequence", "--cuts", "in.json"},
         R"([{"type": "cut", "activeAngleIndex": 0, "start": 0, "end": 90},
             {"type": "cut", "activeAngleIndex": 1, "start": 90, "end": 91}])",
         "1 of 2 cuts go beyond the common span of 90 frames (00:00:03:15), the first is cuts[1]"},
        {"cuts out of order",
         {{}},
         {"--sequence", "--cuts", "in.json"},
         R"([{"type": "cut", "activeAngleIndex": 0, "start": 20, "end": 30},
             {"type": "cut", "activeAngleIndex": 0, "start": 0, "end": 20}])",
         "cuts[1] starts before cuts[0] ends"},
        {"cuts that cover each other",
         {{}},
         {"--sequence", "--cuts", "in.json"},
         R"([{"type": "cut", "activeAngleIndex": 0, "start": 0, "end": 50},
             {"type": "cut", "activeAngleIndex": 0, "start": 25, "end": 80}])",
         "cuts[1] starts before cuts[0] ends"},
        {"dissolve without a cut before it",
         {{}},
         {"--sequence", "--cuts", "in.json"},
         R"([{"type": "dissolve", "start": 0, "end": 10},
             {"type": "cut", "activeAngleIndex": 0, "start": 0, "end": 50}])",
         "cuts[0] is a dissolve that does not stand between two cuts"},
        {"dissolve elsewhere",
         {{}},
         {"--sequence", "--cuts", "in.json"},
         R"([{"type": "cut", "activeAngleIndex": 0, "start": 0, "end": 50},
             {"type": "dissolve", "start": 60, "end": 70},
             {"type": "cut", "activeAngleIndex": 0, "start": 50, "end": 80}])",
         "cuts[1] is a dissolve away from where the cuts beside it meet"},
        {"marker beyond the end",
         {{}},
         {"--sequence", "--markers", "in.json"},
         R"([{"name": "late", "startFrame": 100}])",
         "markers[0] \"late\" lies beyond the end of the sequence, 00:00:04:00"},
        {"length of its own beyond the files",
         {{}},
         {"--sequence", "--set", "sequenceDuration=101"},
         "",
         "the sequence shows frames 0 to 100 of the common span, which has 100 (00:00:04:00)"},
        {"start before the files",
         {{}},
         {"--sequence", "--set", "sequenceStartTimecode=00:59:59:00", "--set", "sequenceCorrectFileOffsets=true"},
         "",
         "the sequence shows frames -25 to 74 of the common span"},
        {"text with a byte that is no UTF-8",
         {{}},
         {"--set", "projectName=Show\xFF"},
         "",
         "projectName has characters that a document cannot hold"},
        {"text with a control character",
         {{}},
         {"--sequence", "--markers", "in.json"},
         R"([{"name": "a", "startFrame": 0}, {"name": "b\u0001", "startFrame": 1}])",
         "markers[1].name has characters that a document cannot hold"},
        {"label that is none",
         {{}},
         {"--set", "clipLabel=best take", "--set", "binLabel=Best Take"},
         "",
         "warning: clipLabel \"best take\" is none of the labels"},
        {"cuts without a sequence", {{}}, {"--cuts", "in.json"}, kCut.c_str(), "the cuts are not used"},
        {"width alone",
         {{}},
         {"--sequence", "--set", "sequenceOverrides.frameSizeWidthOverride=1280"},
         "",
         "the frame size is not changed"},
        {"overrides beside first-clip settings",
         {{}},
         {"--sequence", "--set", "useFirstClipSettings=true", "--set", "sequenceOverrides.anamorphicOverride=true"},
         "",
         "sequenceOverrides is not used"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TempFolder folder;
        std::vector<std::string> arguments =
            joined({"build", "-o", folder.file("show.xml"), "--validate"}, c.arguments);
        for (std::string& argument : arguments)
            if (argument == "in.json") argument = folder.write("in.json", c.json);
        for (std::size_t i = 0; i < c.cameras.size(); ++i)
            arguments.push_back(writeCamera(folder, std::to_string(i) + ".mov", c.cameras[i]));
        std::string folderless = zanfcp(arguments).err;
        for (std::size_t at; (at = folderless.find(folder.path().string() + "/")) != std::string::npos;)
            folderless.erase(at, folder.path().string().size() + 1);
        EXPECT_THAT(folderless, HasSubstr("zanfcp: warning: "));
        EXPECT_THAT(folderless, HasSubstr(c.warning));

        const Outcome quiet = zanfcp(joined(arguments, {"--quiet"}));
        EXPECT_EQ(quiet.status, 0);
        EXPECT_EQ(quiet.err, "");
    }
}

TEST(Build, ANameThatADocumentCannotHoldIsReported)
{
    const TempFolder folder;
    const Outcome outcome =
        zanfcp({"build", writeCamera(folder, "a\x01.mov", {}), "-o", folder.file("show.xml"), "--validate"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("a\\x01.mov has a name that a document cannot hold"));
}

TEST(Build, TwoFilesOfOneNameAreReported)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.path() / "B");
    const std::string one = writeCamera(folder, "CLIP.mov", {});
    const std::string other = writeCamera(folder, "B/CLIP.mov", {.start = 90010});
    const Outcome outcome = zanfcp({"build", one, other, "-o", folder.file("show.xml")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err,
                HasSubstr("files with the same name are taken for one when they are imported: " + one + ", " + other));
}

TEST(Build, NothingIsWarnedOfInAnOrderlyRecording)
{
    const TempFolder folder;
    const std::string cuts =
        folder.write("cuts.json", R"([{"type": "cut", "activeAngleIndex": 1, "start": 5, "end": 90}])");
    const Outcome outcome =
        zanfcp({"build", writeCamera(folder, "A.mov", {}), writeCamera(folder, "B.mov", {.start = 90010}), "--sequence",
                "--cuts", cuts, "-o", folder.file("show.xml"), "--set", "sequenceStartTimecode=01:00:00:10", "--set",
                "sequenceCorrectFileOffsets=true"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, Not(HasSubstr("warning")));
}

TEST(Build, ASwitchCountsMoreThanSetAndSetMoreThanTheFile)
{
    const TempFolder folder;
    const std::string camera = writeCamera(folder, "A.mov", {});
    const std::string options =
        folder.write("options.json", R"({"projectName": "from file", "binName": "from file", "addMulticlip": false,
                                         "sequenceOverrides": {"anamorphicOverride": true}})");
    const Outcome outcome = zanfcp({"build", camera, "--options", options, "--set", "binName=from set", "--sequence",
                                    "--set", "sequenceOverrides.editingTimebaseOverride=50", "-q"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    for (const char* part : {"<name>from file</name>", "<name>from set</name>", "<sequence", "<timebase>50</timebase>",
                             "<anamorphic>TRUE</anamorphic>"})
        EXPECT_THAT(outcome.out, HasSubstr(part));
}

TEST(Build, LogLinesShowOnlyWhenAskedForOrWhenTheStepFailed)
{
    const TempFolder folder;
    const std::string cuts = folder.write("cuts.json", kCut);
    const std::vector<std::string> good = {"build", sample("CAM_A.mov"), "--sequence", "--cuts", cuts,
                                           "-o",    folder.file("a.xml")};
    EXPECT_THAT(zanfcp(good).err, Not(HasSubstr("PELElement")));
    const std::string verbose = zanfcp(joined(good, {"--verbose"})).err;
    EXPECT_THAT(verbose, HasSubstr("[log] PELElement: Created XML"));
    EXPECT_THAT(verbose, HasSubstr("[log] PELElement: Element from 0 (0) to 10 (10) with frames 10"));
    EXPECT_THAT(zanfcp(joined({"--verbose"}, good)).err, HasSubstr("PELElement: Created XML"));

    const std::string broken = folder.write("broken.mov", std::string(24, 'x'));
    EXPECT_THAT(zanfcp({"build", "-q", broken}).err, HasSubstr("\n  PELMovieUtilities: Could not read "));
}

TEST(Build, NamesThatBeginWithADashAndHoldBlanksAreFiles)
{
    const TempFolder folder;
    writeCamera(folder, "-a b #1%.mov", {});
    const Outcome outcome =
        shell("cd '" + folder.path().string() + "' && $ZANFCP build -q -o out.xml -- '-a b #1%.mov'");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(readFile(folder.file("out.xml")), HasSubstr("/-a%20b%20%231%25.mov</pathurl>"));
}

TEST(Build, OptionsMayComeFromAPipe)
{
    const Outcome outcome = shell(
        "$ZANFCP build -q '" + sample("CAM_A.mov") + "' --options <(echo '{\"projectName\": \"Piped\"}')", "/bin/bash");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("<name>Piped</name>"));
}

} // namespace
} // namespace zanfcp::test
