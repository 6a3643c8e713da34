#include "mxf/io/WindowSource.h"

#include "mxf/io/CachedReader.h"
#include "tests/support/MemorySource.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>

namespace {

using zanfcp::test::MemorySource;

/// A source with a cache of 64 bytes, whose bytes count upwards.
class WindowSource : public testing::Test {
protected:
    struct Counting : MemorySource {
        std::int64_t Read(void* buffer, std::size_t count) override
        {
            asked += count;
            return MemorySource::Read(buffer, count);
        }
        std::size_t asked = 0;
    };

    WindowSource()
    {
        source.bytes.resize(250);
        std::iota(source.bytes.begin(), source.bytes.end(), std::uint8_t{0});
        (void)source.SetBufferSize(64);
    }

    CCachedReader<Counting> source;
};

TEST_F(WindowSource, WhatIsForeseenIsReadAtOnceAndNothingElse)
{
    struct Read {
        std::int64_t position;
        std::size_t count;
    };
    struct Case {
        const char* name;
        std::size_t expected;
        std::vector<Read> reads;
        int calls;
        std::size_t bytes;
        std::int64_t reached;
    };
    const Case cases[] = {
        {"all inside, to the last byte", 50, {{100, 20}, {120, 25}, {145, 5}}, 1, 50, 50},
        {"and back again", 50, {{120, 30}, {100, 20}}, 2, 50 + 64, 50},
        {"nothing is foreseen", 0, {{100, 20}, {120, 44}, {164, 1}}, 2, 128, 65},
        {"reaches out of it", 50, {{100, 20}, {120, 40}, {160, 20}}, 2, 50 + 64, 80},
        {"reaches far out of it", 50, {{100, 20}, {120, 95}, {215, 10}}, 3, 50 + 65 + 64, 125},
        {"more at once than is foreseen", 50, {{100, 51}, {151, 2}}, 2, 51 + 64, 53},
        {"elsewhere", 50, {{100, 20}, {10, 20}}, 2, 50 + 64, 20},
        {"the end of the file is inside", 50, {{230, 32}}, 1, 50, 162},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CWindowSource window{source};
        source.reads = 0;
        source.asked = 0;
        window.Expect(100, c.expected);
        for (const auto& [position, count] : c.reads) {
            std::vector<std::uint8_t> got(count);
            ASSERT_EQ(window.Seek(position), 0);
            const std::int64_t there = std::min<std::int64_t>(250 - position, static_cast<std::int64_t>(count));
            ASSERT_EQ(window.Read(got.data(), count), there);
            EXPECT_EQ(window.GetPos(), position + there);
            for (std::size_t i = 0; i < static_cast<std::size_t>(there); ++i)
                ASSERT_EQ(got[i], static_cast<std::uint8_t>(static_cast<std::size_t>(position) + i)) << i;
        }
        EXPECT_EQ(source.reads, c.calls);
        EXPECT_EQ(source.asked, c.bytes);
        EXPECT_EQ(window.Reached(), c.reached);
    }
    EXPECT_EQ(source.GetBufferSize(), 64) << "the cache is back";
}

TEST_F(WindowSource, WhatCannotBeReadIsReportedAsTheSourceDoes)
{
    std::uint8_t byte = 0;
    CWindowSource window{source};
    EXPECT_EQ(window.Seek(-1), -1);
    window.Expect(std::numeric_limits<std::int64_t>::max(), 50);
    EXPECT_EQ(window.Read(&byte, 1), 0);
    window.Expect(0, 50);
    source.seekError = 7;
    EXPECT_EQ(window.Read(&byte, 1), 0);
    source.seekError = 0;
    source.readError = -5;
    EXPECT_EQ(window.Read(&byte, 1), -5);
    source.readError = 0;
    EXPECT_EQ(window.Read(&byte, 1), 1) << "it is tried again";
}

} // namespace
