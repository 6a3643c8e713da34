#include "platform/AtomicFile.h"

#include "tests/support/TempFolder.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace zanfcp {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::TempFolder;

std::vector<std::string> namesIn(const fs::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

void writeWhole(const std::string& path, std::string_view text)
{
    auto file = AtomicFile::create(path);
    ASSERT_TRUE(file) << file.error().text();
    ASSERT_TRUE(file->write(text));
    const Status done = file->commit();
    ASSERT_TRUE(done) << done.error().text();
}

mode_t modeOf(const std::string& path)
{
    struct stat info {};
    EXPECT_EQ(::stat(path.c_str(), &info), 0);
    return info.st_mode & 07777U;
}

TEST(AtomicFile, AHeaderIsFilledInAtTheEndButNotInAPipe)
{
    const TempFolder folder;
    auto file = AtomicFile::create(folder.file("a.wav"));
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->write("size????samples"));
    ASSERT_TRUE(file->overwrite(4, "0007"));
    ASSERT_TRUE(file->write("!"));
    ASSERT_TRUE(file->commit());
    EXPECT_EQ(readFile(folder.file("a.wav")), "size0007samples!");

    auto device = AtomicFile::create("/dev/null");
    ASSERT_TRUE(device);
    EXPECT_FALSE(device->canOverwrite());
    EXPECT_FALSE(device->overwrite(0, "x"));
}

TEST(AtomicFile, AppearsOnlyWithCommit)
{
    const TempFolder folder;
    const std::string path = folder.file("show.xml");
    {
        auto file = AtomicFile::create(path);
        ASSERT_TRUE(file);
        ASSERT_TRUE(file->write("half"));
        EXPECT_FALSE(fs::exists(path));
    }
    EXPECT_TRUE(namesIn(folder.path()).empty()) << "nothing stays without commit";

    writeWhole(path, "whole");
    EXPECT_EQ(readFile(path), "whole");
    EXPECT_EQ(namesIn(folder.path()).size(), 1U);
}

TEST(AtomicFile, OldContentStaysWithoutCommit)
{
    const TempFolder folder;
    const std::string path = folder.write("show.xml", "old");
    {
        auto file = AtomicFile::create(path);
        ASSERT_TRUE(file);
        ASSERT_TRUE(file->write("new"));
    }
    EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(namesIn(folder.path()).size(), 1U);
}

bool hasUnnamedFiles(const fs::path& folder)
{
    const FileDescriptor probe{::open(folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600)};
    return bool(probe);
}

/// The names that come up in `folder` while `act` runs.
template <typename Act> std::vector<std::string> namesDuring(const fs::path& folder, Act act)
{
    const FileDescriptor watch{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
    EXPECT_GE(::inotify_add_watch(watch.value(), folder.c_str(), IN_CREATE | IN_MOVED_TO), 0);
    act();
    alignas(inotify_event) char events[4096];
    const ssize_t size = ::read(watch.value(), events, sizeof events);
    std::vector<std::string> names;
    for (ssize_t at = 0; at < size;) {
        const auto* event = reinterpret_cast<const inotify_event*>(events + at);
        names.emplace_back(event->name);
        at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
    return names;
}

TEST(AtomicFile, NewFileNeverHasAnotherNameThatAKilledProgramCouldLeave)
{
    const TempFolder folder;
    if (!hasUnnamedFiles(folder.path())) GTEST_SKIP() << "this file system has no files without a name";
    const std::string path = folder.file("show.xml");
    EXPECT_EQ(namesDuring(folder.path(), [&] { writeWhole(path, "new"); }), std::vector<std::string>{"show.xml"});
    EXPECT_EQ(namesDuring(folder.path(), [&] { writeWhole(path, "newer"); }).back(), "show.xml");
    EXPECT_EQ(readFile(path), "newer");
}

TEST(AtomicFile, OnlyWhatAKilledWriterOfTheSameTargetLeftIsRemoved)
{
    const TempFolder folder;
    if (!hasUnnamedFiles(folder.path())) GTEST_SKIP() << "this file system has no files without a name";
    const std::string path = folder.file("show.xml");
    for (const char* name : {".show.xml.12-0.tmp", ".show.xml.4194304-17.tmp"})
        folder.write(name, "whole");
    std::vector<std::string> kept{"show.xml"};
    for (const char* name : {".show.xml.12-1.tmp~", ".show.xml.12-1.part", ".show.xml.tmp", ".show.xml.12.tmp",
                             ".show.xml.-1.tmp", ".show.xml.12-.tmp", ".show.xml.1-2-3.tmp", ".show.xml.a-1.tmp",
                             ".show.xmlx.12-1.tmp", ".how.xml.12-1.tmp", "show.xml.12-1.tmp", ".show.xml.12-2.tmp"})
        kept.push_back(fs::path(folder.write(name, "another's")).filename().string());
    const FileDescriptor writer{::open(folder.file(".show.xml.12-2.tmp").c_str(), O_WRONLY | O_CLOEXEC)};
    ASSERT_EQ(::flock(writer.value(), LOCK_EX), 0) << "its writer is there still";
    fs::create_symlink(folder.file(".show.xml.12-1.part"), folder.file(".show.xml.12-3.tmp"));
    fs::create_directory(folder.file(".show.xml.12-4.tmp"));
    fs::create_hard_link(folder.file(".show.xml.12-1.part"), folder.file(".show.xml.12-5.tmp"));
    ASSERT_EQ(::mkfifo(folder.file(".show.xml.12-6.tmp").c_str(), 0600), 0);
    for (const char* name : {".show.xml.12-3.tmp", ".show.xml.12-4.tmp", ".show.xml.12-5.tmp", ".show.xml.12-6.tmp"})
        kept.emplace_back(name);

    for (const char* round : {"a new file", "a replacement"}) {
        folder.write(".show.xml.99-9.tmp", "whole");
        writeWhole(path, round);
        EXPECT_THAT(namesIn(folder.path()), testing::UnorderedElementsAreArray(kept)) << round;
    }
}

TEST(AtomicFile, WritersOfOneTargetDoNotRemoveEachOthersFiles)
{
    const TempFolder folder;
    const std::string path = folder.write("show.xml", "old");
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 4; ++writer)
        writers.emplace_back([&path] {
            for (int round = 0; round < 100; ++round)
                writeWhole(path, "new");
        });
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"show.xml"});
}

TEST(AtomicFile, SignalsAreOnlyHeldDuringCommit)
{
    const TempFolder folder;
    sigset_t before, after;
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, nullptr, &before), 0);
    writeWhole(folder.file("a"), "new");
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, nullptr, &after), 0);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        EXPECT_EQ(::sigismember(&after, number), ::sigismember(&before, number)) << number;
}

TEST(AtomicFile, MovedFileIsFinishedOnce)
{
    const TempFolder folder;
    auto first = AtomicFile::create(folder.file("a"));
    ASSERT_TRUE(first);
    {
        AtomicFile second = std::move(*first);
        ASSERT_TRUE(second.write("x"));
        ASSERT_TRUE(second.commit());
    }
    EXPECT_EQ(readFile(folder.file("a")), "x");
}

TEST(AtomicFile, ModeOfTheReplacedFileIsKept)
{
    const TempFolder folder;
    const std::string path = folder.write("show.xml", "old");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    writeWhole(path, "new");
    EXPECT_EQ(modeOf(path), 0640U);

    const mode_t before = ::umask(027);
    writeWhole(folder.file("fresh.xml"), "new");
    ::umask(before);
    EXPECT_EQ(modeOf(folder.file("fresh.xml")), 0640U) << "a new one follows the umask";
}

TEST(AtomicFile, SymbolicLinksAreFollowed)
{
    const TempFolder folder;
    const std::string target = folder.write("store/show.xml", "old");
    fs::create_symlink("store/show.xml", folder.path() / "link");
    fs::create_symlink("link", folder.path() / "link to link");
    fs::create_symlink("store/later.xml", folder.path() / "dangling");
    for (const char* name : {"link", "link to link"}) {
        writeWhole(folder.file(name), name);
        EXPECT_EQ(readFile(target), name);
        EXPECT_TRUE(fs::is_symlink(folder.path() / name));
    }
    writeWhole(folder.file("dangling"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path() / "dangling"));
    EXPECT_EQ(readFile(folder.file("store/later.xml")), "new");

    fs::create_symlink("circle", folder.path() / "circle");
    EXPECT_FALSE(AtomicFile::create(folder.file("circle")));
}

TEST(AtomicFile, LinksThatAreToBeRefusedAreNeverFollowed)
{
    const TempFolder folder;
    fs::create_symlink(folder.write("outside", "old"), folder.path() / "link");
    fs::create_symlink(folder.file("nowhere"), folder.path() / "dangling");
    for (const char* name : {"link", "dangling"})
        EXPECT_FALSE(AtomicFile::create(folder.file(name), AtomicFile::Others::refuse)) << name;
    auto file = AtomicFile::create(folder.file("late"), AtomicFile::Others::refuse);
    ASSERT_TRUE(file);
    fs::create_symlink(folder.file("outside"), folder.path() / "late");
    ASSERT_TRUE(file->write("new"));
    ASSERT_TRUE(file->commit());
    EXPECT_FALSE(fs::is_symlink(folder.path() / "late"));
    EXPECT_EQ(readFile(folder.file("outside")), "old");
}

TEST(AtomicFile, LongNamesLeaveRoomForTheTemporaryOne)
{
    const TempFolder folder;
    const std::string path = folder.file(std::string(255, 'n'));
    writeWhole(path, "x");
    EXPECT_EQ(readFile(path), "x");
}

TEST(AtomicFile, DevicesAndPipesAreWrittenInPlace)
{
    writeWhole("/dev/null", "gone");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));

    const TempFolder folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string received;
    std::thread reader([&] { received = readFile(pipe); });
    writeWhole(pipe, "through the pipe");
    reader.join();
    EXPECT_EQ(received, "through the pipe");
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST(AtomicFile, SaysWhyItCannotBeMade)
{
    const TempFolder folder;
    const std::string file = folder.write("file", "x");
    struct Case {
        std::string path;
        Fault fault;
    };
    const Case cases[] = {{folder.file("no/such/folder.xml"), Fault::notFound},
                          {file + "/below.xml", Fault::notFound},
                          {folder.path().string(), Fault::io},
                          {"", Fault::notFound}};
    for (const Case& c : cases) {
        const auto made = AtomicFile::create(c.path);
        ASSERT_FALSE(made) << c.path;
        EXPECT_EQ(made.error().fault, c.fault) << c.path;
        EXPECT_NE(made.error().what.find(c.path), std::string::npos);
    }
}

TEST(AtomicFile, ReadOnlyPlacesRefuse)
{
    const TempFolder folder;
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    const std::string file = folder.write("file", "old");
    ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    // The superuser may write anywhere: another process, of another user, tries.
    const auto refused = [](const std::string& path) {
        if (::getuid() == 0 && ::setuid(65534) != 0) ::_exit(2);
        const auto made = AtomicFile::create(path);
        ::_exit(made ? 1 : made.error().fault == Fault::io ? 0 : 3);
    };
    EXPECT_EXIT(refused(file), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(refused(folder.file("new")), testing::ExitedWithCode(0), "");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    EXPECT_EXIT(refused(file), testing::ExitedWithCode(0), "") << "a file that forbids writing is not replaced";
    EXPECT_EQ(readFile(file), "old");
}

TEST(AtomicFile, FullDeviceIsAnError)
{
    auto file = AtomicFile::create("/dev/full");
    ASSERT_TRUE(file);
    const Status written = file->write("x");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().fault, Fault::limit);
}

} // namespace
} // namespace zanfcp
