#include "platform/FileURL.h"

#include "tests/support/TempFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace zanfcp {
namespace {

namespace fs = std::filesystem;

TEST(FileURL, EscapesWhatAPathSegmentCannotHold)
{
    struct Case {
        const char* path;
        const char* url;
    };
    const Case cases[] = {
        {"/a b.mov", "file:///a%20b.mov"},
        {"/M\xC3\xBCll.mov", "file:///M%C3%BCll.mov"},   // composed
        {"/Mu\xCC\x88ll.mov", "file:///Mu%CC%88ll.mov"}, // decomposed
        {"/a#b?c%d;e", "file:///a%23b%3Fc%25d%3Be"},
        {"/100%25.mov", "file:///100%2525.mov"}, // looks escaped, is not
        {"/\xF0\x9F\x8E\xAC.mov", "file:///%F0%9F%8E%AC.mov"},
        {"/\xFF\xC3.mov", "file:///%FF%C3.mov"}, // no UTF-8
        {"/[a]{b}|\\^`\"<>", "file:///%5Ba%5D%7Bb%7D%7C%5C%5E%60%22%3C%3E"},
        {"/new\nline\x7F", "file:///new%0Aline%7F"},
        {"/-._~!$&'()*+,=:@", "file:///-._~!$&'()*+,=:@"},
        {"/", "file:///"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        const FileURL url = FileURL::fileURLWithPath(c.path);
        EXPECT_EQ(url.absoluteString(), c.url);
        EXPECT_EQ(url.path(), c.path);
        EXPECT_EQ(FileURL::fileURLWithString(c.url), url) << "and back";
    }
}

TEST(FileURL, EmptyPathHasNoText)
{
    const FileURL url = FileURL::fileURLWithPath("");
    EXPECT_TRUE(url.empty());
    EXPECT_EQ(url.absoluteString(), "");
    EXPECT_EQ(url.lastPathComponent(), "");
}

TEST(FileURL, PathsAreMadeAbsoluteAndClean)
{
    const std::string here = fs::current_path().string();
    EXPECT_EQ(FileURL::fileURLWithPath("a/b.mov").path(), here + "/a/b.mov");
    EXPECT_EQ(FileURL::fileURLWithPath("./a.mov").path(), here + "/a.mov");
    EXPECT_EQ(FileURL::fileURLWithPath("/a//b/./c.mov").path(), "/a/b/c.mov");
    EXPECT_EQ(FileURL::fileURLWithPath("//a/").path(), "/a");
    EXPECT_EQ(FileURL::fileURLWithPath("/../../a").path(), "/a");
    EXPECT_EQ(FileURL::fileURLWithPath("/no/such/../folder").path(), "/no/folder");
    EXPECT_EQ(FileURL::fileURLWithPath("..").path(), fs::path(here).parent_path().string());
}

TEST(FileURL, ParentOfALinkedFolderIsThatOfItsTarget)
{
    const test::TempFolder folder;
    fs::create_directories(folder.path() / "real/inner");
    fs::create_directory_symlink(folder.path() / "real/inner", folder.path() / "link");
    const fs::path root = fs::canonical(folder.path());
    EXPECT_EQ(FileURL::fileURLWithPath((root / "link/../a.mov").string()).path(), (root / "real/a.mov").string());
    EXPECT_EQ(FileURL::fileURLWithPath((root / "link/a.mov").string()).path(), (root / "link/a.mov").string())
        << "a link that is only passed through stays";
}

TEST(FileURL, ReadsOnlyLocalFileURLs)
{
    struct Case {
        const char* text;
        std::optional<std::string> path;
    };
    const Case cases[] = {
        {"file:///a%20b", "/a b"},
        {"file://localhost/a", "/a"},
        {"file:///a%c3%bC", "/a\xC3\xBC"},
        {"file:///a?query#part", "/a"},
        {"file:///a#part", "/a"},
        {"file:///", "/"},
        {"file://server/a", std::nullopt},
        {"http:///a", std::nullopt},
        {"file:a", std::nullopt},
        {"file://", std::nullopt},
        {"/a", std::nullopt},
        {"", std::nullopt},
        {"file:///a%2", std::nullopt},
        {"file:///a%", std::nullopt},
        {"file:///a%zz", std::nullopt},
        {"file:///a%00b", std::nullopt},
        {"file://localhost", std::nullopt},
    };
    for (const Case& c : cases) {
        const auto url = FileURL::fileURLWithString(c.text);
        EXPECT_EQ(url ? std::optional{url->path()} : std::nullopt, c.path) << c.text;
    }
}

TEST(FileURL, NameAndExtension)
{
    struct Case {
        const char* path;
        const char* name;
        const char* extension;
    };
    const Case cases[] = {{"/a/b.mov", "b.mov", "mov"}, {"/a/b.tar.gz", "b.tar.gz", "gz"},
                          {"/a/.mov", ".mov", ""},      {"/a.b/c", "c", ""},
                          {"/a/b.", "b.", ""},          {"/", "/", ""}};
    for (const Case& c : cases) {
        const FileURL url = FileURL::fileURLWithPath(c.path);
        EXPECT_EQ(url.lastPathComponent(), c.name);
        EXPECT_EQ(url.pathExtension(), c.extension) << c.path;
    }
    EXPECT_EQ(FileURL::fileURLWithString("file:///a/b.mov/")->lastPathComponent(), "b.mov");
}

} // namespace
} // namespace zanfcp
