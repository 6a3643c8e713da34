#include "fcp/EventCodec.h"

#include "tests/support/Bytes.h"

#include <gtest/gtest.h>

namespace zanfcp {
namespace {

using test::Bytes;

EventMessage sample()
{
    EventMessage message;
    message.eventClass = FourCC{"KeyG"};
    message.eventID = FourCC{"iXML"};
    message.returnID = 0x0102030405060708;
    message.target = {FourCC{"sign"}, "KeyG"};
    message.parameters = {{FourCC{"fcpP"}, {FourCC{"furl"}, "/a"}}, {FourCC{"xmlD"}, {FourCC{"utf8"}, "<x/>"}}};
    return message;
}

/// The sample as docs/event-channel.md describes it, written down by hand.
Bytes sampleBytes()
{
    return Bytes{}
        .text("zfcp")
        .u16(1)
        .u16(1)
        .u64(28 + 4 + 16 + 2 + 16 + 4)
        .text("KeyG")
        .text("iXML")
        .u64(0x0102030405060708)
        .text("sign")
        .u32(4)
        .u32(2)
        .text("KeyG")
        .text("fcpP")
        .text("furl")
        .u64(2)
        .text("/a")
        .text("xmlD")
        .text("utf8")
        .u64(4)
        .text("<x/>");
}

std::string written(const EventMessage& message, std::size_t step)
{
    std::string bytes;
    EventMessageWriter writer{message, MessageKind::event};
    std::vector<iovec> room(3);
    while (!writer.done()) {
        std::size_t left = step;
        for (const iovec& piece : writer.next(room)) {
            const std::size_t count = std::min(left, piece.iov_len);
            bytes.append(static_cast<const char*>(piece.iov_base), count);
            left -= count;
        }
        writer.advance(step - left);
    }
    return bytes;
}

TEST(EventCodec, BytesAreThoseOfTheDescription)
{
    for (const std::size_t step : {1U, 7U, 1000U})
        EXPECT_EQ(written(sample(), step), sampleBytes().str()) << step;
}

TEST(EventCodec, PiecesOfAnySizeMakeTheMessage)
{
    EventMessage large = sample();
    large.parameters[1].descriptor.bytes.assign(300'000, 'x');
    for (const EventMessage& message : {sample(), large, EventMessage{}}) {
        const std::string bytes = written(message, 4096);
        for (const std::size_t step : {std::size_t{1}, std::size_t{13}, std::size_t{65'537}, bytes.size()}) {
            EventMessageReader reader{MessageKind::event};
            std::string_view left = bytes;
            while (!left.empty()) {
                ASSERT_FALSE(reader.complete());
                left.remove_prefix(reader.feed(left.substr(0, step)));
            }
            ASSERT_TRUE(reader.complete());
            EXPECT_EQ(reader.take(), message);
        }
    }
}

TEST(EventCodec, NextMessageIsLeftAlone)
{
    const std::string two = sampleBytes().str() + sampleBytes().str();
    EventMessageReader reader{MessageKind::event};
    EXPECT_EQ(reader.feed(two), two.size() / 2);
    EXPECT_EQ(reader.take(), sample());
    EXPECT_EQ(reader.feed(std::string_view(two).substr(two.size() / 2)), two.size() / 2);
    EXPECT_TRUE(reader.complete());
}

TEST(EventCodec, ReportsEachFault)
{
    const Bytes valid = sampleBytes();
    struct Case {
        const char* name;
        Bytes bytes;
        OSStatus expected;
    };
    const Case cases[] = {
        {"other magic", valid.withU8(0, 'Z'), -1702},
        {"version 2", valid.withU8(5, 2), -1706},
        {"a reply where an event belongs", valid.withU8(7, 2), -1702},
        {"length shorter than the head", valid.withU8(15, 27), -1702},
        {"length one too long", valid.withU8(15, 71), -1702},
        {"length one too short", valid.withU8(15, 69), -1702},
        {"length above the limit", valid.withU8(8, 0x7F), -50},
        {"target does not fit", valid.withU32(36, 43), -1702},
        {"target above the limit", valid.withU32(36, 257), -50},
        {"parameters above the limit", valid.withU32(40, 33), -50},
        {"more parameters than there are", valid.withU32(40, 3), -1702},
        {"fewer parameters than there are", valid.withU32(40, 1), -1702},
        {"parameter does not fit", valid.withU8(63, 23), -1702},
        {"length of a parameter near 2^64", valid.with(56, Bytes{}.u64(~0ULL)), -1702},
        {"a keyword twice", valid.with(66, Bytes{}.text("fcpP")), -1702},
    };
    for (const Case& c : cases) {
        EventMessageReader reader{MessageKind::event};
        reader.feed(c.bytes.str());
        EXPECT_EQ(reader.fault(), c.expected) << c.name;
        EXPECT_FALSE(reader.complete()) << c.name;
        EXPECT_TRUE(reader.space().empty()) << c.name;
    }
    EventMessageReader small{MessageKind::event, {.parameterBytes = 3}};
    small.feed(valid.str());
    EXPECT_EQ(small.fault(), -50) << "parameter above the limit";
}

TEST(EventCodec, MemoryIsNotTakenOnTheSendersWord)
{
    const Bytes liar = Bytes{}
                           .text("zfcp")
                           .u16(1)
                           .u16(1)
                           .u64(400'000'044)
                           .text("KeyGiXML")
                           .u64(1)
                           .text("null")
                           .u32(0)
                           .u32(1)
                           .text("xmlDutf8")
                           .u64(400'000'000);
    EventMessageReader reader{MessageKind::event};
    reader.feed(liar.str());
    ASSERT_EQ(reader.fault(), 0);
    ASSERT_EQ(reader.space().size(), 65'536U);
    reader.advance(65'536);
    EXPECT_LE(reader.space().size(), 7 * 65'536U); // eight times what arrived at the most
}

} // namespace
} // namespace zanfcp
