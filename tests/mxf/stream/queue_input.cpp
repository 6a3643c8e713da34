#include "mxf/stream/QueueEssenceInput.h"
#include "tests/support/MxfBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace TamrelMxf::test {
namespace {

class QueueInput : public testing::Test {
protected:
    QueueInput()
    {
        queue.Init(nullptr, nullptr, 64, 65);
        std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    }
    void push(std::size_t from, std::size_t to) { queue.CopyData(bytes.data() + from, static_cast<int>(to - from)); }
    bool lend(std::size_t from, std::size_t to) { return input.Lend(std::span{bytes}.subspan(from, to - from)); }
    /// Where a view lies, after a look at what it holds.
    const std::uint8_t* view(std::size_t from, std::size_t count, std::size_t there)
    {
        const auto got = input.View(static_cast<std::int64_t>(from), count);
        EXPECT_EQ(got.size(), there);
        EXPECT_TRUE(std::equal(got.begin(), got.end(), bytes.begin() + static_cast<std::ptrdiff_t>(from)));
        return got.data();
    }

    SMemoryStream queue;
    std::atomic<bool> stop{false};
    CQueueEssenceInput input{queue, 0, stop};
    Bytes bytes = Bytes(200);
};

TEST_F(QueueInput, WhatLiesWholeInALentSliceIsNotCopied)
{
    push(0, 10);
    ASSERT_TRUE(lend(10, 40));
    EXPECT_EQ(view(10, 20, 20), &bytes[10]);
    EXPECT_EQ(view(35, 10, 5), &bytes[35]);
    EXPECT_EQ(queue.Held(), 10U);
    (void)view(5, 10, 10);
    EXPECT_EQ(queue.Held(), 15U) << "what reaches out of the queue is";
    EXPECT_EQ(view(12, 20, 20), &bytes[12]) << "and can be seen at both places";
    input.Release(13);
    EXPECT_EQ(input.Front(), 13);
    input.Release(20);
    EXPECT_EQ(queue.Held(), 0U);
    EXPECT_EQ(view(20, 20, 20), &bytes[20]);
    EXPECT_EQ(view(19, 1, 0), nullptr);
    input.Settle();
    EXPECT_NE(view(20, 20, 20), &bytes[20]);
    EXPECT_EQ(queue.Held(), 20U);
    EXPECT_EQ(queue.TotalConfirmed(), 40);
}

TEST_F(QueueInput, WhatAViewWasShortOfIsQueuedAtOnce)
{
    push(0, 10);
    (void)view(4, 20, 6);
    ASSERT_TRUE(lend(10, 40));
    EXPECT_EQ(queue.Held(), 24U);
    input.Release(60); // of which not all has come
    EXPECT_EQ(queue.TotalConfirmed() - queue.Held(), 40);
    input.Settle();
    push(40, 70);
    (void)view(60, 20, 10);
    EXPECT_EQ(queue.Held(), 10U);
}

TEST_F(QueueInput, ASliceThatDoesNotFitIsRefusedWhole)
{
    push(0, 40);
    EXPECT_FALSE(lend(40, 70));
    EXPECT_EQ(view(30, 20, 10), view(30, 10, 10));
    EXPECT_EQ(queue.Held(), 40U);
    ASSERT_TRUE(lend(40, 64));
    input.Settle();
    (void)view(0, 64, 64);
}

TEST_F(QueueInput, NothingIsLostWhateverIsLentViewedAndReleased)
{
    std::uint32_t random = 1;
    const auto below = [&random](std::size_t limit) {
        return limit == 0 ? 0 : ((random = random * 1664525 + 1013904223) >> 8) % limit;
    };
    const Bytes truth = bytes;
    for (int round = 0; round < 2000; ++round) {
        SMemoryStream own;
        own.Init(nullptr, nullptr, 64, 1024);
        CQueueEssenceInput all{own, 0, stop};
        std::size_t pushed = 0, front = 0;
        while (pushed < truth.size()) {
            Bytes slice(truth.begin() + static_cast<std::ptrdiff_t>(pushed), truth.end());
            slice.resize(std::min(slice.size(), 1 + below(60)));
            pushed += slice.size();
            const bool isTaken =
                below(4) > 0 ? all.Lend(slice) : own.CopyData(slice.data(), static_cast<int>(slice.size())) > 0;
            ASSERT_TRUE(isTaken);
            for (std::size_t views = below(6); views > 0; --views) {
                const std::size_t from = front + below(pushed - front + 1);
                const std::size_t count = below(50);
                const auto got = all.View(static_cast<std::int64_t>(from), count);
                ASSERT_EQ(got.size(), std::min(count, pushed - from)) << round;
                ASSERT_TRUE(std::equal(got.begin(), got.end(), truth.begin() + static_cast<std::ptrdiff_t>(from)));
                if (below(3) == 0) front += below(from + got.size() - front + 1);
                all.Release(static_cast<std::int64_t>(front));
                ASSERT_EQ(all.Front(), static_cast<std::int64_t>(front)) << round;
            }
            all.Settle();
            slice.assign(slice.size(), 0xEE); // it belongs to the caller again
            ASSERT_EQ(own.TotalConfirmed(), static_cast<std::int64_t>(pushed));
            ASSERT_EQ(own.Held(), pushed - front);
        }
    }
}

} // namespace
} // namespace TamrelMxf::test
