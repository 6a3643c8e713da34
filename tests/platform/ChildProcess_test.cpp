#include "platform/ChildProcess.h"

#include "tests/support/TempFolder.h"

#include <csignal>
#include <gtest/gtest.h>

namespace zanfcp {
namespace {

constexpr const char* kShell = "/bin/sh";

TEST(ChildProcess, LargeInputAndBothOutputsFlowAtOnce)
{
    std::string input;
    while (input.size() < 8U << 20U)
        input += std::to_string(input.size()) + "\n";
    const auto result = runChildProcess(kShell, {"-c", "tee /dev/fd/2"}, input);
    ASSERT_TRUE(result) << result.error().text();
    EXPECT_EQ(result->exitStatus, 0);
    EXPECT_TRUE(result->standardOutput == input);
    EXPECT_TRUE(result->standardError == input);
}

TEST(ChildProcess, ChildMayStopReading)
{
    const std::string input(8U << 20U, 'x');
    struct Case {
        const char* script;
        const char* output;
        int status;
    };
    const Case cases[] = {
        {"exit 3", "", 3},
        {"head -c 5", "xxxxx", 0},
        {"exec 0<&-; echo closed", "closed\n", 0},
        {"echo no; exec 1>&- 2>&-; sleep 0.1; exit 4", "no\n", 4}, // reads nothing and says no more
    };
    for (const Case& c : cases) {
        const auto result = runChildProcess(kShell, {"-c", c.script}, input);
        ASSERT_TRUE(result) << c.script;
        EXPECT_EQ(result->standardOutput, c.output) << c.script;
        EXPECT_EQ(result->exitStatus, c.status) << c.script;
    }
}

TEST(ChildProcess, ArgumentsAndInputArriveAsTheyAre)
{
    const auto result = runChildProcess(kShell, {"-c", "printf '%s|' \"$0\" \"$@\"", "a b", "", "$HOME; *"});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->standardOutput, "a b||$HOME; *|");
    const std::string bytes{"\0\xFF\n", 3};
    EXPECT_EQ(runChildProcess("/bin/cat", {}, bytes)->standardOutput, bytes);
    EXPECT_EQ(runChildProcess("/bin/cat", {})->standardOutput, "") << "input ends at once";
}

TEST(ChildProcess, SignalsBecomeExitStatus)
{
    EXPECT_EQ(runChildProcess(kShell, {"-c", "kill -TERM $$"})->exitStatus, 128 + SIGTERM);
    EXPECT_EQ(runChildProcess(kShell, {"-c", "kill -KILL $$"})->exitStatus, 128 + SIGKILL);
}

TEST(ChildProcess, ProgramsThatCannotBeRunAreNotFound)
{
    const test::TempFolder folder;
    for (const std::string& path : {folder.file("missing"), folder.write("not executable", "#!/bin/sh\n"),
                                    folder.path().string(), std::string("sh"), std::string()}) {
        const auto result = runChildProcess(path, {}, "input");
        ASSERT_FALSE(result) << path;
        EXPECT_EQ(result.error().fault, Fault::notFound) << path;
        EXPECT_NE(result.error().what.find(path), std::string::npos);
    }
}

} // namespace
} // namespace zanfcp
