#include "mxf/klv/Klv.h"

#include "tests/support/MemorySource.h"
#include "tests/support/MxfBuilder.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using zanfcp::test::MemorySource;

/// A picture key, these length bytes, and `valueSize` bytes counting up from 1.
Bytes klvWith(std::initializer_list<std::uint8_t> lengthField, std::size_t valueSize)
{
    Bytes bytes = kPictureKey;
    bytes.insert(bytes.end(), lengthField);
    for (std::size_t i = 0; i < valueSize; ++i)
        bytes.push_back(static_cast<std::uint8_t>(i + 1));
    return bytes;
}

struct LengthCase {
    const char* name;
    std::initializer_list<std::uint8_t> lengthField;
    std::size_t valueSize; ///< bytes behind the length field
    std::int64_t length;
    std::int64_t totalSize;
};

const LengthCase kLengths[] = {
    {"short form", {0x14}, 20, 20, 37},
    {"short form, longest", {0x7F}, 127, 127, 144},
    {"no value", {0x00}, 40, 0, 17},
    {"indefinite", {0x80}, 40, -1, -1},
    {"one byte", {0x81, 0x20}, 32, 32, 50},
    {"three bytes", {0x83, 0x00, 0x01, 0x02}, 258, 258, 278},
    {"eight bytes", {0x88, 0, 0, 0, 0, 0, 0, 0, 30}, 30, 30, 55},
    {"fifteen bytes, the most that are read", {0x8F, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 30}, 30, 30, 62},
    {"count from the low four bits, field size from seven",
     {0x91, 20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
     20,
     20,
     54},
};

TEST(Klv, ReadsEveryFormOfTheLength)
{
    for (const LengthCase& c : kLengths) {
        SCOPED_TRACE(c.name);
        Bytes bytes = klvWith(c.lengthField, c.valueSize);
        const std::size_t valueAt = 16 + c.lengthField.size();
        bytes.insert(bytes.begin(), 5, 0xAA);
        MemorySource source{bytes};
        source.Seek(5);
        CKlv klv;
        ASSERT_EQ(klv.LoadFrom(&source), kSuccess);
        EXPECT_EQ(klv.Key(), SUl::From(kPictureKey.data()));
        EXPECT_EQ(klv.Length(), c.length);
        EXPECT_EQ(klv.TotalSize(), c.totalSize);
        EXPECT_TRUE(klv.IsOwned());
        const auto valueSize = static_cast<std::size_t>(std::max<std::int64_t>(c.length, 0));
        EXPECT_EQ(Bytes(klv.Value().begin(), klv.Value().end()),
                  Bytes(bytes.begin() + 5 + static_cast<std::ptrdiff_t>(valueAt),
                        bytes.begin() + 5 + static_cast<std::ptrdiff_t>(valueAt + valueSize)));
        EXPECT_EQ(source.GetPos(), static_cast<std::int64_t>(5 + valueAt + valueSize));
    }
}

TEST(Klv, RefusesWhatIsNoWholeKlvAndIsEmptyAfterwards)
{
    const Bytes valid = klvWith({0x14}, 20);
    Bytes noKey = valid;
    noKey[3] = 0x35;
    struct Case {
        const char* name;
        Bytes bytes;
        std::int64_t from;
        int status;
    };
    const Case cases[] = {
        {"31 bytes, though the value is whole", klvWith({0x0E}, 14), 0, kCutShort},
        {"nothing", {}, 0, kCutShort},
        {"past the end", valid, 100, kCutShort},
        {"no key", noKey, 0, kNotAKey},
        {"value one byte short", klvWith({0x15}, 20), 0, kCutShort},
        {"four gigabytes that are not there", klvWith({0x84, 0xFF, 0xFF, 0xFF, 0xFF}, 20), 0, kCutShort},
        {"largest length of 63 bits", klvWith({0x88, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 20), 0,
         kCutShort},
        {"length above 63 bits", klvWith({0x88, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 20), 0, kCutShort},
        {"length that wraps around 64 bits", klvWith({0x89, 1, 0, 0, 0, 0, 0, 0, 0, 20}, 20), 0, kCutShort},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MemorySource source{valid};
        CKlv klv;
        ASSERT_EQ(klv.LoadFrom(&source), kSuccess); // so that there is something to forget
        source.bytes = c.bytes;
        source.place = c.from;
        EXPECT_EQ(klv.LoadFrom(&source), c.status);
        EXPECT_TRUE(klv.IsEmpty());
        EXPECT_FALSE(klv.IsOwned());
        EXPECT_TRUE(klv.Value().empty());
        EXPECT_EQ(klv.Length(), 0);
        EXPECT_EQ(klv.TotalSize(), 0);
    }
    CKlv klv;
    EXPECT_EQ(klv.LoadFrom(nullptr), kNullArgument);
}

TEST(Klv, SourceOfUnknownSizeIsReadInStepsUpToALimit)
{
    struct Case {
        const char* name;
        Bytes bytes;
        int status;
        int reads;
    };
    const Case cases[] = {
        {"two and a half steps", klvWith({0x83, 0x28, 0, 0}, 0x280000), kSuccess, 1 + 3},
        {"200 MiB that are not there", klvWith({0x84, 0x0C, 0x80, 0, 0}, 20), kCutShort, 1 + 1},
        {"above the limit", klvWith({0x84, 0x10, 0, 0, 1}, 20), kFailed, 1},
        {"largest length", klvWith({0x88, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 20), kFailed, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MemorySource source{c.bytes};
        source.knowsSize = false;
        CKlv klv;
        EXPECT_EQ(klv.LoadFrom(&source), c.status);
        EXPECT_EQ(source.reads, c.reads);
        EXPECT_EQ(klv.Value().size(), c.status == kSuccess ? 0x280000u : 0u);
    }
}

TEST(Klv, SourceFailuresAreACutKlv)
{
    CKlv klv;
    MemorySource source{klvWith({0x14}, 20)};
    source.seekError = 3;
    EXPECT_EQ(klv.LoadFrom(&source), kCutShort);
    source.seekError = 0;
    source.readError = -1;
    EXPECT_EQ(klv.LoadFrom(&source), kCutShort);
    source.readError = 0;
    source.place = -1;
    EXPECT_EQ(klv.LoadFrom(&source), kCutShort) << "position unknown";
}

TEST(Klv, ViewEqualsWhatIsLoaded)
{
    for (const LengthCase& c : kLengths) {
        SCOPED_TRACE(c.name);
        const Bytes bytes = klvWith(c.lengthField, c.valueSize);
        CKlv view;
        ASSERT_EQ(view.View(bytes), kSuccess);
        EXPECT_EQ(view.Length(), c.length);
        EXPECT_EQ(view.TotalSize(), c.totalSize);
        EXPECT_FALSE(view.IsOwned());
        if (c.length <= 0) continue;
        EXPECT_EQ(view.Value().data(), bytes.data() + bytes.size() - c.valueSize);
        for (std::size_t size = 0; size < bytes.size(); ++size) // cut anywhere
            EXPECT_EQ(view.View(std::span{bytes}.first(size)), kCutShort) << size;
        EXPECT_TRUE(view.IsEmpty());
    }
}

TEST(Klv, MovedValueStaysReadable)
{
    MemorySource source{klvWith({0x14}, 20)};
    CKlv first;
    ASSERT_EQ(first.LoadFrom(&source), kSuccess);
    CKlv second = std::move(first);
    EXPECT_EQ(second.Value().size(), 20u);
    EXPECT_EQ(second.Value()[19], 20);
    EXPECT_TRUE(second.IsOwned());
    EXPECT_TRUE(first.IsEmpty()); // NOLINT(bugprone-use-after-move): that is what is tested
}

} // namespace
