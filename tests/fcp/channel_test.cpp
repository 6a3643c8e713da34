#include "fcp/EventServer.h"
#include "fcp/UnixSocketChannel.h"
#include "tests/fcp/HostProcess.h"
#include "tests/support/LogCapture.h"

#include <functional>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>

namespace zanfcp {
namespace {

using namespace std::chrono_literals;
using test::bytesOf;

/// Takes one connection, reads one event and does with it what it was told to.
class OneAnswer {
public:
    using Act = std::function<void(int connection, const EventMessage& event)>;
    explicit OneAnswer(Act act) : act_{std::move(act)}
    {
        listener_.reset(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        path().copy(address.sun_path, sizeof address.sun_path - 1);
        if (::bind(listener_.value(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(listener_.value(), 1) != 0)
            throw std::runtime_error("could not listen");
        thread_ = std::thread([this] {
            const FileDescriptor connection{::accept(listener_.value(), nullptr, nullptr)};
            std::string head(48, '\0'); // head and target; the events of these tests have no parameters
            ::recv(connection.value(), head.data(), head.size(), MSG_WAITALL);
            EventMessage event = test::event("eXML");
            event.returnID = 0;
            for (int i = 0; i < 8; ++i)
                event.returnID = event.returnID << 8U | static_cast<unsigned char>(head[24U + unsigned(i)]);
            act_(connection.value(), event);
        });
    }
    ~OneAnswer() { thread_.join(); }
    std::string path() const { return place_.file("s"); }

private:
    test::TempFolder place_;
    Act act_;
    FileDescriptor listener_;
    std::thread thread_;
};

TEST(Channel, EachFailureHasItsNumber)
{
    struct Case {
        const char* name;
        OSStatus expected;
        OneAnswer::Act act;
    };
    const auto reply = [](const EventMessage& event) { return bytesOf(EventMessage::reply(event.returnID), true); };
    const Case cases[] = {
        {"a reply", 0, [&](int to, const EventMessage& event) { test::sendAll(to, reply(event)); }},
        {"a reply byte by byte", 0,
         [&](int to, const EventMessage& event) {
             for (const char c : reply(event))
                 test::sendAll(to, {&c, 1});
         }},
        {"closed without a reply", -609, [](int, const EventMessage&) {}},
        {"half a reply", -609,
         [&](int to, const EventMessage& event) { test::sendAll(to, reply(event).substr(0, 20)); }},
        {"silence", -1712, [](int to, const EventMessage&) { test::receiveAll(to); }},
        {"half a reply, then silence", -1712,
         [&](int to, const EventMessage& event) {
             test::sendAll(to, reply(event).substr(0, 20));
             test::receiveAll(to);
         }},
        {"a reply to another event", -1709,
         [](int to, const EventMessage& event) {
             test::sendAll(to, bytesOf(EventMessage::reply(event.returnID + 1), true));
         }},
        {"an event in place of a reply", -1709,
         [](int to, const EventMessage& event) { test::sendAll(to, bytesOf(event)); }},
        {"no message", -1709, [](int to, const EventMessage&) { test::sendAll(to, std::string(100, 'x')); }},
        {"another version", -1709,
         [&](int to, const EventMessage& event) {
             std::string bytes = reply(event);
             bytes[5] = 2;
             test::sendAll(to, bytes);
         }},
    };
    for (const Case& c : cases) {
        const OneAnswer peer{c.act};
        EXPECT_EQ(
            UnixSocketChannel(peer.path(), c.expected == -1712 ? 300ms : 10'000ms).send(test::event("eXML")).status,
            c.expected)
            << c.name;
    }
}

TEST(Channel, NobodyListensWithoutASocketAndOnAStaleOne)
{
    const test::TempFolder place;
    EXPECT_EQ(UnixSocketChannel(place.file("s")).send(test::event("eXML")).status, -600);
    EXPECT_EQ(UnixSocketChannel(place.write("file", "")).send(test::event("eXML")).status, -600);
    EXPECT_EQ(UnixSocketChannel(std::string(200, 's')).send(test::event("eXML")).status, -50);
}

TEST(Channel, RefusalThatComesEarlyIsHeard)
{
    // The other side answers after the head and closes, while most of the event is still to be sent.
    const OneAnswer peer{[](int to, const EventMessage& event) {
        EventMessage reply = EventMessage::reply(event.returnID);
        (void)reply.add(EventCode::errorNumber, EventDescriptor::long32(-50));
        test::sendAll(to, bytesOf(reply, true));
    }};
    EventMessage large = test::event("iXML");
    (void)large.add(EventCode::xmlData, EventDescriptor::utf8(std::string(4U << 20U, 'x')));
    const auto outcome = UnixSocketChannel(peer.path()).send(large);
    ASSERT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.reply.find(EventCode::errorNumber)->asLong32(), -50);
}

TEST(Channel, TimeoutCountsForEventsThatNobodyTakes)
{
    const OneAnswer peer{[](int to, const EventMessage&) {
        std::this_thread::sleep_for(2s); // reads nothing of the rest
        test::receiveAll(to);
    }};
    EventMessage large = test::event("iXML");
    (void)large.add(EventCode::xmlData, EventDescriptor::utf8(std::string(4U << 20U, 'x')));
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(UnixSocketChannel(peer.path(), 200ms).send(large).status, -1712);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 1500ms);
}

TEST(Server, OtherUsersAreNotLetIn)
{
    test::LogCapture log;
    const test::TempFolder place;
    auto server = EventServer::open({.socketPath = place.file("s"), .user = ::geteuid() + 1},
                                    [](const EventMessage&) { return std::vector<EventMessage::Parameter>(); });
    ASSERT_TRUE(server);
    std::thread thread([&] { EXPECT_TRUE((*server)->run()); });
    EXPECT_EQ(UnixSocketChannel(place.file("s")).send(test::event("eXML")).status, -609);
    (*server)->stop();
    thread.join();
    EXPECT_EQ(log.errors(), std::vector{"EventServer: Refused a connection of user " + std::to_string(::geteuid())});
}

TEST(Server, EventThatWaitsForAnotherIsNoIdleClient)
{
    const test::TempFolder place;
    auto server = EventServer::open({.socketPath = place.file("s"), .idle = 200ms}, [](const EventMessage& event) {
        if (event.eventID == EventCode::importXML) std::this_thread::sleep_for(600ms);
        return std::vector<EventMessage::Parameter>();
    });
    ASSERT_TRUE(server);
    std::thread thread([&] { EXPECT_TRUE((*server)->run()); });
    const FileDescriptor waiting = test::connectTo(place.file("s"));
    const std::string event = bytesOf(test::event("eXML"));
    ASSERT_TRUE(test::sendAll(waiting.value(), event.substr(0, 10))); // it is known to the server before the other
    const FileDescriptor slow = test::connectTo(place.file("s"));
    ASSERT_TRUE(test::sendAll(slow.value(), bytesOf(test::event("iXML"))));
    std::this_thread::sleep_for(100ms);
    ASSERT_TRUE(test::sendAll(waiting.value(), event.substr(10)));
    EXPECT_EQ(test::errorNumberOf(test::receiveAll(waiting.value())), 0);
    (*server)->stop();
    thread.join();
}

TEST(Server, StopBeforeRunCounts)
{
    const test::TempFolder place;
    auto server = EventServer::open({.socketPath = place.file("s")},
                                    [](const EventMessage&) { return std::vector<EventMessage::Parameter>(); });
    ASSERT_TRUE(server);
    (*server)->stop();
    EXPECT_TRUE((*server)->run());
}

} // namespace
} // namespace zanfcp
