#include "fcp/ZANFCPCommunicator.h"

#include "fcp/ZANFCPEvent.h"
#include "tests/support/LogCapture.h"

#include <cstring>
#include <functional>
#include <gtest/gtest.h>

namespace zanfcp {
namespace {

const FileURL kProject = FileURL::fileURLWithPath("/projects/Größe 1.xml");

/// An application that remembers what it was sent, and answers what it was told to.
class Peer final : public EventTransport {
public:
    Outcome send(const EventMessage& event) override
    {
        events.push_back(event);
        Outcome outcome{.status = status, .reply = EventMessage::reply(event.returnID)};
        outcome.reply.parameters = answer;
        return outcome;
    }

    OSStatus status = EventStatus::noErr;
    std::vector<EventMessage::Parameter> answer;
    std::vector<EventMessage> events;
};

template <typename T> std::string machineBytes(T value)
{
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

struct Method {
    const char* name;
    FourCC eventID;
    std::vector<EventMessage::Parameter> parameters;
    std::function<bool(const ZANFCPCommunicator&)> call;
};

std::vector<Method> methods()
{
    const EventMessage::Parameter project{FourCC{"fcpP"},
                                          {FourCC{"furl"}, "/projects/Gr\xC3\xB6\xC3\x9F"
                                                           "e 1.xml"}};
    const EventMessage::Parameter version{FourCC{"xmlV"}, {FourCC{"doub"}, machineBytes(5.0)}};
    const EventMessage::Parameter data{FourCC{"xmlD"}, {FourCC{"utf8"}, std::string("<a\0>", 4)}};
    const EventMessage::Parameter saving{FourCC{"fcCF"}, {FourCC{"long"}, machineBytes(std::int64_t{0})}};
    const EventMessage::Parameter discarding{FourCC{"fcCF"}, {FourCC{"long"}, machineBytes(std::int64_t{1})}};
    const EventMessage::Parameter place{FourCC{"fcpU"}, project.descriptor};
    const EventMessage::Parameter keep{FourCC{"fsOF"}, {FourCC{"bool"}, std::string(1, '\0')}};
    const EventMessage::Parameter replace{FourCC{"fsOF"}, {FourCC{"bool"}, std::string(1, '\1')}};
    using Communicator = const ZANFCPCommunicator&;
    return {
        {"get",
         FourCC{"eXML"},
         {version, project},
         [](Communicator c) { return c.XMLDataOfProjectAtURL(kProject).has_value(); }},
        {"get current", FourCC{"eXML"}, {version}, [](Communicator c) { return c.currentXMLData().has_value(); }},
        {"import",
         FourCC{"iXML"},
         {data},
         [](Communicator c) {
             return c.sendXMLDataToCurrentProject({"<a\0>", 4});
         }},
        {"import into",
         FourCC{"iXML"},
         {project, data},
         [](Communicator c) {
             return c.sendXMLData({"<a\0>", 4}, kProject);
         }},
        {"open", FourCC{"ofcP"}, {project}, [](Communicator c) { return c.openProjectFile(kProject); }},
        {"close and save",
         FourCC{"cfcP"},
         {saving, project},
         [](Communicator c) { return c.closeProjectAtURL(kProject, true); }},
        {"close without saving",
         FourCC{"cfcP"},
         {discarding, project},
         [](Communicator c) { return c.closeProjectAtURL(kProject, false); }},
        {"close current", FourCC{"cfcP"}, {saving}, [](Communicator c) { return c.closeCurrentProjectAndSave(true); }},
        {"save",
         FourCC{"sfcP"},
         {keep, place},
         [](Communicator c) { return c.saveCurrentProjectToURL(kProject, false); }},
        {"save over",
         FourCC{"sfcP"},
         {replace, place},
         [](Communicator c) { return c.saveCurrentProjectToURL(kProject, true); }},
    };
}

TEST(Communicator, EachMethodSendsOneEventOfExactBytes)
{
    for (const Method& method : methods()) {
        SCOPED_TRACE(method.name);
        const auto peer = std::make_shared<Peer>();
        peer->answer = {{FourCC{"xmlD"}, {FourCC{"utf8"}, "<xmeml/>"}}};
        EXPECT_TRUE(method.call(ZANFCPCommunicator::communicator(peer)));
        ASSERT_EQ(peer->events.size(), 1U);
        const EventMessage& event = peer->events.front();
        EXPECT_EQ(event.eventClass, FourCC{"KeyG"});
        EXPECT_EQ(event.eventID, method.eventID);
        EXPECT_EQ(event.target, (EventDescriptor{FourCC{"sign"}, "KeyG"}));
        EXPECT_NE(event.returnID, 0U);
        EXPECT_EQ(event.parameters, method.parameters);
    }
}

TEST(Communicator, EachMethodFailsOnErrorsOfSendingAndOfReplies)
{
    const test::LogCapture log;
    struct Case {
        const char* name;
        OSStatus status;
        std::vector<EventMessage::Parameter> extra;
        bool succeeds;
    };
    const FourCC number{"errn"};
    const Case cases[] = {
        {"plain success", 0, {}, true},
        {"nobody listens", -600, {}, false},
        {"no reply in time", -1712, {}, false},
        {"errn -50", 0, {{number, {FourCC{"long"}, machineBytes(std::int32_t{-50})}}}, false},
        {"errn 7", 0, {{number, {FourCC{"long"}, machineBytes(std::int32_t{7})}}}, false},
        {"errn 0", 0, {{number, {FourCC{"long"}, machineBytes(std::int32_t{0})}}}, true},
        {"errn of two bytes", 0, {{number, {FourCC{"long"}, "\1\1"}}}, false},
    };
    for (const Method& method : methods())
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(method.name) + ", " + c.name);
            const auto peer = std::make_shared<Peer>();
            peer->status = c.status;
            peer->answer = c.extra;
            peer->answer.push_back({FourCC{"xmlD"}, {FourCC{"utf8"}, "<xmeml/>"}});
            EXPECT_EQ(method.call(ZANFCPCommunicator::communicator(peer)), c.succeeds);
        }
    EXPECT_TRUE(log.lines().empty());
}

TEST(Communicator, ReplyWithoutADocumentGivesNone)
{
    const auto peer = std::make_shared<Peer>();
    const auto communicator = ZANFCPCommunicator::communicator(peer);
    EXPECT_EQ(communicator.currentXMLData(), std::nullopt);
    peer->answer = {{FourCC{"xmlD"}, {FourCC{"utxt"}, "<xmeml/>"}}};
    EXPECT_EQ(communicator.currentXMLData(), std::nullopt);
    peer->answer = {{FourCC{"xmlD"}, {FourCC{"utf8"}, ""}}};
    EXPECT_EQ(communicator.currentXMLData(), "");
}

TEST(Communicator, NothingIsSentWithoutTheFileThatIsNeeded)
{
    const auto peer = std::make_shared<Peer>();
    const auto communicator = ZANFCPCommunicator::communicator(peer);
    EXPECT_FALSE(communicator.saveCurrentProjectToURL({}, true));
    EXPECT_FALSE(communicator.sendXMLData("<a/>", {}));
    EXPECT_TRUE(peer->events.empty());
}

TEST(Event, FirstErrorStopsTheStepsThatHeedIt)
{
    Peer peer;
    auto event = ZANFCPEvent::eventWithType(EventCode::saveProject, peer);
    EXPECT_EQ(event.status(), 0);
    EXPECT_FALSE(event.reply());
    event.saveProjectToURL({}, true);
    EXPECT_EQ(event.status(), -1);
    event.setProjectURL(kProject);
    event.setXMLData("<a/>");
    EXPECT_TRUE(event.event().parameters.empty());
    EXPECT_EQ(event.send(), -1);
    std::optional<std::string> data;
    EXPECT_FALSE(event.getResultXMLData(data));
    EXPECT_EQ(event.status(), -1);
    EXPECT_TRUE(peer.events.empty());

    event.openFile(kProject, EventCode::projectFile); // adds, and leaves the status
    event.saveProjectToURL(kProject, true);
    EXPECT_EQ(event.event().parameters.size(), 3U);
    EXPECT_EQ(event.status(), -1);
    event.closeProjectAtURL({}, true); // overwrites it
    EXPECT_EQ(event.status(), 0);
    EXPECT_EQ(event.send(), 0);
}

TEST(Event, SendErrorsStayAndErrorNumbersOfRepliesDoNot)
{
    Peer peer;
    peer.answer = {{FourCC{"errn"}, EventDescriptor::long32(-43)}, {FourCC{"xmlD"}, EventDescriptor::utf8("<a/>")}};
    auto refused = ZANFCPEvent::eventWithType(EventCode::getProjectXML, peer);
    EXPECT_EQ(refused.send(), -43);
    EXPECT_EQ(refused.status(), 0);
    std::optional<std::string> data;
    EXPECT_TRUE(refused.getResultXMLData(data));
    EXPECT_EQ(data, "<a/>");

    peer.status = -609;
    auto broken = ZANFCPEvent::eventWithType(EventCode::getProjectXML, peer);
    EXPECT_EQ(broken.send(), -609);
    EXPECT_EQ(broken.status(), -609);
    EXPECT_FALSE(broken.reply());
}

TEST(Event, FullPlaceForDataIsLeftAlone)
{
    Peer peer;
    peer.answer = {{FourCC{"xmlD"}, EventDescriptor::utf8("<new/>")}};
    auto event = ZANFCPEvent::eventWithType(EventCode::getProjectXML, peer);
    ASSERT_EQ(event.send(), 0);
    std::optional<std::string> data = "old";
    EXPECT_FALSE(event.getResultXMLData(data));
    EXPECT_EQ(data, "old");
    EXPECT_EQ(event.status(), 0);
}

TEST(Event, MissingAndMistypedDocumentsHaveTheirNumbers)
{
    Peer peer;
    for (const auto& [type, expected] : {std::pair{FourCC{"utxt"}, -1700}, std::pair{FourCC{}, -1701}}) {
        if (type == FourCC{})
            peer.answer.clear();
        else
            peer.answer = {{FourCC{"xmlD"}, {type, "<a/>"}}};
        auto event = ZANFCPEvent::eventWithType(EventCode::getProjectXML, peer);
        ASSERT_EQ(event.send(), 0);
        std::optional<std::string> data;
        EXPECT_FALSE(event.getResultXMLData(data));
        EXPECT_EQ(event.status(), expected);
        EXPECT_FALSE(data);
    }
}

TEST(Event, ReturnIDsDiffer)
{
    Peer peer;
    EXPECT_NE(ZANFCPEvent::eventWithType(EventCode::importXML, peer).event().returnID,
              ZANFCPEvent::eventWithType(EventCode::importXML, peer).event().returnID);
}

} // namespace
} // namespace zanfcp
