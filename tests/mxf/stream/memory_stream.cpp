#include "mxf/stream/MemoryStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

using TamrelMxf::SMemoryStream;

namespace {

constexpr std::uint32_t kMiB = 1U << 20;

/// Numbers every byte, so that a byte that is lost, moved or doubled shows.
struct Queue : SMemoryStream {
    explicit Queue(std::uint32_t capacity, std::uint32_t maximum = kMiB)
    {
        Init(nullptr, nullptr, capacity, maximum);
        unsigned char* start = RequestFree(0);
        base = start;
    }

    int push(int count)
    {
        std::vector<unsigned char> bytes(static_cast<std::size_t>(std::max(count, 0)));
        std::iota(bytes.begin(), bytes.end(), next);
        const int result = CopyData(bytes.data(), count);
        if (result == count) next = static_cast<unsigned char>(next + count);
        return result;
    }
    int pop(int count)
    {
        const int result = ReleaseData(count);
        if (result == 0) first = static_cast<unsigned char>(first + count);
        return result;
    }
    /// Where the first byte that is held lies in the buffer that was allocated at first.
    std::ptrdiff_t place()
    {
        unsigned char* data = nullptr;
        int length = 0;
        return RequestData(&data, &length) == 0 ? data - base : -1;
    }
    void expectIntact()
    {
        unsigned char* data = nullptr;
        int length = -1;
        EXPECT_EQ(RequestData(&data, &length), Held() == 0 ? 1 : 0);
        ASSERT_EQ(length, static_cast<int>(Held()));
        for (int i = 0; i < length; ++i)
            ASSERT_EQ(data[i], static_cast<unsigned char>(first + i)) << i;
    }

    unsigned char* base = nullptr;
    unsigned char next = 0, first = 0;
};

TEST(MemoryStream, InitTakesTheMaximumOnlyAboveTheCapacity)
{
    struct Case {
        std::uint32_t initial, maximum, capacity, expectedMaximum;
    };
    for (const Case& c : {Case{0, 100, 32, 100}, Case{31, 32, 32, 32}, Case{33, 32, 33, 32 * kMiB},
                          Case{100, 100, 100, 100}, Case{64, 0, 64, 32 * kMiB}}) {
        SMemoryStream stream;
        stream.Init(nullptr, nullptr, c.initial, c.maximum);
        EXPECT_EQ(stream.Capacity(), c.capacity);
        EXPECT_EQ(stream.Maximum(), c.expectedMaximum);
    }
}

TEST(MemoryStream, RoomIsFoundAtTheEndThenInFrontThenByGrowing)
{
    struct Case {
        const char* name;
        int held, popped, push;
        int result;
        std::uint32_t capacity;
        std::ptrdiff_t place; ///< of the first byte; -1 in a new buffer
    };
    const Case cases[] = {
        {"empty: the whole capacity", 0, 0, 100, 100, 100, 0},
        {"empty: four thirds of the push", 0, 0, 101, 101, 134, -1},
        {"behind what is held", 60, 0, 40, 40, 100, 0},
        {"held and four thirds", 60, 0, 41, 41, 114, -1},
        {"fits behind, so nothing moves", 60, 50, 40, 40, 100, 50},
        {"moves to the front", 60, 10, 50, 50, 100, 0},
        {"one byte too many to move", 60, 10, 51, 51, 118, -1},
        {"emptied: starts over", 60, 60, 100, 100, 100, 0},
        {"four thirds of one byte is one byte", 100, 0, 1, 1, 101, -1},
        {"up to the maximum", 100, 0, 674, 674, 998, -1},
        {"the maximum itself is refused", 100, 0, 675, -5, 100, 0},
        {"four times the push does not fit 32 bits", 100, 0, 1 << 30, -5, 100, 0},
        {"the greatest push", 100, 0, INT_MAX, -5, 100, 0},
        {"nothing", 60, 0, 0, 0, 100, 0},
        {"less than nothing", 60, 0, -1, -5, 100, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Queue queue{100, 1000};
        ASSERT_EQ(queue.push(c.held), c.held);
        ASSERT_EQ(queue.pop(c.popped), 0);
        if (c.push > 10000)
            EXPECT_EQ(queue.RequestFree(c.push), nullptr);
        else
            EXPECT_EQ(queue.push(c.push), c.result);
        EXPECT_EQ(queue.Capacity(), c.capacity);
        EXPECT_EQ(queue.Held(), static_cast<std::uint32_t>(c.held - c.popped + std::max(c.result, 0)));
        if (c.place >= 0) {
            EXPECT_EQ(queue.place(), c.place);
        }
        queue.expectIntact();
    }
}

TEST(MemoryStream, ReleasingMovesOnlyWhenBothEndsPassATenth)
{
    struct Case {
        std::uint32_t capacity;
        int pushed, popped;
        std::ptrdiff_t place;
    };
    for (const Case& c :
         {Case{1000, 900, 101, 101}, Case{1000, 901, 100, 100}, Case{1000, 901, 101, 0}, Case{1000, 1000, 500, 0},
          Case{1000, 500, 400, 400}, Case{105, 94, 11, 11}, Case{105, 95, 10, 10}, Case{105, 95, 11, 0}}) {
        Queue queue{c.capacity};
        ASSERT_EQ(queue.push(c.pushed), c.pushed);
        ASSERT_EQ(queue.pop(c.popped), 0);
        EXPECT_EQ(queue.place(), c.place) << c.capacity << " " << c.pushed << " " << c.popped;
        queue.expectIntact();
    }
    Queue queue{1000};
    ASSERT_EQ(queue.push(10), 10);
    EXPECT_EQ(queue.pop(11), -1);
    EXPECT_EQ(queue.pop(-1), -1);
    queue.expectIntact();
    EXPECT_EQ(queue.pop(10), 0);
    EXPECT_EQ(queue.pop(1), -1);
    EXPECT_EQ(queue.place(), -1);
}

TEST(MemoryStream, ConfirmingMoreThanThereIsRoomForIsRefused)
{
    Queue queue{100, 1000};
    EXPECT_EQ(queue.ConfirmData(101), -5);
    EXPECT_EQ(queue.ConfirmData(0), 0);
    EXPECT_EQ(queue.ConfirmData(-1), 0);
    EXPECT_EQ(queue.ConfirmData(60), 0);
    EXPECT_EQ(queue.ConfirmData(41), -5);
    EXPECT_EQ(queue.ConfirmData(40), 0);
    EXPECT_EQ(queue.Held(), 100U);
    queue.Reset();
    EXPECT_EQ(queue.Held(), 0U);
    EXPECT_EQ(queue.TotalConfirmed(), 100);
}

TEST(MemoryStream, ReallocRefusesWhatWouldLoseBytes)
{
    Queue queue{100, 1000};
    ASSERT_EQ(queue.push(50), 50);
    EXPECT_EQ(queue.Realloc(1000), 0);
    EXPECT_EQ(queue.Realloc(49), 0);
    EXPECT_EQ(queue.Capacity(), 100U);
    EXPECT_EQ(queue.Realloc(50), 1);
    EXPECT_EQ(queue.Capacity(), 50U);
    EXPECT_EQ(queue.push(1), 1);
    EXPECT_EQ(queue.Realloc(999), 1);
    queue.expectIntact();
}

TEST(MemoryStream, SingleBytesGrowUntilTheMaximum)
{
    Queue queue{32, 40};
    for (int i = 0; i < 39; ++i)
        ASSERT_EQ(queue.AddByte(static_cast<unsigned char>(i)), 1);
    EXPECT_EQ(queue.AddByte(0), -5);
    queue.expectIntact();
    EXPECT_EQ(queue.Held(), 39U);
}

TEST(MemoryStream, ThirtyTwoMebibytesAreTheLimitByDefault)
{
    SMemoryStream queue; // never initialised: it grows from nothing
    std::vector<unsigned char> slice(8 * kMiB);
    const int length = static_cast<int>(slice.size());
    EXPECT_EQ(queue.CopyData(slice.data(), length), length);
    EXPECT_EQ(queue.CopyData(slice.data(), length), length);
    EXPECT_EQ(queue.CopyData(slice.data(), length), length) << "16 + 32/3 MiB is below the limit";
    EXPECT_EQ(queue.CopyData(slice.data(), length), -5);
    EXPECT_EQ(queue.Held(), 24 * kMiB);
    EXPECT_EQ(queue.CopyData(nullptr, 1), -2);
    EXPECT_EQ(queue.RequestData(nullptr, nullptr), -2);
}

TEST(MemoryStream, CallbacksGetTheContext)
{
    int context = 0;
    SMemoryStream queue;
    EXPECT_EQ(queue.Notify(7, nullptr, 0), 1);
    queue.Init(
        &context,
        [](void* to, int event, void*, int length) {
            *static_cast<int*>(to) = event;
            return length;
        },
        100, 1000);
    EXPECT_EQ(queue.Notify(7, nullptr, 9), 9);
    EXPECT_EQ(context, 7);

    queue.copy = [](void*, unsigned char*, int length) { return std::min(length, 3); };
    unsigned char bytes[4] = {1, 2, 3, 4};
    EXPECT_EQ(queue.CopyData(bytes, 3), 3);
    EXPECT_EQ(queue.Held(), 0U) << "passed through whole";
    EXPECT_EQ(queue.CopyData(bytes, 4), 4);
    EXPECT_EQ(queue.Held(), 4U) << "not taken whole, so queued";
}

TEST(MemoryStream, BytesStayInOrderWhateverTheSizes)
{
    Queue queue{100, 4096};
    std::uint32_t random = 1;
    const auto upTo = [&random](std::uint32_t most) {
        random = random * 1664525 + 1013904223;
        return static_cast<int>((random >> 8) % (most + 1));
    };
    std::int64_t confirmed = 0;
    for (int i = 0; i < 5000; ++i) {
        const int count = upTo(300);
        if (const int pushed = queue.push(count); pushed >= 0) confirmed += pushed;
        ASSERT_EQ(queue.pop(upTo(queue.Held())), 0);
        queue.expectIntact();
        ASSERT_LT(queue.Capacity(), 4096U);
    }
    EXPECT_EQ(queue.TotalConfirmed(), confirmed);
}

} // namespace
