#include "mxf/io/CachedReader.h"

#include "tests/support/MemorySource.h"

#include <gtest/gtest.h>

#include <array>
#include <numeric>

namespace {

using zanfcp::test::MemorySource;
using Cached = CCachedReader<MemorySource>;

constexpr std::int64_t kCache = Cached::kDefaultCacheSize;
constexpr std::size_t kSmall = 6143; // the largest count below three quarters of the cache

void fill(MemorySource& source, std::size_t size)
{
    source.bytes.resize(size);
    std::uint32_t seed = 1;
    for (auto& byte : source.bytes)
        byte = static_cast<std::uint8_t>((seed = seed * 1103515245u + 12345u) >> 16);
}

struct ReadAt {
    std::int64_t got;
    bool matches; ///< what arrived is what stands there
};

ReadAt readAt(Cached& reader, std::int64_t position, std::size_t count)
{
    std::vector<std::uint8_t> buffer(count + 1);
    EXPECT_EQ(reader.Seek(position), 0);
    const std::int64_t got = reader.Read(buffer.data(), count);
    const auto size = static_cast<std::size_t>(std::max<std::int64_t>(got, 0));
    return {got, std::equal(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(size),
                            reader.bytes.begin() + position)};
}

TEST(CachedReader, ServesFromMemoryOnlyWhatEndsBeforeTheLastCachedByte)
{
    struct Case {
        const char* name;
        std::int64_t position;
        std::size_t count;
        int sourceReads; ///< after a first small read at 100 has filled the cache with 100 … 8291
    };
    const Case cases[] = {
        {"inside", 200, 100, 0},
        {"at the first cached byte", 100, kSmall, 0},
        {"ends one byte before the last cached one", 8000, 291, 0},
        {"ends exactly at the last cached byte", 8000, 292, 1},
        {"reaches past the cached bytes", 8000, 293, 1},
        {"starts before the cached bytes", 99, 10, 1},
        {"large, though all of it is cached", 100, kSmall + 1, 1},
        {"longer than the cache", 100, 20000, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Cached reader;
        fill(reader, 40000);
        readAt(reader, 100, 1);
        ASSERT_EQ(reader.reads, 1);
        const ReadAt result = readAt(reader, c.position, c.count);
        EXPECT_EQ(result.got, static_cast<std::int64_t>(c.count));
        EXPECT_TRUE(result.matches);
        EXPECT_EQ(reader.reads, 1 + c.sourceReads);
        EXPECT_EQ(reader.GetPos(), c.position + static_cast<std::int64_t>(c.count));
    }
}

TEST(CachedReader, LargeReadDropsTheCache)
{
    Cached reader;
    fill(reader, 40000);
    readAt(reader, 100, 1);
    readAt(reader, 20000, 10000);
    readAt(reader, 100, 1);
    EXPECT_EQ(reader.reads, 3);
}

TEST(CachedReader, SmallReadPastTheEndMovesOnByTheWholeCount)
{
    Cached reader;
    fill(reader, 1000);
    const ReadAt result = readAt(reader, 990, 100);
    EXPECT_EQ(result.got, 10);
    EXPECT_TRUE(result.matches);
    EXPECT_EQ(reader.GetPos(), 1090);
    std::uint8_t byte = 0;
    EXPECT_EQ(reader.Read(&byte, 1), 0);
}

TEST(CachedReader, LargeReadCutShortForgetsThePosition)
{
    Cached reader;
    fill(reader, 9000);
    EXPECT_EQ(readAt(reader, 1000, 8500).got, 8000);
    reader.place = 77; // what the source itself says is asked for now
    EXPECT_EQ(reader.GetPos(), 77);
}

TEST(CachedReader, PassesOnWhatGoesWrongBelow)
{
    std::array<std::uint8_t, 8000> buffer{};
    for (const std::size_t count : {std::size_t{10}, buffer.size()}) {
        SCOPED_TRACE(count);
        Cached reader;
        fill(reader, 40000);
        reader.place = -1;
        EXPECT_EQ(reader.Read(buffer.data(), count), -1) << "the position is unknown";
        EXPECT_EQ(reader.Seek(0), 0);
        reader.readError = -5;
        EXPECT_EQ(reader.Read(buffer.data(), count), -5) << "the source's own answer";
        EXPECT_EQ(reader.Seek(0), 0);
        reader.seekError = 7;
        EXPECT_EQ(reader.Read(buffer.data(), count), 0) << "the source cannot be sought";
    }
}

TEST(CachedReader, SeekTouchesNothingAndRefusesNegativePlaces)
{
    Cached reader;
    fill(reader, 10);
    EXPECT_EQ(reader.Seek(1'000'000'000'000), 0);
    EXPECT_EQ(reader.Seek(-1), -1);
    EXPECT_EQ(reader.GetPos(), 1'000'000'000'000);
    EXPECT_EQ(reader.seeks, 0);
    EXPECT_EQ(reader.reads, 0);
}

TEST(CachedReader, BufferSizeEmptiesTheCacheUnlessItIsTheSame)
{
    Cached reader;
    fill(reader, 40000);
    EXPECT_EQ(reader.GetBufferSize(), kCache);
    readAt(reader, 0, 1);
    EXPECT_EQ(reader.SetBufferSize(kCache), 0);
    readAt(reader, 0, 1);
    EXPECT_EQ(reader.reads, 1);
    EXPECT_EQ(reader.SetBufferSize(100), 0);
    EXPECT_EQ(reader.GetBufferSize(), 100);
    readAt(reader, 0, 74); // small for 100, and fills it
    readAt(reader, 20, 74);
    EXPECT_EQ(reader.reads, 2);
    readAt(reader, 20, 75); // large for 100
    EXPECT_EQ(reader.reads, 3);
    EXPECT_EQ(reader.SetBufferSize(0), 0);
    EXPECT_TRUE(readAt(reader, 20, 1).matches);
    EXPECT_EQ(reader.reads, 4);
}

TEST(CachedReader, ReopenedSourceIsNotReadFromTheOldCache)
{
    Cached reader;
    fill(reader, 1000);
    readAt(reader, 0, 10);
    reader.Close();
    ASSERT_EQ(reader.Open("", 0), 0);
    reader.bytes[0] ^= 0xFF;
    EXPECT_TRUE(readAt(reader, 0, 10).matches);
}

} // namespace
