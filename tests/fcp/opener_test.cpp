#include "fcp/ZANFCPCommunicator.h"
#include "tests/support/TempFolder.h"

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>

namespace zanfcp {
namespace {

using namespace std::chrono_literals;

class Nobody final : public EventTransport {
public:
    Outcome send(const EventMessage&) override { return {.status = EventStatus::procNotFound}; }
};

template <typename Condition> bool waitUntil(Condition condition)
{
    for (int i = 0; i < 1000; ++i) {
        if (condition()) return true;
        std::this_thread::sleep_for(10ms);
    }
    return false;
}

bool childrenLeft()
{
    siginfo_t info{};
    return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

TEST(Opener, PathArrivesAsOneArgumentAndNoZombieStays)
{
    const test::TempFolder folder;
    const std::string script = folder.write("open it", "#!/bin/sh\nsleep 1\nprintf '%s|' \"$@\" > \"$0.tmp\"\n"
                                                       "mv \"$0.tmp\" \"$0.out\"\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    const std::string odd = folder.file("a $(touch x); 'b' \"c\".xml");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_TRUE(ZANFCPCommunicator::communicator(std::make_shared<Nobody>(), {script, "-w"})
                    .openXMLFile(FileURL::fileURLWithPath(odd)));
    EXPECT_LT(std::chrono::steady_clock::now() - before, 800ms) << "it must not wait for the opener";
    ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(script + ".out"); }));
    EXPECT_EQ(test::readFile(script + ".out"), "-w|" + odd + "|");
    EXPECT_TRUE(waitUntil([] { return !childrenLeft(); }));
}

TEST(Opener, MissingOpenerIsNoFailure)
{
    for (const std::vector<std::string>& opener : {std::vector<std::string>{"/nowhere/opener"}, {}})
        EXPECT_TRUE(ZANFCPCommunicator::communicator(std::make_shared<Nobody>(), opener)
                        .openXMLFile(FileURL::fileURLWithPath("/tmp/a.xml")));
    EXPECT_FALSE(childrenLeft());
}

} // namespace
} // namespace zanfcp
