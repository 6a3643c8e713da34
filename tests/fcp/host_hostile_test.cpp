#include "fcp/UnixSocketChannel.h"
#include "tests/fcp/HostProcess.h"
#include "tests/support/Bytes.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <thread>

namespace zanfcp {
namespace {

using namespace std::chrono_literals;
using test::Bytes;
using test::document;
using test::HostProcess;

EventMessage importing(const std::string& text)
{
    return test::event("iXML", {{FourCC{"xmlD"}, EventDescriptor::utf8(text)}});
}

TEST(HostileClients, EventsByteByByteAndBackToBackAreAnswered)
{
    const HostProcess host;
    const FileDescriptor connection = test::connectTo(host.socket());
    for (const char c : test::bytesOf(importing(document("slow"))))
        ASSERT_TRUE(test::sendAll(connection.value(), {&c, 1}));
    std::string many;
    for (int i = 0; i < 20; ++i)
        many += test::bytesOf(importing(document("item")));
    ASSERT_TRUE(test::sendAll(connection.value(), many));
    ::shutdown(connection.value(), SHUT_WR);
    std::string replies = test::receiveAll(connection.value());
    const std::size_t one = test::bytesOf(EventMessage::reply(1), true).size();
    EXPECT_EQ(replies.size(), 21 * one);
    EXPECT_EQ(test::errorNumberOf(replies.substr(0, one)), 0);
}

TEST(HostileClients, ForgedBytesEndTheirConnectionAlone)
{
    const HostProcess host;
    const Bytes valid{test::bytesOf(importing(document("a")))};
    struct Case {
        const char* name;
        std::string bytes;
        OSStatus expected;
    };
    const Case cases[] = {
        {"noise", std::string(5000, '\xA5'), -1702},
        {"text", "GET / HTTP/1.1\r\nHost: localhost\r\nAccept: everything\r\n\r\n", -1702},
        {"another version", valid.withU8(5, 9).str(), -1706},
        {"a reply", test::bytesOf(EventMessage::reply(1), true), -1702},
        {"announces more than may be", valid.withU8(8, 1).str(), -50},
        {"contradicts itself", valid.withU8(15, 0x7F).str(), -1702},
    };
    for (const Case& c : cases) {
        const FileDescriptor connection = test::connectTo(host.socket());
        (void)test::sendAll(connection.value(), c.bytes);
        EXPECT_EQ(test::errorNumberOf(test::receiveAll(connection.value())), c.expected) << c.name;
    }
    EXPECT_EQ(host.send(test::event("eXML")), -1728) << "nothing was imported, and others are still answered";
}

TEST(HostileClients, ReplayedEventIsDoneOnce)
{
    const HostProcess host;
    const EventMessage event = importing(document("once"));
    EXPECT_EQ(host.send(event), 0);
    EXPECT_EQ(host.send(event), -50);
    EXPECT_EQ(host.communicator().currentXMLData(), document("once"));
}

TEST(HostileClients, HalfEventsLeaveNothingBehind)
{
    const HostProcess host;
    const std::string bytes = test::bytesOf(importing(document("half")));
    for (const std::size_t length : {std::size_t{1}, std::size_t{44}, std::size_t{60}, bytes.size() - 1}) {
        const FileDescriptor connection = test::connectTo(host.socket());
        ASSERT_TRUE(test::sendAll(connection.value(), std::string_view(bytes).substr(0, length)));
    }
    EXPECT_EQ(host.send(test::event("eXML")), -1728);
}

TEST(HostileClients, SilentClientsAndThoseThatNeverReadDelayNobody)
{
    HostProcess host;
    const auto client = host.communicator();
    ASSERT_TRUE(client.sendXMLDataToCurrentProject(document(std::string(4U << 20U, 'x'))));
    std::vector<FileDescriptor> others;
    for (int i = 0; i < 20; ++i) {
        others.push_back(test::connectTo(host.socket())); // silent
        others.push_back(test::connectTo(host.socket())); // stops in the middle
        ASSERT_TRUE(test::sendAll(others.back().value(), test::bytesOf(importing(document("a"))).substr(0, 50)));
        others.push_back(test::connectTo(host.socket())); // asks for much and does not take it
        ASSERT_TRUE(test::sendAll(others.back().value(), test::bytesOf(test::event("eXML"))));
    }
    const auto before = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(host.send(test::event("ofcP")), -1721);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 8s) << "after the twenty documents are read, at most";
    others.clear();
    EXPECT_EQ(host.stop(), 0);
}

TEST(HostileClients, ConnectionsWithoutProgressMakeRoomForOthers)
{
    const HostProcess host{{.clients = 4, .idleMilliseconds = 300}};
    std::vector<FileDescriptor> silent;
    for (int i = 0; i < 4; ++i)
        silent.push_back(test::connectTo(host.socket()));
    EXPECT_EQ(host.send(test::event("eXML")), -1728);
    EXPECT_EQ(test::receiveAll(silent.front().value()), "") << "it was closed";
}

TEST(HostileClients, TwoHundredAtOnceAreAllServed)
{
    const HostProcess host;
    std::atomic<int> good = 0;
    std::vector<std::thread> clients;
    for (int i = 0; i < 200; ++i)
        clients.emplace_back([&, i] {
            if (host.send(importing(document("<b>" + std::to_string(i) + "</b>"))) == 0) ++good;
        });
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(good, 200);
    const auto all = host.communicator().currentXMLData();
    ASSERT_TRUE(all);
    for (int i = 0; i < 200; ++i)
        EXPECT_NE(all->find("<b>" + std::to_string(i) + "</b>"), std::string::npos) << i;
}

TEST(HostileClients, BombsAndExternalEntitiesAreRefusedQuickly)
{
    const HostProcess host;
    std::string bomb = "<!DOCTYPE xmeml [<!ENTITY a \"ha\">";
    for (char c = 'b'; c <= 'z'; ++c)
        bomb += std::string("<!ENTITY ") + c + " \"&" + char(c - 1) + ";&" + char(c - 1) + ";&" + char(c - 1) + ";\">";
    const test::TempFolder outside;
    const std::string secret = outside.write("secret", "<name>secret</name>");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(host.send(importing(bomb + "]><xmeml version=\"5\">&z;</xmeml>")), -50);
    EXPECT_EQ(host.send(importing("<!DOCTYPE xmeml [<!ENTITY e SYSTEM \"file://" + secret +
                                  "\">]><xmeml version=\"5\">&e;</xmeml>")),
              -50);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 2s);
    EXPECT_EQ(host.send(test::event("eXML")), -1728);
}

TEST(HostileClients, FullDiskLeavesTheProjectAsItWas)
{
    const HostProcess host{{.fileBytes = 64U << 10U}};
    const auto client = host.communicator();
    ASSERT_TRUE(client.sendXMLDataToCurrentProject(document("fits")));
    EXPECT_EQ(host.send(importing(document(std::string(100'000, 'x')))), -34);
    EXPECT_EQ(client.currentXMLData(), document("fits"));
    EXPECT_TRUE(client.sendXMLDataToCurrentProject(document("fits too")));
    EXPECT_TRUE(client.saveCurrentProjectToURL(host.project("a.xml"), false));
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(host.projects()))
        files += entry.is_regular_file() ? 1 : 0;
    EXPECT_EQ(files, 1U) << "nothing half written stays";
}

TEST(HostileClients, HostKilledInTheMiddleOfAReplyIsNoticed)
{
    HostProcess host;
    ASSERT_TRUE(host.communicator().sendXMLDataToCurrentProject(document(std::string(4U << 20U, 'x'))));
    const FileDescriptor connection = test::connectTo(host.socket());
    ASSERT_TRUE(test::sendAll(connection.value(), test::bytesOf(test::event("eXML"))));
    std::string some(1000, '\0');
    ASSERT_EQ(::recv(connection.value(), some.data(), some.size(), MSG_WAITALL), 1000);
    host.kill();
    EXPECT_EQ(test::errorNumberOf(some + test::receiveAll(connection.value())), 1) << "no whole reply";
    EXPECT_EQ(host.send(test::event("eXML")), -600);
    host.start();
    EXPECT_TRUE(host.communicator().currentXMLData());
}

#ifdef NDEBUG
TEST(HostileClients, TwoHundredMegabytesGoThereAndBack)
{
    const HostProcess host;
    std::string text = "<xmeml version=\"5\">";
    text.reserve(201'000'000);
    while (text.size() < 200'000'000)
        text += "<clip id=\"clip\"><name>A name as long as most are</name><duration>1000</duration></clip>\n";
    text += "</xmeml>";
    EXPECT_TRUE(host.communicator().sendXMLDataToCurrentProject(text));
    const auto back = host.communicator().currentXMLData();
    EXPECT_TRUE(back == text);
}
#endif

} // namespace
} // namespace zanfcp
