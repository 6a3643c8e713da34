#include "mxf/io/ExternalIoSource.h"

#include "tests/support/MemorySource.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

using zanfcp::test::MemorySource;

/// What the callbacks below work on; its address is the context, and also the handle they are given.
struct Caller {
    MemorySource data{{10, 11, 12, 13, 14, 15, 16, 17, 18, 19}};
    std::string openedPath;
    int openStatus = 0;
    int closes = 0;
    std::int32_t extra = 0; ///< added to what read and write truly did
};

Caller& callerOf(void* context, void* handle)
{
    EXPECT_EQ(handle, static_cast<char*>(context) + 1);
    return *static_cast<Caller*>(context);
}

external_io callbacksOf(Caller& caller)
{
    external_io io{};
    io.context = &caller;
    io.open = [](void* context, const char* path, void** handle) {
        auto& self = *static_cast<Caller*>(context);
        self.openedPath = path;
        *handle = static_cast<char*>(context) + 1;
        return static_cast<std::int32_t>(self.openStatus);
    };
    io.seek = [](void* context, void* handle, std::int64_t position) {
        MemorySource& data = callerOf(context, handle).data;
        return static_cast<std::int32_t>(data.Seek(position < 0 ? data.GetSize() : position));
    };
    io.read = [](void* context, void* handle, void* buffer, std::size_t count) {
        Caller& self = callerOf(context, handle);
        return static_cast<std::int32_t>(self.data.Read(buffer, count)) + self.extra;
    };
    io.close = [](void* context, void** handle) {
        ++callerOf(context, *handle).closes;
        return std::int32_t{0};
    };
    io.get_size = [](void* context, void* handle) { return callerOf(context, handle).data.GetSize(); };
    io.write = [](void* context, void* handle, const void*, std::size_t count) {
        return static_cast<std::int32_t>(count) + callerOf(context, handle).extra;
    };
    return io;
}

TEST(ExternalIoSource, ModeFollowsFromTheMembersThatAreSet)
{
    struct Case {
        const char* name;
        void (*edit)(external_io&, MemorySource&);
        bool opens;
    };
    const Case cases[] = {
        {"all callbacks", [](external_io&, MemorySource&) {}, true},
        {"no write callback", [](external_io& io, MemorySource&) { io.write = nullptr; }, true},
        {"neither context nor seek", [](external_io& io, MemorySource&) { io.context = nullptr, io.seek = nullptr; },
         false},
        {"no open", [](external_io& io, MemorySource&) { io.open = nullptr; }, false},
        {"no seek", [](external_io& io, MemorySource&) { io.seek = nullptr; }, false},
        {"no read", [](external_io& io, MemorySource&) { io.read = nullptr; }, false},
        {"no close", [](external_io& io, MemorySource&) { io.close = nullptr; }, false},
        {"no size", [](external_io& io, MemorySource&) { io.get_size = nullptr; }, false},
        {"nothing", [](external_io& io, MemorySource&) { io = {}; }, false},
        {"object alone", [](external_io& io, MemorySource& object) { io = {}, io.context = &object; }, true},
        {"object with open and write",
         [](external_io& io, MemorySource& object) {
             io.seek = nullptr, io.read = nullptr, io.close = nullptr, io.get_size = nullptr;
             io.context = &object;
         },
         true},
        {"object and a read callback",
         [](external_io& io, MemorySource& object) {
             io.seek = nullptr, io.close = nullptr, io.get_size = nullptr;
             io.context = &object;
         },
         false},
        {"object that does not open",
         [](external_io& io, MemorySource& object) {
             io = {}, io.context = &object;
             object.openStatus = 3;
         },
         false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Caller caller;
        MemorySource object{{1, 2, 3}};
        external_io io = callbacksOf(caller);
        c.edit(io, object);
        EXPECT_EQ(CExternalIoSource2::Create("x.mxf", io, 0) != nullptr, c.opens);
        CExternalIoSource bare;
        EXPECT_EQ(bare.Init("x.mxf", io, 0), c.opens ? 0 : -1);
    }
}

TEST(ExternalIoSource, KeepsThePositionOfTheCallbacks)
{
    Caller caller;
    {
        CExternalIoSource source;
        ASSERT_EQ(source.Init("a.mxf", callbacksOf(caller), 0), 0);
        EXPECT_EQ(caller.openedPath, "a.mxf");
        EXPECT_EQ(source.GetPos(), 0);
        EXPECT_EQ(source.GetSize(), 10);
        std::uint8_t buffer[16] = {};
        EXPECT_EQ(source.Seek(4), 0);
        EXPECT_EQ(source.Read(buffer, 4), 4);
        EXPECT_EQ(buffer[0], 14);
        EXPECT_EQ(source.GetPos(), 8);
        EXPECT_EQ(source.Read(buffer, 16), 2);
        EXPECT_EQ(source.GetPos(), 10);
        EXPECT_EQ(source.Write(buffer, 5), 5);
        EXPECT_EQ(source.GetPos(), 15);
        EXPECT_EQ(source.GetWritten(), 5);
        EXPECT_EQ(source.Seek(-1), 0);
        EXPECT_EQ(source.GetPos(), 10) << "a negative place is the end of the data";
        caller.data.seekError = 6;
        EXPECT_EQ(source.Seek(2), 6);
        EXPECT_EQ(source.GetPos(), 10);
    }
    EXPECT_EQ(caller.closes, 1);
}

TEST(ExternalIoSource, ErrorsAndFalseCountsDoNotMoveThePositionForward)
{
    Caller caller;
    CExternalIoSource source;
    ASSERT_EQ(source.Init("a.mxf", callbacksOf(caller), 0), 0);
    std::uint8_t buffer[4] = {};
    ASSERT_EQ(source.Seek(3), 0);
    caller.data.readError = -9;
    EXPECT_EQ(source.Read(buffer, 4), -9);
    EXPECT_EQ(source.GetPos(), 3);
    caller.data.readError = 0;
    caller.extra = 1;
    EXPECT_EQ(source.Read(buffer, 4), -1) << "5 bytes of 4";
    EXPECT_EQ(source.GetPos(), -1);
    EXPECT_EQ(source.Write(buffer, 4), -1);
}

TEST(ExternalIoSource, AnswersWhenClosedWithoutCallingTheCaller)
{
    Caller caller;
    CExternalIoSource source;
    external_io io = callbacksOf(caller);
    io.write = nullptr;
    ASSERT_EQ(source.Init("a.mxf", io, 0), 0);
    std::uint8_t buffer[4] = {};
    EXPECT_EQ(source.Write(buffer, 4), 0) << "no write callback";
    EXPECT_EQ(source.Open("b.mxf", 0), 1) << "open already";
    EXPECT_EQ(source.Close(), 0);
    EXPECT_EQ(source.Close(), 0);
    EXPECT_EQ(caller.closes, 1);
    EXPECT_EQ(source.GetPos(), -1);
    EXPECT_EQ(source.GetSize(), -1);
    EXPECT_EQ(source.Seek(0), -1);
    EXPECT_EQ(source.Read(buffer, 4), 0);
    EXPECT_EQ(caller.data.reads, 0);
    EXPECT_EQ(source.SetBufferSize(100), -1);
    EXPECT_EQ(source.Open("b.mxf", 0), 0);
    EXPECT_EQ(caller.openedPath, "b.mxf");
}

TEST(ExternalIoSource, CloseCallbackIsNotCalledAfterAFailedOpen)
{
    Caller caller;
    caller.openStatus = 1;
    EXPECT_EQ(CExternalIoSource2::Create("a.mxf", callbacksOf(caller), 0), nullptr);
    EXPECT_EQ(caller.closes, 0);
}

TEST(ExternalIoSource, ObjectDoesAllTheWorkAndIsClosedOnce)
{
    MemorySource object{{1, 2, 3, 4}};
    {
        external_io io{};
        io.context = static_cast<CMediaSource*>(&object);
        const auto source = CExternalIoSource2::Create("a.mxf", io, 0);
        ASSERT_NE(source, nullptr);
        EXPECT_EQ(source->GetSize(), 4);
        EXPECT_EQ(source->GetBufferSize(), 8192);
        EXPECT_EQ(source->Seek(1), 0);
        std::uint8_t buffer[4] = {};
        EXPECT_EQ(source->Read(buffer, 2), 2);
        EXPECT_EQ(buffer[1], 3);
        EXPECT_EQ(object.reads, 1);
        EXPECT_EQ(source->Write(buffer, 3), 3);
        EXPECT_EQ(object.place, 3) << "written where the last read ended, not where the cache did";
    }
    EXPECT_EQ(object.closes, 1);
}

} // namespace
