#include "mxf/Status.h"
#include "mxf/index/MxfIndexParser.h"
#include "tests/mxf/index/SegmentBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::Optional;

constexpr std::uint32_t kSid = 2;

using Pairs = std::vector<std::pair<std::int64_t, std::int64_t>>; ///< an edit unit and a number

CMxfIndexParser& import(CMxfIndexParser& parser, const std::vector<SegmentSpec>& segments)
{
    for (const SegmentSpec& spec : segments) {
        const Bytes bytes = segmentKlv(spec);
        CKlv klv;
        EXPECT_EQ(klv.View(bytes), kSuccess);
        EXPECT_EQ(parser.ImportSegment(klv), kSuccess);
    }
    return parser;
}

/// Entries of equal distance: `first`, `first` + `step` …
std::vector<EntrySpec> steps(std::size_t count, std::uint64_t first, std::uint64_t step)
{
    std::vector<EntrySpec> entries(count);
    for (EntrySpec& entry : entries)
        entry.offset = std::exchange(first, first + step);
    return entries;
}

TEST(IndexTables, WhatAStreamHasPassedIsDroppedAndNothingElse)
{
    CMxfIndexParser parser{nullptr, {}};
    import(parser, {{.start = 0, .duration = 3, .entries = steps(3, 0, 10)},
                    {.start = 3, .duration = 3, .entries = steps(3, 30, 10)},
                    {.start = 6, .duration = 3, .entries = steps(3, 60, 10)},
                    {.start = 1,
                     .duration = 1,
                     .entries = steps(1, 1000, 10) }});
    struct Case {
        std::int64_t before, first;
        std::size_t kept;
    };
    for (const Case& c : {Case{-5, 0, 4}, {2, 2, 3}, {5, 3, 2}, {6, 6, 1}, {9, -1, 0}}) {
        SCOPED_TRACE(c.before);
        parser.DropBefore(kSid, c.before);
        EXPECT_EQ(parser.Segments(kSid).size(), c.kept);
        EXPECT_EQ(parser.Find(kSid, c.first - 1), std::nullopt);
        EXPECT_EQ(parser.Find(kSid, c.first).has_value(), c.first >= 0);
    }
    import(parser, {{.start = 9, .duration = 3, .entries = steps(3, 90, 10) }});
    EXPECT_EQ(parser.Find(kSid, 11)->streamOffset, 110) << "more comes";

    parser.Reset();
    import(parser, {{.start = 0, .duration = 3, .unitSize = 100}, {.start = 3, .duration = 3, .unitSize = 10 }});
    parser.DropBefore(kSid, 3);
    EXPECT_EQ(parser.Find(kSid, 4)->streamOffset, 310) << "counted from the beginning";
}

TEST(IndexTables, OverlapsGoToTheLastSegment)
{
    struct Case {
        const char* name;
        std::vector<SegmentSpec> segments;
        std::vector<std::int64_t> offsets; ///< of edit units 0, 1 …; -1: not covered
        std::size_t kept;                  ///< segments
    };
    const SegmentSpec low{.start = 0, .duration = 3, .entries = steps(3, 0, 10)};
    const SegmentSpec high{.start = 3, .duration = 2, .entries = steps(2, 30, 10)};
    const SegmentSpec middle{.start = 1, .duration = 3, .entries = steps(3, 1000, 10)};
    const SegmentSpec inside{.start = 1, .duration = 1, .entries = steps(1, 1000, 10)};
    const SegmentSpec open{.start = 0, .duration = 0, .unitSize = 100};
    const SegmentSpec closed{.start = 0, .duration = 2, .unitSize = 100};
    const std::vector<Case> cases{
        {"in order", {low, high}, {0, 10, 20, 30, 40, -1}, 2},
        {"out of order", {high, low}, {0, 10, 20, 30, 40, -1}, 2},
        {"repeated", {low, high, low, high}, {0, 10, 20, 30, 40, -1}, 2},
        {"across a border", {low, high, middle}, {0, 1000, 1010, 1020, 40, -1}, 3},
        {"earlier, hence behind", {middle, low}, {0, 10, 20, 1020, -1}, 2},
        {"inside", {low, inside}, {0, 1000, 20, -1}, 2},
        {"hidden altogether", {inside, low}, {0, 10, 20, -1}, 1},
        {"a gap", {inside, high}, {-1, 1000, -1, 30, 40, -1}, 2},
        {"an end that was open is stated later", {open, closed}, {0, 100, -1}, 1},
        {"a stated end is opened again", {closed, open}, {0, 100, 200, 300}, 1},
        {"an entry for more than the duration", {{.duration = 1, .entries = steps(3, 5, 5)}}, {5, -1}, 1},
        {"more duration than entries", {{.duration = 9, .entries = steps(2, 5, 5)}}, {5, 10, -1}, 1},
        {"no duration", {{.entries = steps(2, 5, 5)}}, {5, 10, -1}, 1},
        {"both fields of every frame", {{.duration = 2, .entries = steps(5, 0, 7)}}, {0, 14, -1}, 1},
        {"nothing said", {SegmentSpec{}}, {-1}, 0},
        {"sizes change", {{.duration = 1, .unitSize = 612}, {.start = 1, .unitSize = 100}}, {0, 612, 712, 812}, 2},
        {"constant sizes follow others",
         {{.duration = 2, .entries = steps(3, 0, 40)}, {.start = 2, .unitSize = 100}},
         {0, 40, 80, 180},
         2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CMxfIndexParser parser{nullptr, {}};
        import(parser, c.segments);
        for (std::size_t i = 0; i < c.offsets.size(); ++i) {
            const auto unit = parser.Find(kSid, static_cast<std::int64_t>(i));
            EXPECT_EQ(unit ? unit->streamOffset : -1, c.offsets[i]) << i;
        }
        EXPECT_EQ(parser.Segments(kSid).size(), c.kept);
        EXPECT_EQ(parser.HasTable(kSid), c.kept > 0);
        EXPECT_TRUE(std::ranges::is_sorted(parser.Segments(kSid), {}, &CMxfIndexSegment::startPosition));
        // The way back, also from the last byte in front of the next unit.
        for (std::size_t i = 0; i < c.offsets.size() && std::ranges::is_sorted(c.offsets) && c.offsets[0] >= 0; ++i)
            EXPECT_THAT(parser.UnitAtOffset(kSid, c.offsets[i] + 4), Optional(static_cast<std::int64_t>(i)));
    }
}

TEST(IndexTables, SizesReachToTheNextUnitOrTheSurplusEntry)
{
    CMxfIndexParser parser{nullptr, {}};
    const std::vector<EntrySpec> marked{{70}, {100}, {145}, {}};
    const std::vector<EntrySpec> falling{{500}, {400}};
    import(parser, {{.start = 0, .duration = 2, .entries = steps(2, 0, 30)},
                    {.start = 2, .duration = 2, .entries = marked},
                    {.start = 9,
                     .duration = 2,
                     .entries = falling }});
    const Pairs sizes{{0, 30}, {1, 40}, {2, 30}, {3, 45}, {9, -1}, {10, -1}};
    for (const auto& [unit, size] : sizes)
        EXPECT_EQ(parser.Find(kSid, unit).value().size, size) << unit;
    EXPECT_THAT(parser.CoveredUnits(kSid), Optional(4));
    EXPECT_THAT(parser.UnitAtOffset(kSid, 499), Optional(3)) << "a gap in the table";
    EXPECT_EQ(parser.UnitAtOffset(kSid, -1), std::nullopt);
}

TEST(IndexTables, ElementsLieInSlices)
{
    // Two slices, position tables, and entries that are longer than they need be.
    CMxfIndexParser parser{nullptr, {}};
    const std::vector<DeltaSpec> deltas{{0, 0, 0}, {-1, 0, 100}, {2, 1, 0}, {0, 1, 40}, {0, 2, 7}, {0, 3, 7}};
    const std::vector<EntrySpec> entries{{0, 0, 0, 0x80, {1000, 2000}}, {5000, 0, 0, 0x80, {900, 1800}}};
    import(parser, {{.slices = 2, .posTables = 2, .deltas = deltas, .entries = entries, .surplus = 3 }});
    const std::vector<std::int64_t> expected{5000, 5100, 5900, 5940, 6807};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_THAT(parser.ElementOffset(kSid, 1, i), Optional(expected[i])) << i;
    EXPECT_EQ(parser.ElementOffset(kSid, 1, 5), std::nullopt) << "a slice that does not exist";
    EXPECT_EQ(parser.ElementOffset(kSid, 1, 6), std::nullopt);
    EXPECT_EQ(parser.ElementOffset(kSid, 2, 0), std::nullopt);
    const CMxfIndexSegment& segment = *parser.Segments(kSid).front();
    EXPECT_EQ(segment.PosTable(1, 2), (SRational{2, 7}));
    EXPECT_EQ(segment.PosTable(1, 3), SRational{});
    EXPECT_EQ(segment.deltas[1].posTableIndex, -1);

    CMxfIndexParser constant{nullptr, {}};
    import(constant, {{.unitSize = 1024, .deltas = { deltas[0], deltas[1] } }});
    EXPECT_THAT(constant.ElementOffset(kSid, 3, 1), Optional(3 * 1024 + 100));
    EXPECT_THAT(constant.ConstantSize(kSid), Optional(1024));
    EXPECT_EQ(constant.CoveredUnits(kSid), std::nullopt);
    EXPECT_EQ(constant.EditRate(kSid), (SRational{25, 1}));
    EXPECT_EQ(constant.Find(kSid, CMxfIndexSegment::kUnbounded - 1), std::nullopt) << "offset beyond 63 bits";
}

TEST(IndexTables, DisplayOrderIsTheInverseOfTemporalOffsets)
{
    // Display order over two segments, the second of an open group: stored I0 P3 B1 B2 | I6 B4 B5 P7.
    const std::vector<std::int64_t> storedAt{0, 2, 3, 1, 5, 6, 4, 7};
    std::vector<EntrySpec> entries = steps(8, 0, 10);
    for (std::size_t d = 0; d < entries.size(); ++d)
        entries[d].temporal = static_cast<int>(storedAt[d] - static_cast<std::int64_t>(d));
    const SegmentSpec first{.duration = 3, .entries = {entries.begin(), entries.begin() + 3}};
    const SegmentSpec second{.start = 3, .duration = 5, .entries = {entries.begin() + 3, entries.end()}};
    CMxfIndexParser parser{nullptr, {}};
    import(parser, {second, first});
    for (std::size_t d = 0; d < storedAt.size(); ++d) {
        EXPECT_THAT(parser.StoredAt(kSid, static_cast<std::int64_t>(d)), Optional(storedAt[d]));
        EXPECT_EQ(parser.Find(kSid, storedAt[d]).value().displayed, static_cast<std::int64_t>(d));
    }
    EXPECT_EQ(parser.ReorderDelay(kSid), 1);

    // Offsets that lead nowhere, at both ends of their range and of the table.
    CMxfIndexParser hostile{nullptr, {}};
    const std::vector<EntrySpec> nowhere{{0, -128}, {0, 127}, {0, 1}};
    import(hostile, {{.entries = nowhere }});
    EXPECT_THAT(hostile.StoredAt(kSid, 0), Optional(0));
    EXPECT_THAT(hostile.StoredAt(kSid, 1), Optional(128));
    EXPECT_EQ(hostile.Find(kSid, 1).value().displayed, 1) << "nothing maps to it";
}

TEST(IndexTables, KeyFrames)
{
    struct Case {
        const char* name;
        std::vector<EntrySpec> entries; ///< the last one is asked for
        bool isKey;
        std::int64_t keyFrame;
    };
    const EntrySpec key{.flags = 0xC0};
    const EntrySpec predicted{.flags = 0x22};
    const std::vector<Case> cases{
        {"random access", {predicted, {.key = -1, .flags = 0x80}}, true, 1},
        {"I picture of an open group", {key, {.flags = 0x40}}, true, 1},
        {"no flags anywhere", {{.flags = 0}, {.flags = 0}}, true, 1},
        {"no flags but a key frame", {{.flags = 0}, {.key = -1, .flags = 0}}, false, 0},
        {"B picture", {key, predicted, {.key = -2, .flags = 0x33}}, false, 0},
        {"B picture in front of its I picture", {key, key, {.key = -2, .flags = 0x13}}, false, 0},
        {"key frame is not stated", {key, key, predicted, predicted}, false, 1},
        {"key frame lies out of range", {key, predicted, {.key = -1, .flags = 0x2A}}, false, 0},
        {"key frame in front of the start", {key, {.key = -100, .flags = 0x22}}, false, 0},
        {"named key frame is none", {key, key, predicted, {.key = -1, .flags = 0x22}}, false, 1},
        {"key frame behind", {key, {.key = 5, .flags = 0x22}}, false, 0},
        {"no key frame at all", {predicted, predicted}, false, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CMxfIndexParser parser{nullptr, {}};
        import(parser, {{.entries = c.entries }});
        const auto unit = parser.Find(kSid, static_cast<std::int64_t>(c.entries.size()) - 1);
        EXPECT_EQ(unit.value().isKey, c.isKey);
        EXPECT_EQ(unit.value().keyFrame, c.keyFrame);
    }
}

TEST(IndexTables, BrokenSegmentsAreKeptAsFarAsTheyGo)
{
    struct Case {
        const char* name;
        Bytes value;
        int status;
        std::int64_t covered;
    };
    const auto entries = [](std::uint64_t count, std::uint64_t size, std::size_t bytes, std::uint64_t length) {
        Bytes value = numberOf(0x3F0AULL << 16 | length, 4);
        putNumber(value, count, 4);
        putNumber(value, size, 4);
        value.resize(value.size() + bytes);
        return value;
    };
    const Bytes tooLong = entries(9000, 11, 99'000, 99'008 & 0xFFFF);
    Bytes withTail = tooLong;
    putBytes(withTail, numberOf(0x3F08000101ULL, 5));
    Bytes negative;
    putItem(negative, 0x3F0C, numberOf(~0ULL, 8));
    putBytes(negative, entries(1, 11, 11, 19));
    const std::vector<Case> cases{
        {"whole", entries(3, 11, 33, 41), kSuccess, 3},
        {"more entries than bytes", entries(0xFFFFFFFF, 11, 33, 41), kCutShort, 3},
        {"array cut by the end of the set", entries(3, 11, 30, 41), kCutShort, 2},
        {"no room for count and size", numberOf(0x3F0A000401020304, 8), kCutShort, 0},
        {"other item cut", numberOf(0x3F0C000801020304, 8), kCutShort, 0},
        {"entries too short", entries(3, 10, 33, 41), kFailed, 0},
        {"entries of no size", entries(3, 0, 33, 41), kFailed, 0},
        {"array longer than its length can say", tooLong, kSuccess, 9000},
        {"and behind it the number of slices it has no room for", withTail, kFailed, 0},
        {"negative start", negative, kFailed, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes bytes = MxfBuilder{}.klv(kIndexKey, c.value).bytes;
        CKlv klv;
        ASSERT_EQ(klv.View(bytes), kSuccess);
        CMxfIndexParser parser{nullptr, {}};
        EXPECT_EQ(parser.ImportSegment(klv), c.status);
        EXPECT_THAT(parser.CoveredUnits(0), Optional(c.covered));
    }
    CKlv other;
    const Bytes fill = MxfBuilder{}.fill(40).bytes;
    ASSERT_EQ(other.View(fill), kSuccess);
    CMxfIndexParser parser{nullptr, {}};
    EXPECT_EQ(parser.ImportSegment(other), kOutOfRange);
    EXPECT_EQ(parser.ImportSegment(CKlv{}), kOutOfRange);
}

} // namespace
