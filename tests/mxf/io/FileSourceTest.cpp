#include "mxf/io/BufferedFileSource.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

std::string readText(CMediaSource& source, std::size_t count)
{
    std::string text(count, '\0');
    const std::int64_t got = source.Read(text.data(), count);
    text.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
    return text;
}

TEST(FileSource, ReadsSeeksAndRefusesToWrite)
{
    const zanfcp::test::TempFolder folder;
    const std::string path = folder.write("a.mxf", "0123456789");
    CBufferedFileSource source;
    EXPECT_EQ(source.GetPos(), -1);
    EXPECT_EQ(source.GetSize(), -1);
    EXPECT_EQ(source.Seek(0), -1);
    EXPECT_EQ(source.Open(nullptr, 0), -1);
    EXPECT_EQ(source.Open(folder.file("none").c_str(), 0), -1);
    ASSERT_EQ(source.Open(path.c_str(), 0), 0);
    EXPECT_EQ(source.Open(path.c_str(), 0), 1);
    EXPECT_EQ(source.GetSize(), 10);
    EXPECT_EQ(source.Seek(7), 0);
    EXPECT_EQ(readText(source, 100), "789");
    EXPECT_EQ(source.GetPos(), 10);
    EXPECT_EQ(source.Write("x", 1), -12345);
    EXPECT_EQ(source.GetBufferSize(), -1);
    EXPECT_EQ(source.Close(), 0);
    EXPECT_EQ(source.GetSize(), -1);
}

TEST(FileSource, SeesWhatIsWrittenAfterItsEndWasMet)
{
    const zanfcp::test::TempFolder folder;
    const std::string path = folder.write("growing.mxf", "0123");
    CBufferedFileSource source;
    ASSERT_EQ(source.Open(path.c_str(), 0), 0);
    EXPECT_EQ(readText(source, 10), "0123");
    std::ofstream{path, std::ios::app} << "4567";
    EXPECT_EQ(readText(source, 10), "4567");
    EXPECT_EQ(source.GetSize(), 8);
}

TEST(FileSource, ChangingTheBufferKeepsThePlace)
{
    const zanfcp::test::TempFolder folder;
    std::string content(100'000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>('a' + i * i % 23);
    const std::string path = folder.write("a.mxf", content);
    for (const std::uint32_t atOpen : {0u, 1u, 4096u}) {
        SCOPED_TRACE(atOpen);
        CBufferedFileSource source;
        EXPECT_EQ(source.SetBufferSize(atOpen), 0);
        ASSERT_EQ(source.Open(path.c_str(), 0), 0);
        std::string got = readText(source, 1000);
        for (const std::uint32_t size : {64u, 0u, 1u, 65536u}) {
            EXPECT_EQ(source.SetBufferSize(size), 0);
            got += readText(source, 1000);
        }
        EXPECT_EQ(got, content.substr(0, 5000));
    }
}

TEST(FileSource, CreateReadsThroughTheCache)
{
    const zanfcp::test::TempFolder folder;
    const std::string path = folder.write("a.mxf", "0123456789");
    const auto source = CBufferedFileSource2::Create(path.c_str(), 0);
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(source->GetBufferSize(), 8192);
    EXPECT_EQ(source->GetPos(), 0);
    EXPECT_EQ(readText(*source, 4), "0123");
    EXPECT_EQ(readText(*source, 8), "456789");
    EXPECT_EQ(readText(*source, 8), "");
    EXPECT_EQ(CBufferedFileSource2::Create(folder.file("none").c_str(), 0), nullptr);
    EXPECT_EQ(CBufferedFileSource2::Create(nullptr, 0), nullptr);
}

} // namespace
