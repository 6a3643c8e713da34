#include "tests/cli/Program.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zanfcp::test {
namespace {

using ::testing::HasSubstr;

/// A line of the shell with a host beside it, which is terminated afterwards. $S is its socket, $P its folder; the
/// status is that of `line`, and what the host says and ends with follows it on standard error.
Outcome besideHost(const TempFolder& folder, const std::string& line)
{
    return shell("cd '" + folder.path().string() + "'; P=$PWD/projects; S=$PWD/run/socket; mkdir -p $P\n" +
                 "$ZANFCP host --projects $P --socket $S 2>host.log & host=$!\n"
                 "for i in $(seq 500); do [ -S $S ] && break; sleep 0.02; done\n"
                 "export S P; ( " +
                 line +
                 " ); code=$?\nkill $host; wait $host; echo \"host ended with $?\" >&2; cat host.log >&2\n"
                 "exit $code");
}

TEST(Host, ProjectGoesFromTheBuilderToTheHostAndBack)
{
    const TempFolder folder;
    const Outcome outcome = besideHost(folder, "set -e\n"
                                               "$ZANFCP build '" +
                                                   sample("CAM_A.mov") + "' '" + sample("CAM_B.mov") +
                                                   "' --multiclip >built.xml\n"
                                                   "$ZANFCP send - --socket $S <built.xml\n"
                                                   "$ZANFCP get -o back.xml --socket $S --timeout 20\n"
                                                   "cmp built.xml back.xml\n"
                                                   "$ZANFCP get --socket $S | cmp built.xml -\n"
                                                   "$ZANFCP save $P/show.xml --socket $S\n"
                                                   "$ZANFCP send built.xml --project $P/show.xml --socket $S\n"
                                                   "$ZANFCP save --socket $S\n"
                                                   "$ZANFCP close --socket $S\n"
                                                   "$ZANFCP open $P/show.xml --socket $S\n"
                                                   "$ZANFCP close --discard --project $P/show.xml --socket $S\n"
                                                   "$ZANFCP validate $P/show.xml\n");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("host ended with 0"));
    EXPECT_THAT(outcome.out, HasSubstr("show.xml: valid"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("run/socket")));
}

TEST(Host, WhatIsOpenedAgainAtTheStartIsNamed)
{
    const TempFolder folder;
    std::filesystem::create_directories(folder.file("projects/.zanfcp"));
    folder.write("projects/.zanfcp/a.xml.unsaved", "<xmeml version=\"5\"/>");
    const Outcome outcome = besideHost(folder, "$ZANFCP get --socket $S");
    EXPECT_EQ(outcome.out, "<xmeml version=\"5\"/>");
    EXPECT_THAT(outcome.err, HasSubstr("Reopened a.xml, which has unsaved work"));
}

TEST(Host, WithoutLibxml2ItDoesNotStartAndFilesAreStillRead)
{
    const TempFolder folder;
    folder.write(ZANFCP_LIBXML2, ""); // found first, and no library
    const std::string without = "LD_LIBRARY_PATH='" + folder.path().string() + "' $ZANFCP ";
    const std::string place = " --projects '" + folder.path().string() + "' --socket '" + folder.file("socket") + "'";
    EXPECT_EQ(shell(without + "inspect '" + sample("CAM_A.mov") + "'").err, "");
    const Outcome host = shell(without + "host" + place);
    EXPECT_EQ(host.status, 1);
    EXPECT_THAT(host.err, HasSubstr("zanfcp: libxml2 could not be loaded: "));
    EXPECT_THAT(host.err, HasSubstr(ZANFCP_LIBXML2));
}

TEST(Host, RefusalsSayWhatToDo)
{
    const TempFolder folder;
    folder.write("a.xml", "<xmeml version=\"5\"/>");
    folder.write("broken.xml", "<xmeml version=\"5\">");
    struct Case {
        const char* line;
        const char* message;
    };
    const Case cases[] = {
        {"$ZANFCP get --socket $S", "no project is open (-1728)"},
        {"$ZANFCP get --socket $S -o out.xml", "no project is open (-1728)"},
        {"$ZANFCP send broken.xml --socket $S", "no xmeml document"},
        {"$ZANFCP send missing.xml --socket $S", "missing.xml: no such file"},
        {"$ZANFCP open $P/../a.xml --socket $S", "must lie in the host's projects folder"},
        {"$ZANFCP open $P/none.xml --socket $S", "no such file (-43)"},
        {"$ZANFCP send a.xml --socket $S && $ZANFCP save $P/b.xml --socket $S && $ZANFCP save $P/b.xml --socket $S",
         "--overwrite replaces it (-48)"},
        {"$ZANFCP get --socket $S.none", "start the host first: zanfcp host --projects DIR (-600)"},
        {"$ZANFCP host --projects $P/none --socket $S.2", "could not open the folder"},
        {"$ZANFCP host --projects . --socket $S", "somebody listens"},
    };
    for (const Case& c : cases) {
        const Outcome outcome = besideHost(folder, c.line);
        EXPECT_EQ(outcome.status, 1) << c.line << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr(c.message)) << c.line;
    }
    EXPECT_FALSE(std::filesystem::exists(folder.file("out.xml")));
    const std::vector<std::vector<std::string>> wrong = {
        {"host"}, {"get", "--timeout", "0"}, {"get", "--timeout", "nan"}, {"get", "--timeout", "5s"}};
    for (const auto& line : wrong)
        EXPECT_EQ(zanfcp(line).status, 2) << line.back();
}

TEST(Host, EmptyNamesDoNotStandForTheCurrentProject)
{
    const TempFolder folder;
    folder.write("a.xml", "<xmeml version=\"5\"/>");
    const Outcome outcome =
        besideHost(folder, "$ZANFCP send a.xml --socket $S\n"
                           "for line in 'close --discard --project' 'send a.xml --project' save \\\n"
                           "    'get --project' open send 'get --output'; do\n"
                           "  $ZANFCP $line '' --socket $S; [ $? = 2 ] || exit 1\ndone\n"
                           "$ZANFCP get --socket $S | cmp a.xml -");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(zanfcp({"get", "--socket", std::string(200, 's')}).err.find("xmeml"), std::string::npos);
}

} // namespace
} // namespace zanfcp::test
