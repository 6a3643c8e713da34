#include "tests/fcp/HostProcess.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zanfcp {
namespace {

namespace fs = std::filesystem;
using test::document;
using test::HostProcess;

std::size_t count(std::string_view text, std::string_view word)
{
    std::size_t found = 0;
    for (std::size_t at = 0; (at = text.find(word, at)) != std::string_view::npos; at += word.size())
        ++found;
    return found;
}

TEST(ProjectHost, ProjectGoesThroughItsWholeLife)
{
    const HostProcess host;
    const auto client = host.communicator();
    EXPECT_TRUE(client.sendXMLDataToCurrentProject(document("one")));
    EXPECT_EQ(client.currentXMLData(), document("one")) << "the first import comes back as it was";
    EXPECT_TRUE(client.sendXMLDataToCurrentProject(document("two")));
    const auto both = client.currentXMLData();
    ASSERT_TRUE(both);
    EXPECT_LT(both->find("one"), both->find("two"));
    EXPECT_EQ(count(*both, "<xmeml"), 1U);
    EXPECT_FALSE(fs::exists(host.project("Untitled Project 1.xml").path())) << "not saved yet";

    EXPECT_TRUE(client.saveCurrentProjectToURL(host.project("show.xml"), false));
    EXPECT_EQ(test::readFile(host.project("show.xml").path()), *both);
    EXPECT_TRUE(client.sendXMLDataToCurrentProject(document("three")));
    EXPECT_EQ(test::readFile(host.project("show.xml").path()), *both) << "unsaved work is kept elsewhere";
    EXPECT_TRUE(client.closeCurrentProjectAndSave(true));
    EXPECT_NE(test::readFile(host.project("show.xml").path()).find("three"), std::string::npos);
    EXPECT_FALSE(client.currentXMLData());

    EXPECT_TRUE(client.openProjectFile(host.project("show.xml")));
    EXPECT_TRUE(client.sendXMLDataToCurrentProject(document("four")));
    EXPECT_TRUE(client.closeProjectAtURL(host.project("show.xml"), false));
    EXPECT_EQ(test::readFile(host.project("show.xml").path()).find("four"), std::string::npos);
    EXPECT_TRUE(fs::is_empty(host.projects() + "/.zanfcp")) << "nothing is left of closed projects";
}

TEST(ProjectHost, NamedProjectsAreKeptApart)
{
    const HostProcess host;
    fs::create_directory(host.projects() + "/folder 1%");
    const auto client = host.communicator();
    const FileURL first = host.project("first.xml");
    const FileURL inner = host.project("folder 1%/first.xml");
    EXPECT_TRUE(client.sendXMLData(document("one"), first));
    EXPECT_TRUE(client.sendXMLData(document("two"), inner));
    EXPECT_EQ(client.currentXMLData(), document("two"));
    EXPECT_EQ(client.XMLDataOfProjectAtURL(first), document("one"));
    EXPECT_TRUE(client.openProjectFile(first)) << "it is open, though it has no file yet";
    EXPECT_EQ(client.currentXMLData(), document("one"));
    EXPECT_TRUE(client.sendXMLData(document("three"), first));
    EXPECT_EQ(host.send(test::event("sfcP")), 0) << "saves the current project into its own file";
    EXPECT_TRUE(fs::exists(first.path()));
    EXPECT_TRUE(client.closeProjectAtURL(inner, true));
    EXPECT_EQ(test::readFile(inner.path()), document("two"));
    EXPECT_EQ(client.XMLDataOfProjectAtURL(inner), document("two")) << "a closed project can be read";
}

TEST(ProjectHost, EachRefusalHasItsNumberAndOneLine)
{
    const HostProcess host;
    const test::TempFolder outside;
    outside.write("secret.xml", document("secret"));
    fs::create_symlink(outside.path(), host.projects() + "/away");
    fs::create_symlink(outside.file("secret.xml"), host.projects() + "/link.xml");
    fs::create_directory(host.projects() + "/folder");
    for (const char* name : {"there.xml", "other.xml"})
        ASSERT_TRUE(host.communicator().sendXMLData(document("there"), host.project(name)) &&
                    host.send(test::event("sfcP")) == 0);
    ASSERT_TRUE(host.communicator().closeProjectAtURL(host.project("other.xml"), true));
    const auto file = [&](const char* name) { return EventDescriptor::file(host.projects() + "/" + name); };
    const auto project = [&](const char* name) { return EventMessage::Parameter{FourCC{"fcpP"}, file(name)}; };
    const auto raw = [](std::string path) {
        return EventMessage::Parameter{FourCC{"fcpP"}, EventDescriptor::file(std::move(path))};
    };
    const auto target = [&](const char* name) { return EventMessage::Parameter{FourCC{"fcpU"}, file(name)}; };
    const EventMessage::Parameter xml{FourCC{"xmlD"}, EventDescriptor::utf8(document("a"))};
    const EventMessage::Parameter keep{FourCC{"fsOF"}, EventDescriptor::boolean(false)};
    const EventMessage::Parameter replace{FourCC{"fsOF"}, EventDescriptor::boolean(true)};
    const EventMessage::Parameter saving{FourCC{"fcCF"}, EventDescriptor::long64(0)};
    EventMessage stranger = test::event("iXML", {xml});
    stranger.target = EventDescriptor::applicationAddress(FourCC{"KeyX"});
    EventMessage otherClass = test::event("iXML", {xml});
    otherClass.eventClass = FourCC{"aevt"};

    struct Case {
        const char* name;
        EventMessage event;
        OSStatus expected;
    };
    const Case cases[] = {
        {"open what is not there", test::event("ofcP", {project("missing.xml")}), -43},
        {"read what is not there", test::event("eXML", {project("missing.xml")}), -43},
        {"no such folder", test::event("ofcP", {project("missing/a.xml")}), -120},
        {"a folder is no file", test::event("ofcP", {project("folder")}), -50},
        {"upwards", test::event("eXML", {project("../projects/there.xml")}), -54},
        {"upwards inside", test::event("iXML", {project("folder/../../x.xml"), xml}), -54},
        {"outside", test::event("eXML", {raw("/etc/passwd")}), -54},
        {"begins alike", test::event("iXML", {raw(host.projects() + "2/a.xml"), xml}), -54},
        {"linked file", test::event("eXML", {project("link.xml")}), -54},
        {"linked folder", test::event("eXML", {project("away/secret.xml")}), -54},
        {"import through a link", test::event("iXML", {project("link.xml"), xml}), -54},
        {"save through a link", test::event("sfcP", {replace, target("away/new.xml")}), -54},
        {"relative path", test::event("ofcP", {raw("there.xml")}), -50},
        {"the folder itself", test::event("iXML", {raw(host.projects()), xml}), -50},
        {"the folder itself with a slash", test::event("iXML", {raw(host.projects() + "/"), xml}), -50},
        {"NUL in the path", test::event("ofcP", {raw(host.projects() + std::string("/there.xml\0x", 12))}), -50},
        {"hidden name", test::event("iXML", {project(".zanfcp"), xml}), -37},
        {"long name", test::event("iXML", {project(std::string(300, 'n').c_str()), xml}), -37},
        {"exists and is not to be overwritten", test::event("sfcP", {keep, target("other.xml")}), -48},
        {"close what is not open", test::event("cfcP", {saving, project("other.xml")}), -38},
        {"import nothing", test::event("iXML"), -1721},
        {"open nothing", test::event("ofcP"), -1721},
        {"close without the flag", test::event("cfcP"), -1721},
        {"save without the flag", test::event("sfcP", {target("x.xml")}), -1721},
        {"flag of four bytes", test::event("cfcP", {{FourCC{"fcCF"}, EventDescriptor::long32(0)}}), -50},
        {"flag of value 2", test::event("cfcP", {{FourCC{"fcCF"}, EventDescriptor::long64(2)}}), -50},
        {"boolean of two bytes", test::event("sfcP", {{FourCC{"fsOF"}, {FourCC{"bool"}, "\1\1"}}}), -50},
        {"document of another type", test::event("iXML", {{FourCC{"xmlD"}, {FourCC{"utxt"}, "<"}}}), -50},
        {"file of another type", test::event("ofcP", {{FourCC{"fcpP"}, {FourCC{"utf8"}, "/a"}}}), -50},
        {"not well-formed", test::event("iXML", {{FourCC{"xmlD"}, EventDescriptor::utf8("<xmeml version=\"5\">")}}),
         -50},
        {"another root", test::event("iXML", {{FourCC{"xmlD"}, EventDescriptor::utf8("<html/>")}}), -50},
        {"version 4 wanted", test::event("eXML", {{FourCC{"xmlV"}, EventDescriptor::float64(4)}}), -50},
        {"unknown event", test::event("quit"), -1708},
        {"unknown class", otherClass, -1708},
        {"another application", stranger, -1716},
    };
    std::size_t lines = count(host.log(), "\n");
    for (const Case& c : cases) {
        EXPECT_EQ(host.send(c.event), c.expected) << c.name;
        const std::string log = host.log();
        EXPECT_EQ(count(log, "\n"), ++lines) << c.name;
        EXPECT_TRUE(log.ends_with("(" + std::to_string(c.expected) + ")\n")) << c.name << ": " << log;
    }
    EXPECT_EQ(host.communicator().currentXMLData(), document("there")) << "no refusal changed anything";
    EXPECT_EQ(test::readFile(outside.file("secret.xml")), document("secret"));
    EXPECT_TRUE(std::distance(fs::directory_iterator(outside.path()), fs::directory_iterator()) == 1);

    ASSERT_TRUE(host.communicator().closeCurrentProjectAndSave(true));
    for (const EventMessage& event : {test::event("eXML"), test::event("sfcP"), test::event("cfcP", {saving})})
        EXPECT_EQ(host.send(event), -1728) << event.eventID.text();
}

TEST(ProjectHost, ReasonsAreOneLineOfUTF8WhateverThePath)
{
    const HostProcess host;
    const auto outcome = host.channel()->send(
        test::event("ofcP", {{FourCC{"fcpP"}, EventDescriptor::file(host.projects() + "/\xC3\xA4\n\xFF.xml")}}));
    const EventDescriptor* const reason = outcome.reply.find(EventCode::errorString);
    ASSERT_NE(reason, nullptr);
    EXPECT_EQ(reason->bytes, "could not open ????.xml: No such file or directory");
    const auto good = host.channel()->send(
        test::event("ofcP", {{FourCC{"fcpP"}, EventDescriptor::file(host.projects() + "/\xC3\xA4\n.xml")}}));
    EXPECT_EQ(good.reply.find(EventCode::errorString)->bytes,
              "could not open \xC3\xA4?.xml: No such file or directory");
}

TEST(ProjectHost, AProjectWhoseFileIsGoneIsNotSavedInWordsOnly)
{
    const HostProcess host;
    const auto client = host.communicator();
    ASSERT_TRUE(client.sendXMLData(document("one"), host.project("a.xml")));
    ASSERT_EQ(host.send(test::event("sfcP")), 0);
    EXPECT_EQ(host.send(test::event("sfcP")), 0) << "it is saved already";
    fs::remove(host.project("a.xml").path());
    EXPECT_EQ(host.send(test::event("sfcP")), -43);
    EXPECT_TRUE(client.closeCurrentProjectAndSave(false));
}

TEST(ProjectHost, OverwritingNeedsToBeToldAndSparesOpenProjects)
{
    const HostProcess host;
    const auto client = host.communicator();
    ASSERT_TRUE(client.sendXMLData(document("old"), host.project("old.xml")));
    ASSERT_TRUE(client.saveCurrentProjectToURL(host.project("old.xml"), false));
    ASSERT_TRUE(client.sendXMLData(document("new"), host.project("new.xml")));
    const auto saving = [&](bool overwrite) {
        return test::event("sfcP", {{FourCC{"fsOF"}, EventDescriptor::boolean(overwrite)},
                                    {FourCC{"fcpU"}, EventDescriptor::file(host.project("old.xml").path())}});
    };
    EXPECT_EQ(host.send(saving(false)), -48);
    EXPECT_EQ(host.send(saving(true)), -47) << "it is open";
    EXPECT_TRUE(client.closeProjectAtURL(host.project("old.xml"), false));
    EXPECT_EQ(host.send(saving(false)), -48);
    EXPECT_EQ(host.send(saving(true)), 0);
    EXPECT_EQ(test::readFile(host.project("old.xml").path()), document("new"));
    EXPECT_FALSE(fs::exists(host.project("new.xml").path()));
}

TEST(ProjectHost, NeitherStopNorCrashLosesWork)
{
    HostProcess host;
    const auto client = host.communicator();
    ASSERT_TRUE(client.sendXMLData(document("one"), host.project("a.xml")));
    ASSERT_TRUE(client.sendXMLData(document("two"), host.project("b.xml")));
    EXPECT_EQ(host.stop(), 0);
    EXPECT_FALSE(fs::exists(host.socket()));
    EXPECT_FALSE(client.currentXMLData()) << "nobody is there";
    host.start();
    EXPECT_EQ(client.currentXMLData(), document("two"));
    ASSERT_TRUE(client.sendXMLData(document("three"), host.project("a.xml")));
    host.kill();
    EXPECT_TRUE(fs::exists(host.socket())) << "a stale socket";
    host.start();
    const auto after = client.currentXMLData();
    ASSERT_TRUE(after);
    EXPECT_NE(after->find("three"), std::string::npos);
    EXPECT_TRUE(client.closeCurrentProjectAndSave(true));
    EXPECT_EQ(client.currentXMLData(), document("two"));
}

TEST(ProjectHost, SocketIsTheUsersAlone)
{
    const HostProcess host;
    struct stat found {};
    ASSERT_EQ(::stat(host.socket().c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777, 0600U);
    ASSERT_EQ(::stat(fs::path(host.socket()).parent_path().c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777, 0700U);
}

TEST(ProjectHost, SocketGetsItsNameWhenItListens)
{
    const test::TempFolder place;
    fs::create_directory(place.file("projects"));
    const FileDescriptor watch{::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)};
    ASSERT_GE(::inotify_add_watch(watch.value(), place.path().c_str(), IN_CREATE | IN_MOVED_TO), 0);
    ASSERT_TRUE(ZANFCPProjectHost::open({.socketPath = place.file("s"), .projectsFolder = place.file("projects")}));
    alignas(inotify_event) char events[4096];
    const ssize_t size = ::read(watch.value(), events, sizeof events);
    std::uint32_t appeared = 0;
    for (ssize_t at = 0; at < size;) {
        const auto* const event = reinterpret_cast<const inotify_event*>(events + at);
        if (std::string_view(event->name) == "s") appeared |= event->mask;
        at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
    EXPECT_EQ(appeared, IN_MOVED_TO) << "a socket that is bound under its name refuses clients until it listens";
}

TEST(ProjectHost, LiveSocketsAndFoldersAreNotTakenOver)
{
    const HostProcess host;
    const test::TempFolder place;
    fs::create_directory(place.file("projects"));
    const auto fault = [](const std::string& socket, const std::string& projects) {
        const auto opened = ZANFCPProjectHost::open({.socketPath = socket, .projectsFolder = projects});
        return opened ? std::string("opened") : std::string(toString(opened.error().fault));
    };
    EXPECT_EQ(fault(host.socket(), place.file("projects")), "io");
    EXPECT_EQ(fault(place.file("s"), host.projects()), "io");
    EXPECT_TRUE(host.communicator().sendXMLDataToCurrentProject(document("still there")));
    EXPECT_EQ(fault(place.file("s"), place.file("missing")), "notFound");
    EXPECT_EQ(fault(place.file(std::string(200, 's')), place.file("projects")), "limit");
    EXPECT_EQ(fault(place.write("file", "no socket"), place.file("projects")), "io");
    EXPECT_EQ(test::readFile(place.file("file")), "no socket");
    fs::permissions(place.path(), fs::perms::group_exec, fs::perm_options::add);
    EXPECT_EQ(fault(place.file("s"), place.file("projects")), "io") << "others can enter the folder";
    fs::permissions(place.path(), fs::perms::owner_all);
    EXPECT_EQ(fault(place.file("s"), place.file("projects")), "opened");
}

} // namespace
} // namespace zanfcp
