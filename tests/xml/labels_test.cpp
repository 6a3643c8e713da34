#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"
#include "xml/Horspool.h"
#include "xml/LabelFile.h"
#include "xml/Labels.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace zanfcp {
namespace {

using test::LogCapture;
using test::TempFolder;
using testing::ElementsAre;
using testing::IsEmpty;

const char* const kFallBackLine = "Could not load FCP 7 Label strings, using english default values: "
                                  "(\"Good Take\", \"Best Take\", \"Alternate Shots\", \"Interviews\", \"B Roll\")";

/// One key with its name behind it, and bytes after the name as preferences have them.
std::string entry(const std::string& key, const std::string& name)
{
    return key + std::string(16 - key.size(), '\x01') + name + std::string("\0\xFF\x02", 3);
}

std::string preferences(const LabelNames& names)
{
    std::string bytes = std::string("\0\0FCP\0label0", 12);
    for (std::size_t i = 0; i < names.size(); ++i)
        bytes += entry("label" + std::to_string(i + 1), names[i]);
    return bytes + "trailer";
}

const LabelNames kOwnNames = {"Gut", "Ver\xC3\xA4ndert", "", "\xF0\x9F\x8E\xAC", "Rest"};

std::string replaced(std::string bytes, const std::string& part, const std::string& by)
{
    return bytes.replace(bytes.find(part), part.size(), by);
}

TEST(Horspool, FindsWhatTheStandardSearchFinds)
{
    std::mt19937 random{7};
    auto text = [&](std::size_t length) {
        std::string made;
        while (made.size() < length)
            made += static_cast<char>("ab\xFF"[random() % 3]);
        return made;
    };
    for (int i = 0; i < 20000; ++i) {
        const std::string haystack = text(random() % 40);
        const std::string needle = text(1 + random() % 5);
        ASSERT_EQ(horspoolSearch(haystack, needle).value_or(std::string::npos), haystack.find(needle))
            << haystack << " / " << needle;
    }
    EXPECT_EQ(horspoolSearch("text", ""), std::nullopt);
    EXPECT_EQ(horspoolSearch("", ""), std::nullopt);
}

TEST(LabelFile, GivesAllFiveNames)
{
    const auto names = parseLabelNames(preferences(kOwnNames));
    ASSERT_TRUE(names) << names.error().text();
    EXPECT_EQ(*names, kOwnNames);
}

TEST(LabelFile, SeeksTheNextKeyFromTheNameOn)
{
    const std::string gap(10, '.');
    const auto names = parseLabelNames("label1" + gap + "label2" + gap + "label3" + gap + "label4" + gap + "label5" +
                                       gap + std::string("end\0", 4));
    ASSERT_TRUE(names);
    EXPECT_EQ(names->back(), "end");
    EXPECT_EQ(names->front(), "label2" + gap + "label3" + gap + "label4" + gap + "label5" + gap + "end");
}

TEST(LabelFile, ReportsEachFault)
{
    const std::string valid = preferences(kOwnNames);
    ASSERT_TRUE(parseLabelNames(valid)); // so each edit below is the only fault
    const std::size_t lastName = valid.find("Rest");
    const std::string longest(kMaxLabelBytes, 'x');
    ASSERT_TRUE(parseLabelNames(replaced(valid, "Gut", longest)));

    const struct {
        const char* name;
        std::string bytes;
        Fault expected;
    } cases[] = {
        {"empty", "", Fault::notFound},
        {"third key missing", replaced(valid, "label3", "lable3"), Fault::notFound},
        {"keys out of order", replaced(replaced(valid, "label4", "label6"), "label3", "label4"), Fault::notFound},
        {"ends at the last key", valid.substr(0, valid.find("label5") + 6), Fault::truncated},
        {"ends before the last name", valid.substr(0, lastName), Fault::truncated},
        {"ends inside the last name", valid.substr(0, lastName + 2), Fault::truncated},
        {"ends before the last NUL", valid.substr(0, lastName + 4), Fault::truncated},
        {"too long", replaced(valid, "Gut", longest + "x"), Fault::limit},
        {"lone tail byte", replaced(valid, "Gut", "G\x80t"), Fault::malformed},
        {"cut sequence", replaced(valid, "Gut", "Gu\xC3"), Fault::malformed},
        {"overlong slash", replaced(valid, "Gut", "\xE0\x80\xAF"), Fault::malformed},
        {"surrogate", replaced(valid, "Gut", "\xED\xA0\x80"), Fault::malformed},
        {"above U+10FFFF", replaced(valid, "Gut", "\xF4\x90\x80\x80"), Fault::malformed},
        {"no UTF-8 lead", replaced(valid, "Gut", "\xFFut"), Fault::malformed},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto names = parseLabelNames(c.bytes);
        ASSERT_FALSE(names);
        EXPECT_EQ(names.error().fault, c.expected);
    }
}

TEST(LabelFile, ReadsRegularFilesOnly)
{
    const TempFolder folder;
    const std::string fifo = folder.file("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const std::string huge = folder.write("huge", preferences(kOwnNames));
    std::filesystem::resize_file(huge, kMaxLabelFileBytes + 1); // sparse
    const std::string full = folder.write("full", preferences(kOwnNames));
    std::filesystem::resize_file(full, kMaxLabelFileBytes);
    ASSERT_TRUE(readLabelFile(full));

    const struct {
        std::string path;
        Fault expected;
    } cases[] = {
        {folder.path().string(), Fault::unsupported},
        {fifo, Fault::unsupported},
        {"/dev/zero", Fault::unsupported},
        {huge, Fault::limit},
        {folder.file("missing"), Fault::notFound},
        {full + "/below", Fault::notFound},
        {"", Fault::notFound},
        {folder.write("empty", ""), Fault::notFound},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const auto names = readLabelFile(c.path);
        ASSERT_FALSE(names);
        EXPECT_EQ(names.error().fault, c.expected);
    }
}

class Labels : public testing::Test {
protected:
    ~Labels() override { setLabelPreferencesPath(std::nullopt); }

    std::vector<std::optional<std::string>> allNames() const
    {
        std::vector<std::optional<std::string>> names;
        for (std::uint32_t index = 0; index <= 5; ++index)
            names.push_back(PELLabelForColor(index));
        return names;
    }

    TempFolder folder;
    LogCapture log;
};

TEST_F(Labels, ComeFromTheFileOnceForTheWholeProcess)
{
    const std::string path = folder.write("prefs", preferences(kOwnNames));
    setLabelPreferencesPath(path);
    EXPECT_TRUE(PELInitializeFCPLabelStrings());
    std::filesystem::remove(path);
    EXPECT_TRUE(PELInitializeFCPLabelStrings());
    EXPECT_THAT(allNames(), ElementsAre("", kOwnNames[0], kOwnNames[1], "", kOwnNames[3], kOwnNames[4]));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Labels, AreEnglishWithOneLineWhereTheFileDoesNotGiveAllFive)
{
    const std::string path = folder.write("prefs", replaced(preferences(kOwnNames), "label3", "lable3"));
    for (const std::string& place : {path, folder.file("missing")}) {
        SCOPED_TRACE(place);
        log.clear();
        setLabelPreferencesPath(place);
        EXPECT_FALSE(PELInitializeFCPLabelStrings());
        EXPECT_THAT(log.lines(), IsEmpty());
        EXPECT_THAT(allNames(), ElementsAre("", "Good Take", "Best Take", "Alternate Shots", "Interviews", "B Roll"));
        EXPECT_THAT(log.texts(LogLevel::normal), ElementsAre(kFallBackLine));
        EXPECT_THAT(log.errors(), IsEmpty());
    }
}

TEST_F(Labels, StayEnglishOnceFallenBackTo)
{
    const std::string path = folder.file("prefs");
    setLabelPreferencesPath(path);
    EXPECT_EQ(PELLabelForColor(1), "Good Take");
    folder.write("prefs", preferences(kOwnNames));
    EXPECT_TRUE(PELInitializeFCPLabelStrings());
    EXPECT_EQ(PELLabelForColor(1), "Good Take");
}

TEST_F(Labels, AreTriedAgainAfterAFailedLoad)
{
    setLabelPreferencesPath(folder.file("prefs"));
    EXPECT_FALSE(PELInitializeFCPLabelStrings());
    folder.write("prefs", preferences(kOwnNames));
    EXPECT_TRUE(PELInitializeFCPLabelStrings());
    EXPECT_EQ(PELLabelForColor(1), "Gut");
}

TEST_F(Labels, OfColoursThatDoNotExistAreErrors)
{
    setLabelPreferencesPath(folder.write("prefs", preferences(kOwnNames)));
    EXPECT_EQ(PELLabelForColor(6), std::nullopt);
    EXPECT_EQ(PELLabelForColor(0xFFFFFFFFU), std::nullopt);
    EXPECT_THAT(log.errors(), ElementsAre("Invalid color index: 6", "Invalid color index: -1"));
}

TEST_F(Labels, AreSoughtInTheUsersPreferencesAtFirst)
{
    setLabelPreferencesPath(std::nullopt);
    const passwd* user = ::getpwuid(::geteuid());
    const std::string expected =
        user == nullptr
            ? ""
            : std::string(user->pw_dir) + "/Library/Preferences/Final Cut Pro User Data/Final Cut Pro 7.0 Prefs.fcset";
    EXPECT_EQ(labelPreferencesPath(), expected);
}

} // namespace
} // namespace zanfcp
