#include "tests/mxf/model/StandardFile.h"
#include "tests/mxf/stream/PushFile.h"
#include "tests/mxf/stream/Pushing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace TamrelMxf::test {
namespace {

const Bytes kSoundKey = ulOf(0x060E2B3401020101, 0x0D01030116010301);

/// Where the parts of a built stream lie.
struct Stream {
    Bytes bytes;
    std::size_t headerEnd = 0, essenceEnd = 0;
    std::vector<Taken> pictures;
};

struct Essence {
    int units = 5;
    std::size_t size = 1000;
};

/// Header partition with the essence in it, footer and random index pack.
Stream makeStream(PackParts pack = {}, Essence essence = {})
{
    const Bytes metadata = StandardFile{}.Bytes();
    pack.header = metadata.size();
    Stream stream;
    MxfBuilder builder;
    builder.bytes = PackBytes(pack);
    putBytes(builder.bytes, metadata);
    stream.headerEnd = builder.bytes.size();
    for (int i = 0; i < essence.units; ++i) {
        const Bytes picture(essence.size + static_cast<std::size_t>(i), static_cast<std::uint8_t>(i));
        stream.pictures.push_back({i, i, i, static_cast<std::int64_t>(builder.bytes.size()) + 20, 0, picture});
        builder.klv(kPictureKey, picture).klv(kSoundKey, Bytes(100, static_cast<std::uint8_t>(0x80 + i)));
    }
    stream.essenceEnd = builder.bytes.size();
    builder.partition({.kind = 4}).randomIndexPack();
    stream.bytes = builder.bytes;
    return stream;
}

Bytes part(const Bytes& bytes, std::size_t from, std::size_t to)
{
    return {bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.begin() + static_cast<std::ptrdiff_t>(to)};
}

void expectSamples(Pushing& pushing, const Stream& stream)
{
    pushing.receivers[0].ask([&](const Receiver& receiver) {
        ASSERT_EQ(receiver.taken.size(), stream.pictures.size());
        for (std::size_t i = 0; i < receiver.taken.size(); ++i) {
            EXPECT_EQ(receiver.taken[i].editUnit, stream.pictures[i].editUnit);
            EXPECT_EQ(receiver.taken[i].position, stream.pictures[i].position);
            EXPECT_TRUE(receiver.taken[i].bytes == stream.pictures[i].bytes) << i;
        }
    });
    EXPECT_EQ(pushing.receivers[1].ask([](const Receiver& receiver) { return receiver.taken.size(); }),
              stream.pictures.size());
}

TEST(StreamDemuxer, NothingIsLostWhateverTheSlices)
{
    const Stream stream = makeStream();
    std::uint32_t random = 7;
    const std::function<std::size_t()> slices[] = {
        [] { return std::size_t{1}; },
        [&random] { return std::size_t{(random = random * 1664525 + 1013904223) >> 20}; },
        [] { return std::size_t{1} << 20; },
    };
    for (const auto& slice : slices) {
        Pushing pushing;
        pushing.push(stream.bytes, slice);
        ASSERT_TRUE(pushing.gets(mxf_stream_ended));
        EXPECT_THAT(pushing.events(), ElementsAre(1, 2));
        expectSamples(pushing, stream);
    }
}

TEST(StreamDemuxer, SlicesThatAreLentAreAsGoodAsQueuedOnes)
{
    const Stream stream = makeStream({}, {.units = 60, .size = 90'000});
    std::uint32_t random = 7;
    const std::function<std::size_t()> slices[] = {
        [] { return std::size_t{64} << 10; },
        [] { return std::size_t{1} << 20; },
        [&random] { return std::size_t{(random = random * 1664525 + 1013904223) >> 12}; },
    };
    for (const bool isReluctant : {false, true}) {
        for (const auto& slice : slices) {
            Pushing pushing;
            Receiver& picture = pushing.receivers[0];
            if (isReluctant) picture.room = 0;
            pushing.push(stream.bytes, [&] {
                if (isReluctant) picture.ask([](auto& r) { return r.room += 2; });
                return slice();
            });
            picture.ask([](auto& r) { return r.room += 1000; });
            EXPECT_EQ(pushing.stream->CopyData(nullptr, 0), 0);
            ASSERT_TRUE(pushing.gets(mxf_stream_ended));
            expectSamples(pushing, stream);
            if (!isReluctant) {
                EXPECT_EQ(pushing.stream->Capacity(), CMxfStreamDemuxer::kQueueBytes);
            }
            mxfDemuxStreamClose(pushing.handle());
            EXPECT_EQ(pushing.stream->TotalConfirmed(), std::ssize(stream.bytes));
        }
    }
}

TEST(StreamDemuxer, AParseThreadThatIsLateDoesNotMakeTheQueueGrow)
{
    const Stream stream = makeStream({}, {.units = 80, .size = 100'000});
    Pushing pushing;
    pushing.onEventToo = [](std::int32_t) { std::this_thread::sleep_for(std::chrono::milliseconds{100}); };
    pushing.push(stream.bytes, [] { return std::size_t{256} << 10; });
    ASSERT_TRUE(pushing.gets(mxf_stream_ended));
    expectSamples(pushing, stream);
    EXPECT_EQ(pushing.stream->Capacity(), CMxfStreamDemuxer::kQueueBytes);
}

TEST(StreamDemuxer, TwoFieldsOfAFrameAreOneSample)
{
    const Bytes metadata = StandardFile{.pictureContainer = "06.0E.2B.34.04.01.01.0D.0D.01.03.01.02.10.60.09"}.Bytes();
    MxfBuilder builder;
    builder.bytes = PackBytes({.header = metadata.size()});
    putBytes(builder.bytes, metadata);
    for (std::uint8_t unit = 0; unit < 3; ++unit)
        builder.klv(kPictureKey, Bytes(10, unit)).klv(kPictureKey, Bytes(20, unit)).klv(kSoundKey, Bytes(100, 9));
    builder.partition({.kind = 4}).randomIndexPack();
    for (const std::size_t slice : {std::size_t{1}, builder.bytes.size()}) {
        Pushing pushing;
        pushing.push(builder.bytes, [slice] { return slice; });
        ASSERT_TRUE(pushing.gets(mxf_stream_ended));
        const std::vector<Taken>& taken = pushing.receivers[0].taken;
        ASSERT_EQ(taken.size(), 3U);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_EQ(taken[i].bytes, Bytes(30, static_cast<std::uint8_t>(i)));
    }
}

TEST(StreamDemuxer, ARunInAndBodyPartitionsInFrontAreSkipped)
{
    Stream stream = makeStream();
    Bytes front(1000, 0x06);
    putBytes(front, PackBytes({.kind = 3, .trailing = part(stream.bytes, 0, 400)}));
    for (Taken& picture : stream.pictures)
        picture.position += static_cast<std::int64_t>(front.size());
    putBytes(front, stream.bytes);
    Pushing pushing;
    pushing.push(front, [] { return std::size_t{100}; });
    ASSERT_TRUE(pushing.gets(mxf_stream_ended));
    expectSamples(pushing, stream);
}

TEST(StreamDemuxer, AStreamIsJoinedAtABodyPartitionWithMetadata)
{
    const Stream stream = makeStream({.kind = 3, .thisPartition = 123456});
    Pushing pushing;
    pushing.push(stream.bytes);
    ASSERT_TRUE(pushing.gets(mxf_stream_ended));
    expectSamples(pushing, stream);
    EXPECT_EQ(pushing.handle()->PartitionPosition(), 123456);
}

TEST(StreamDemuxer, HeadersThatCannotBeServedEndInError)
{
    const auto withKag = [](std::uint32_t kag) { return makeStream({.kag = kag}).bytes; };
    Bytes broken = makeStream().bytes;
    std::fill(broken.begin() + 108, broken.end(), std::uint8_t{0}); // no sets
    Bytes badPack = PackBytes({});
    badPack[19] = 79; // its value
    struct Case {
        const char* name;
        Bytes bytes;
        const char* message;
    };
    const Case cases[] = {
        {"OP-Atom", makeStream({.pattern = 0x0D01020110000000}).bytes, "error: Unsupported Op pattern!"},
        {"OP1b", makeStream({.pattern = 0x0D01020101020900}).bytes, "error: Unsupported Op pattern!"},
        {"larger than the queue", withKag(32U << 20), "error: the header is larger than the input queue"},
        {"no header metadata", broken, "parse headers failure"},
        {"pack too short", badPack, "error: a partition pack cannot be imported"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Pushing pushing;
        pushing.push(c.bytes);
        ASSERT_TRUE(pushing.gets(mxf_stream_failed));
        EXPECT_TRUE(pushing.reaches(kStateError));
        Bytes more(4U << 20);
        for (int i = 0; i < 12; ++i) // more than the queue holds
            pushing.push(more);
        EXPECT_TRUE(Pushing::eventually([&] { return pushing.stream->CopyData(nullptr, 0) == 0; }));
        mxfDemuxStreamClose(pushing.handle());
        EXPECT_THAT(pushing.events(), ElementsAre(3));
        EXPECT_THAT(pushing.sink.lines, testing::Contains(HasSubstr(c.message)));
    }
}

TEST(StreamDemuxer, PushesBehindTheEndAreDiscarded)
{
    const Stream stream = makeStream();
    Pushing pushing;
    pushing.push(stream.bytes);
    ASSERT_TRUE(pushing.gets(mxf_stream_ended));
    Bytes more(4U << 20);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(pushing.stream->CopyData(more.data(), static_cast<int>(more.size())), 4 << 20);
    EXPECT_EQ(pushing.handle()->State(), kStateFinished);
}

TEST(StreamDemuxer, StatesFollowTheBytes)
{
    const Stream stream = makeStream();
    Pushing pushing;
    EXPECT_EQ(pushing.handle()->State(), kStateFindPartition);
    pushing.push(part(stream.bytes, 0, 24));
    mxf_file_info info{};
    EXPECT_EQ(mxfDemuxStreamGetFileInfo(pushing.handle(), &info), -4);
    EXPECT_EQ(mxfDemuxStreamAddStream(pushing.handle(), 0, &pushing.receivers[0]), -4);
    pushing.handle()->Drain();
    EXPECT_EQ(pushing.handle()->State(), kStateFindPartition);
    pushing.push(part(stream.bytes, 24, 140));
    pushing.handle()->Drain();
    EXPECT_EQ(pushing.handle()->State(), kStateCollectHeader);
    pushing.push(part(stream.bytes, 140, stream.headerEnd - 1));
    pushing.handle()->Drain();
    EXPECT_EQ(pushing.handle()->State(), kStateCollectHeader);
    pushing.push(part(stream.bytes, stream.headerEnd - 1, stream.headerEnd));
    ASSERT_TRUE(pushing.gets(mxf_stream_header_parsed));
    EXPECT_TRUE(pushing.reaches(kStateStreaming));

    mxfDemuxStreamLockOutput(pushing.handle(), 1);
    EXPECT_EQ(mxfDemuxStreamGetFileInfo(pushing.handle(), &info), 0);
    EXPECT_EQ(info.duration, -1);
    EXPECT_EQ(info.file_size, -1);
    EXPECT_EQ(info.complete, 0U);
    EXPECT_EQ(info.stream_count, 2U);
    mxf_stream_format format{};
    EXPECT_EQ(mxfDemuxStreamGetStreamFormat(pushing.handle(), 0, &format), 0);
    EXPECT_EQ(format.width, 1920U);
    EXPECT_EQ(mxfDemuxStreamGetStreamFormat(pushing.handle(), 2, &format), -3);
    EXPECT_EQ(mxfDemuxStreamAddStream(pushing.handle(), 2, &pushing.receivers[2]), -3);
    EXPECT_EQ(mxfDemuxStreamAddStream(pushing.handle(), 0, &pushing.receivers[0]), -3) << "it has one";
    EXPECT_EQ(mxfDemuxStreamAddStream(pushing.handle(), 0, nullptr), -2);
    mxfDemuxStreamLockOutput(pushing.handle(), 0);

    pushing.push(part(stream.bytes, stream.headerEnd, stream.bytes.size()));
    ASSERT_TRUE(pushing.gets(mxf_stream_ended));
    expectSamples(pushing, stream);
    EXPECT_THAT(pushing.sink.lines, IsEmpty());
}

TEST(StreamDemuxer, WhatIsRefusedIsOfferedAgainAtTheNextPush)
{
    const Stream stream = makeStream({}, {.units = 40, .size = 1U << 20});
    Pushing pushing;
    pushing.receivers[0].room = 3;
    pushing.push(part(stream.bytes, 0, 8U << 20), [] { return std::size_t{4} << 20; });
    Receiver& picture = pushing.receivers[0];
    ASSERT_TRUE(Pushing::eventually([&] { return picture.ask([](auto& r) { return r.offers > r.taken.size(); }); }));
    const std::size_t offers = picture.ask([](auto& r) { return r.offers; });
    EXPECT_EQ(pushing.stream->CopyData(nullptr, 0), 0);
    EXPECT_TRUE(Pushing::eventually([&] { return picture.ask([&](auto& r) { return r.offers > offers; }); }));

    // The queue fills up, and a slice that it has no room for wakes as well.
    Bytes rest = part(stream.bytes, 8U << 20, stream.bytes.size());
    const int slice = 4 << 20;
    std::size_t at = 0;
    while (pushing.stream->CopyData(rest.data() + at, slice) == slice)
        at += static_cast<std::size_t>(slice);
    EXPECT_LT(at, std::size_t{32} << 20);
    picture.ask([](auto& r) { return r.room = 1000; });
    pushing.push(part(rest, at, rest.size()), [] { return std::size_t{4} << 20; });
    ASSERT_TRUE(pushing.gets(mxf_stream_ended));
    expectSamples(pushing, stream);
}

TEST(StreamDemuxer, AUnitThatCannotBeQueuedEndsInError)
{
    const Stream stream = makeStream({}, {.units = 1, .size = 40U << 20});
    Pushing pushing;
    pushing.push(stream.bytes, [] { return std::size_t{4} << 20; });
    ASSERT_TRUE(pushing.gets(mxf_stream_failed));
    EXPECT_THAT(pushing.events(), ElementsAre(1, 3));
}

TEST(StreamDemuxer, LockedOutputKeepsSamplesBackAndPushesGoOn)
{
    const Stream stream = makeStream();
    Pushing pushing;
    mxfDemuxStreamLockOutput(pushing.handle(), 1);
    mxfDemuxStreamLockOutput(pushing.handle(), 1);
    pushing.push(stream.bytes, [] { return std::size_t{500}; });
    mxfDemuxStreamLockOutput(pushing.handle(), 0);
    std::thread([&] { mxfDemuxStreamLockOutput(pushing.handle(), 0); }).join(); // not its lock
    pushing.handle()->Drain();
    EXPECT_THAT(pushing.events(), IsEmpty());
    mxfDemuxStreamLockOutput(pushing.handle(), 0);
    ASSERT_TRUE(pushing.gets(mxf_stream_ended)) << "without another push";
    expectSamples(pushing, stream);
    mxfDemuxStreamLockOutput(pushing.handle(), 0); // one too many
}

TEST(StreamDemuxer, StreamsComeAndGoWhileBytesArePushed)
{
    const Stream stream = makeStream({}, {.units = 2000, .size = 100});
    Pushing pushing;
    std::atomic<bool> isDone{false};
    std::thread other([&] {
        Receiver mine;
        while (!isDone) {
            if (mxfDemuxStreamAddStream(pushing.handle(), 0, &mine) != 0 &&
                mxfDemuxStreamRemoveStream(pushing.handle(), 0) == 0)
                continue;
            std::this_thread::yield();
            (void)mxfDemuxStreamRemoveStream(pushing.handle(), 0);
        }
    });
    pushing.push(stream.bytes, [] { return std::size_t{4000}; });
    EXPECT_TRUE(pushing.gets(mxf_stream_ended));
    isDone = true;
    other.join();
    EXPECT_EQ(pushing.receivers[1].ask([](auto& r) { return r.taken.size(); }), 2000U);
}

TEST(StreamDemuxer, APushIsUsedAtWhateverPointTheThreadIsOnItsWayToSleep)
{
    const Stream stream = makeStream({}, {.units = 1000, .size = 100});
    Pushing pushing;
    pushing.push(part(stream.bytes, 0, stream.headerEnd));
    ASSERT_TRUE(pushing.gets(mxf_stream_header_parsed));
    Receiver& picture = pushing.receivers[0];
    std::size_t at = stream.headerEnd;
    for (std::size_t i = 0; i < stream.pictures.size(); ++i) {
        const std::size_t end = static_cast<std::size_t>(stream.pictures[i].position) + stream.pictures[i].bytes.size();
        pushing.push(part(stream.bytes, at, end));
        at = end;
        const auto isTaken = [&] { return picture.ask([i](auto& r) { return r.taken.size() > i; }); };
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds{10};
        while (!isTaken())
            ASSERT_LT(std::chrono::steady_clock::now(), limit) << "asleep in front of picture " << i;
        const auto pause = std::chrono::microseconds{i % (2 * CMxfStreamDemuxer::kLingerMicroseconds)};
        for (const auto start = std::chrono::steady_clock::now(); std::chrono::steady_clock::now() - start < pause;) {
        }
    }
}

TEST(StreamDemuxer, ClosingNeverHangs)
{
    const Stream stream = makeStream();
    const std::size_t cuts[] = {
        0, 10, 50, 200, stream.headerEnd, stream.headerEnd + 500, stream.essenceEnd, stream.bytes.size()};
    Pushing pushing;
    for (int round = 0; round < 20; ++round) {
        for (const std::size_t cut : cuts) {
            const bool isLocked = round % 3 == 1;
            if (isLocked) mxfDemuxStreamLockOutput(pushing.handle(), 1);
            Bytes slice = part(stream.bytes, 0, cut);
            (void)pushing.stream->CopyData(slice.data(), static_cast<int>(cut));
            if (round % 2 == 1) std::this_thread::yield();
            if (round % 4 == 3) std::this_thread::sleep_for(std::chrono::milliseconds{1});
            mxfDemuxStreamClose(pushing.handle());
            mxfDemuxStreamClose(pushing.handle());
            EXPECT_EQ(pushing.stream->Capacity(), 0U);
            if (isLocked) mxfDemuxStreamLockOutput(pushing.handle(), 0);
            ASSERT_EQ(pushing.open(), 0);
        }
    }
}

TEST(StreamDemuxer, ClosingWhileAnotherThreadPushesDoesNotHang)
{
    const Stream stream = makeStream({}, {.units = 200});
    for (int round = 0; round < 10; ++round) {
        Pushing pushing;
        std::atomic<bool> isDone{false};
        std::thread pusher([&] {
            Bytes bytes = stream.bytes;
            for (std::size_t at = 0; at + 100 < bytes.size() && !isDone; at += 100)
                (void)pushing.stream->CopyData(bytes.data() + at, 100);
        });
        std::this_thread::sleep_for(std::chrono::milliseconds{round});
        mxfDemuxStreamClose(pushing.handle());
        isDone = true;
        pusher.join();
    }
}

TEST(StreamDemuxer, ASecondOpenStartsAfresh)
{
    const Stream stream = makeStream();
    Pushing pushing;
    pushing.push(part(stream.bytes, 0, stream.essenceEnd - 50));
    ASSERT_TRUE(pushing.gets(mxf_stream_header_parsed));
    ASSERT_EQ(pushing.open(), 0);
    for (auto& [index, receiver] : pushing.receivers)
        receiver.taken.clear();
    pushing.push(stream.bytes);
    ASSERT_TRUE(pushing.gets(mxf_stream_ended));
    expectSamples(pushing, stream);
}

TEST(StreamDemuxer, CallbacksMayCloseAndMayNotPush)
{
    const Stream stream = makeStream();
    Pushing pushing;
    int pushed = 0, opened = 0;
    pushing.onEventToo = [&](std::int32_t) {
        unsigned char byte = 0;
        pushed = pushing.stream->CopyData(&byte, 1);
        opened = pushing.open();
        mxfDemuxStreamLockOutput(pushing.handle(), 1);
        mxfDemuxStreamLockOutput(pushing.handle(), 0);
        mxfDemuxStreamClose(pushing.handle());
    };
    SMemoryStream* const queue = pushing.stream;
    Bytes bytes = stream.bytes;
    EXPECT_GT(queue->CopyData(bytes.data(), static_cast<int>(bytes.size())), 0);
    ASSERT_TRUE(pushing.gets(mxf_stream_header_parsed));
    mxfDemuxStreamClose(pushing.handle());
    EXPECT_EQ(pushed, -1);
    EXPECT_EQ(opened, -1);
    EXPECT_THAT(pushing.events(), ElementsAre(1)) << "the thread ended after the callback";
}

TEST(StreamDemuxer, NullArgumentsAreRefused)
{
    SMemoryStream* stream = nullptr;
    const mxf_stream_demuxer_config config{};
    EXPECT_EQ(mxfDemuxStreamOpen(nullptr, &config, nullptr, &stream), -2);
    EXPECT_EQ(mxfDemuxStreamGetFileInfo(nullptr, nullptr), -2);
    EXPECT_EQ(mxfDemuxStreamGetIdentification(nullptr, 0, nullptr), -2);
    EXPECT_EQ(mxfDemuxStreamGetTopPack(nullptr, 0, nullptr, true), -2);
    EXPECT_EQ(mxfDemuxStreamGetStreamFormat(nullptr, 0, nullptr), -2);
    EXPECT_EQ(mxfDemuxStreamGetDmFramework(nullptr, 0, nullptr, nullptr, nullptr), -2);
    EXPECT_EQ(mxfDemuxStreamAddStream(nullptr, 0, nullptr), -2);
    EXPECT_EQ(mxfDemuxStreamRemoveStream(nullptr, 0), -2);
    EXPECT_EQ(mxfDemuxStreamLockOutput(nullptr, 1), -2);
    mxfDemuxStreamFree(nullptr);

    Pushing pushing;
    EXPECT_EQ(mxfDemuxStreamOpen(pushing.handle(), &config, nullptr, nullptr), -2);
    stream = pushing.stream;
    EXPECT_EQ(mxfDemuxStreamOpen(pushing.handle(), nullptr, nullptr, &stream), -2);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(pushing.stream->CopyData(nullptr, 1), -2);
    EXPECT_EQ(mxfDemuxStreamOpen(pushing.handle(), &config, nullptr, &stream), 0) << "no callback, no sink";
    Bytes bytes = makeStream({.pattern = 0x0D01020110000000}).bytes;
    EXPECT_GT(stream->CopyData(bytes.data(), static_cast<int>(bytes.size())), 0);
    EXPECT_TRUE(pushing.reaches(kStateError));
}

} // namespace
} // namespace TamrelMxf::test
