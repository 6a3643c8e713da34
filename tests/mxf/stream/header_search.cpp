#include "mxf/stream/HeaderSearch.h"
#include "tests/mxf/stream/PushFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace TamrelMxf::test {
namespace {

const CMxfUlDict kNoLabels;

struct Expected {
    std::size_t consumed;
    bool found = false;
    std::int64_t headerSize = 0;
    bool damaged = false;
};

void expectSearch(const Bytes& slice, const Expected& expected)
{
    const Bytes tight(slice); // its end is the end of the allocation
    const SHeaderSearch search = SearchHeader(tight, kNoLabels);
    EXPECT_EQ(search.consumed, expected.consumed);
    EXPECT_EQ(search.isFound, expected.found);
    EXPECT_EQ(search.isDamaged, expected.damaged);
    EXPECT_EQ(search.headerSize, expected.headerSize);
    EXPECT_EQ(search.pack != nullptr, expected.found);
    if (search.pack) {
        EXPECT_EQ(search.pack->extent.position, static_cast<std::int64_t>(search.consumed));
    }
}

Bytes klvWithLength(const Bytes& lengthField, std::size_t valueSize)
{
    Bytes bytes = kPictureKey;
    putBytes(bytes, lengthField);
    bytes.resize(bytes.size() + valueSize);
    return bytes;
}

TEST(HeaderSearch, LeavesTheTailWhereAKeyMayBegin)
{
    for (const std::size_t size : {0U, 1U, 23U, 24U, 25U, 26U, 5000U}) {
        SCOPED_TRACE(size);
        expectSearch(Bytes(size, 0x55), {size > 24 ? size - 24 : 0});
    }
}

TEST(HeaderSearch, LengthsOfEveryFormAreRead)
{
    const Bytes large = {0x84, 0, 0x10, 0, 0};
    struct Case {
        const char* name;
        Bytes length;
        std::size_t value; ///< bytes that are there
        bool fits;
        bool isLarge = false;
    };
    const Case cases[] = {
        {"short form", {10}, 10, true},
        {"short form, one byte missing", {10}, 9, false},
        {"the longest short form", {0x7F}, 0x7F, true},
        {"three bytes", {0x83, 0, 1, 0}, 256, true},
        {"three bytes, one byte missing", {0x83, 0, 1, 0}, 255, false},
        {"no length bytes: no value", {0x80}, 8, true},
        {"16 length bytes, of which none is read", {0x90}, 16, true},
        {"the count of 16 goes into the size", {0x90}, 15, false},
        {"17 length bytes, of which the first is read", {0x91, 4}, 20, true},
        {"17 length bytes, one byte missing", {0x91, 4}, 19, false},
        {"15 length bytes that are not there", {0x8F}, 8, false},
        {"the largest that is waited for", {0x83, 0x0F, 0xFF, 0xEC}, 10, false},
        {"the smallest that is not", {0x83, 0x0F, 0xFF, 0xED}, 10, false, true},
        {"8 length bytes", {0x88, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 10, false, true},
        {"more than 64 bits", {0x89, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, 10, false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Bytes slice(3, 0x55);
        putBytes(slice, klvWithLength(c.length, c.value));
        const std::size_t stop = c.isLarge ? 3 + 16 : 3;
        expectSearch(slice, {c.fits ? slice.size() - 24 : stop});
    }
}

TEST(HeaderSearch, OnlyKeysOfKnownCategoriesAreWaitedFor)
{
    struct Case {
        std::uint8_t category, registry;
        bool isKey;
    };
    for (const Case& c : {Case{1, 1, true}, Case{4, 5, true}, Case{0, 1, false}, Case{5, 1, false}, Case{1, 0, false},
                          Case{1, 6, false}, Case{2, 0x53, false}}) {
        Bytes slice = klvWithLength({0x82, 1, 0}, 100); // 156 bytes are missing
        slice[4] = c.category;
        slice[5] = c.registry;
        expectSearch(slice, {c.isKey ? 0 : slice.size() - 24});
    }
}

TEST(HeaderSearch, FindsPartitionsThatCarryMetadata)
{
    struct Case {
        const char* name;
        std::uint8_t kind;
        std::uint32_t kag;
        std::uint64_t metadata, index;
        bool found;
        std::int64_t size;
        std::uint8_t status = 4;
    };
    constexpr std::int64_t kEndless = std::numeric_limits<std::int64_t>::max();
    const Case cases[] = {
        {"header", 2, 0, 1000, 200, true, 108 + 1200},
        {"header without metadata", 2, 1, 0, 0, true, 108},
        {"aligned", 2, 512, 1000, 0, true, 512 + 1000},
        {"aligned by two", 2, 2, 1000, 0, true, 108 + 1000},
        {"pack longer than a line of the grid", 2, 100, 1000, 0, true, 200 + 1000},
        {"body with metadata", 3, 0, 1, 0, true, 109},
        {"body with an index table only", 3, 0, 0, 100, false, 0},
        {"generic stream", 3, 0, 0, 0, false, 0, 0x11},
        {"footer", 4, 0, 1000, 0, false, 0},
        {"count without end", 2, 0, ~std::uint64_t{0}, 0, true, kEndless},
        {"counts that add up to more than 63 bits", 2, 0, 1ULL << 62, 1ULL << 62, true, kEndless},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Bytes slice(40, 0x55);
        putBytes(slice,
                 PackBytes({.kind = c.kind, .status = c.status, .kag = c.kag, .header = c.metadata, .index = c.index}));
        slice.resize(slice.size() + 30);
        expectSearch(slice, {c.found ? 40 : slice.size() - 24, c.found, c.size});
    }
}

TEST(HeaderSearch, PartitionsWithoutMetadataAreSteppedOverWhole)
{
    // What looks like a header inside the pack of a body partition is not one.
    Bytes inner = PackBytes({.header = 7});
    Bytes slice = PackBytes({.kind = 3, .trailing = inner});
    const std::size_t second = slice.size();
    putBytes(slice, PackBytes({.header = 1000}));
    slice.resize(slice.size() + 24);
    expectSearch(slice, {second, true, 1108});

    Bytes footer = PackBytes({.kind = 4, .trailing = inner}); // searched through like anything else
    footer.resize(footer.size() + 24);
    expectSearch(footer, {108, true, 115});
}

TEST(HeaderSearch, APackThatIsCutShortIsWaitedFor)
{
    Bytes whole(100, 0x55);
    putBytes(whole, PackBytes({.header = 1000}));
    for (std::size_t size = 100; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        expectSearch(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)),
                     {size <= 124 ? size - 24 : 100});
    }
    expectSearch(whole, {100, true, 1108});
}

TEST(HeaderSearch, APackThatCannotBeReadIsDamage)
{
    for (const Bytes& length : {Bytes{0}, Bytes{79}, Bytes{0x80}}) {
        Bytes slice = ulOf(0x060E2B3402050101, 0x0D01020101020400);
        putBytes(slice, length);
        slice.resize(slice.size() + 100);
        expectSearch(slice, {0, false, 0, true});
    }
}

} // namespace
} // namespace TamrelMxf::test
