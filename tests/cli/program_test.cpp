#include "cli/OptionTable.h"
#include "tests/cli/Program.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zanfcp::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

const std::vector<std::string> kCommands = {"inspect", "build", "validate", "labels", "timecode", "host",
                                            "send",    "get",   "open",     "save",   "close",    "mxf"};

TEST(Program, HelpTellsANewcomerWhatToType)
{
    const Outcome help = zanfcp({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_THAT(help.out, HasSubstr("Exit codes: 0 done, 1 failed"));
    EXPECT_THAT(help.out, Not(HasSubstr("completion"))); // that is for packages
    for (const std::string& command : kCommands) {
        SCOPED_TRACE(command);
        EXPECT_THAT(help.out, HasSubstr("\n  " + command + " "));
    }
    for (const std::string& command : joined(kCommands, {"mxf info", "mxf dump"})) {
        SCOPED_TRACE(command);
        const Outcome own = shell("$ZANFCP " + command + " --help");
        EXPECT_EQ(own.status, 0);
        EXPECT_THAT(own.out, HasSubstr("Usage: zanfcp " + command));
        EXPECT_THAT(own.out, HasSubstr(command == "mxf" ? "Subcommands:" : "Examples:\n  zanfcp "));
        EXPECT_THAT(own.out, HasSubstr("Exit codes: "));
    }
}

TEST(Program, AnEmptyNameStandsForNothingElse)
{
    for (const char* line :
         {"inspect ''", "build ''", "validate ''", "mxf samples ''", "mxf extract '' --stream 0 -o x",
          "mxf extract x.mxf --stream 0 -o ''", "mxf extract x.mxf --stream 0 -o x --from ''",
          "mxf extract x.mxf --stream 0 -o x --to ''", "mxf stream ''", "mxf stream x.mxf -o ''"}) {
        SCOPED_TRACE(line);
        const Outcome outcome = shell("$ZANFCP " + std::string(line));
        EXPECT_EQ(outcome.status, 2);
        EXPECT_THAT(outcome.err, HasSubstr("must not be empty"));
    }
}

TEST(Program, WithoutACommandItShowsTheHelpAndIsWrongUsage)
{
    const Outcome outcome = zanfcp({});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, zanfcp({"--help"}).out);
}

TEST(Program, WrongUsageExitsWith2AndSaysWhatWasMeant)
{
    struct Case {
        std::vector<std::string> arguments;
        const char* message;
    };
    const Case cases[] = {
        {{"biuld", "a.mov"}, "zanfcp: there is no command \"biuld\"; did you mean build?\nTry: zanfcp --help\n"},
        {{"--quiet"}, "zanfcp: A subcommand is required\nTry: zanfcp --help\n"},
        {{"inspect"}, "zanfcp: FILE is required\nTry: zanfcp inspect --help\n"},
        {{"inspect", "--jsn", "a.mov"},
         "zanfcp: there is no option --jsn; did you mean --json?\nTry: zanfcp inspect --help\n"},
        {{"-V"}, "zanfcp: there is no option -V\nTry: zanfcp --help\n"},
        {{"build", "-sequence", "a.mov"},
         "zanfcp: there is no option -sequence; did you mean --sequence?\nTry: zanfcp build --help\n"},
        {{"timecode", "1"}, "zanfcp: --rate is required\nTry: zanfcp timecode --help\n"},
        {{"timecode", "1", "--rate", "26"}, "zanfcp: --rate: \"26\" is none of 23.976, "},
        {{"completion", "fish"}, "fish"},
        {{"mxf"}, "zanfcp: A subcommand is required\nTry: zanfcp mxf --help\n"},
        {{"--json", "mxf", "info", "a.mxf"},
         "zanfcp: --json belongs behind the command: zanfcp mxf info --json\nTry: zanfcp mxf info --help\n"},
        {{"mxf", "inf"}, "zanfcp: there is no command \"mxf inf\"; did you mean mxf info?\nTry: zanfcp mxf --help\n"},
        {{"mxf", "info", "--jsn", "a.mxf"},
         "zanfcp: there is no option --jsn; did you mean --json?\nTry: zanfcp mxf info --help\n"},
    };
    for (const Case& c : cases) {
        const Outcome outcome = zanfcp(c.arguments);
        EXPECT_EQ(outcome.status, 2) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr(c.message));
    }
}

TEST(Program, VersionAndLabelsGoToStandardOutput)
{
    EXPECT_THAT(zanfcp({"--version"}).out, ::testing::MatchesRegex("zanfcp [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    const Outcome labels = zanfcp({"labels"});
    EXPECT_EQ(labels.status, 0);
    EXPECT_THAT(labels.out, ::testing::MatchesRegex("1  .*\n2  .*\n3  .*\n4  .*\n5  .*\n"));
    EXPECT_THAT(labels.err, HasSubstr("Final Cut Pro 7.0 Prefs.fcset"));
    EXPECT_EQ(zanfcp({"labels", "--quiet"}).err, "");
}

TEST(Timecode, ConvertsAndAdds)
{
    struct Case {
        std::vector<std::string> arguments;
        const char* out;
    };
    const Case cases[] = {
        {{"01:00:00:00", "--rate", "25"}, "01:00:00:00  90000\n"},
        {{"90000", "--rate", "25"}, "01:00:00:00  90000\n"},
        {{"1800", "--rate", "29.97"}, "00:01:00;02  1800\n"},
        {{"00:01:00:02", "--rate", "29.97df"}, "00:01:00;02  1800\n"},
        {{"1800", "--rate", "29.97ndf"}, "00:01:00:00  1800\n"},
        {{"3600", "--rate", "59.94"}, "00:01:00;04  3600\n"},
        {{"86400", "--rate", "23.976"}, "01:00:00:00  86400\n"},
        {{"10:00:00:00", "--rate", "25", "--add", "00:00:01:00", "--add", "-1"}, "10:00:00:24  900024\n"},
        {{"00:00:00:00", "--rate", "25", "--add", "-00:00:00:01"}, "23:59:59:24  2159999  -1 day\n"},
        {{"23:59:59:24", "--rate", "25", "--add=2160001"}, "00:00:00:00  0  +2 days\n"},
    };
    for (const Case& c : cases) {
        const Outcome outcome = zanfcp(joined({"timecode"}, c.arguments));
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out, c.out);
    }
}

TEST(Timecode, ALabelThatDoesNotExistFails)
{
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"00:01:00;00", "--rate", "29.97"},
                                                      {"01:00:00:25", "--rate", "25"},
                                                      {"ten", "--rate", "25"},
                                                      {"0", "--rate", "25", "--add", "00:00:60:00"}}) {
        const Outcome outcome = zanfcp(joined({"timecode"}, arguments));
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr("is no timecode: "));
    }
}

TEST(ManualPage, HasEveryOptionAndNoFaultOfTroff)
{
    const Outcome page = zanfcp({"man"});
    ASSERT_EQ(page.status, 0);
    for (const cli::OptionSpec& spec : cli::projectOptions())
        EXPECT_THAT(page.out, HasSubstr("\n.B \"" + std::string(spec.key) + "\"\n"));
    for (const char* option : {"save\n[\\fIOPTIONS\\fR] [FILE]\n", "\\-o, \\-\\-output OUT", "\\-\\-set KEY=VALUE",
                               "\\-\\-rate RATE", "\\-\\-json"})
        EXPECT_THAT(page.out, HasSubstr(option));
    if (shell("command -v groff").status != 0) GTEST_SKIP() << "groff is not installed";
    const Outcome groff = shell("$ZANFCP man | groff -man -Tutf8 -ww -z");
    EXPECT_EQ(groff.status, 0);
    EXPECT_EQ(groff.err, "");
}

TEST(Completion, OffersWhatFitsTheCursor)
{
    const TempFolder folder;
    writeCamera(folder, "my film.mov", {});
    folder.write("cuts.json", "[]");
    folder.write("notes.txt", "");
    folder.write("a.mxf", "");
    folder.write("show.xml", "");
    std::filesystem::create_directory(folder.file("projects"));
    struct Case {
        const char* line; ///< the words so far, the last one under the cursor
        std::vector<std::string> offered;
    };
    const Case cases[] = {
        {"zanfcp ''", kCommands},
        {"zanfcp va", {"validate"}},
        {"zanfcp --ver", {"--version", "--verbose"}},
        {"zanfcp build --se", {"--set", "--sequence"}},
        {"zanfcp build --set sequenceOverrides.ana", {"sequenceOverrides.anamorphicOverride="}},
        {"zanfcp build ''", {"projects", "my film.mov", "a.mxf"}},
        {"zanfcp mxf ''", {"info", "dump", "samples", "extract", "stream"}},
        {"zanfcp -q mxf info --js", {"--json"}},
        {"zanfcp mxf dump ''", {"projects", "a.mxf"}},
        {"zanfcp build --cuts ''", {"projects", "cuts.json"}},
        {"zanfcp timecode 1 --rate 59", {"59.94", "59.94df", "59.94ndf"}},
        {"zanfcp labels ''", {}},
        {"zanfcp host --projects ''", {"projects"}},
        {"zanfcp close --project ''", {"projects", "show.xml"}},
    };
    for (const Case& c : cases) {
        const Outcome outcome =
            shell("cd '" + folder.path().string() + "' && source <($ZANFCP completion bash) && COMP_WORDS=(" + c.line +
                      ") && COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) && _zanfcp\n" +
                      "((${#COMPREPLY[@]} == 0)) || printf '%s\\n' \"${COMPREPLY[@]}\"",
                  "/bin/bash");
        std::string expected;
        for (const std::string& word : c.offered)
            expected += word + "\n";
        EXPECT_EQ(outcome.out, expected) << c.line;
        EXPECT_EQ(outcome.err, "") << c.line;
    }
}

} // namespace
} // namespace zanfcp::test
