#include "bench/MxfPlaces.h"

#include "bench/Measure.h"

#include <array>
#include <filesystem>
#include <fstream>

namespace bench {
namespace {

class Input {
public:
    explicit Input(const std::string& path) : in_{path, std::ios::binary}, path_{path} {}

    void seek(std::uint64_t to) { in_.seekg(static_cast<std::streamoff>(to)); }
    std::uint64_t position() { return static_cast<std::uint64_t>(in_.tellg()); }
    std::uint64_t number(int bytes)
    {
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i)
            value = value << 8 | static_cast<unsigned char>(in_.get());
        if (!in_) fail("not the MXF that was expected: " + path_);
        return value;
    }
    /// Steps over a key and returns the length behind it.
    std::uint64_t enterKlv()
    {
        if (number(4) != 0x060E2B34) fail("no key where one was expected: " + path_);
        (void)number(8);
        (void)number(4);
        const std::uint64_t first = number(1);
        return first < 0x80 ? first : number(static_cast<int>(first & 0x7F));
    }

private:
    std::ifstream in_;
    std::string path_;
};

} // namespace

MxfPlaces placesOf(const std::string& path)
{
    const std::uint64_t size = std::filesystem::file_size(path);
    Input in{path};
    in.seek(size - 4);
    in.seek(size - in.number(4));
    std::vector<std::uint64_t> partitions;
    for (std::uint64_t entries = (in.enterKlv() - 4) / 12; entries > 0; --entries) {
        (void)in.number(4); // the body stream
        partitions.push_back(in.number(8));
    }
    if (partitions.size() < 2) fail("too few partitions in " + path);

    MxfPlaces places{.headerBytes = partitions[1], .footerBytes = size - partitions.back(), .indexTables = {}};
    for (const std::uint64_t partition : partitions) {
        in.seek(partition);
        const std::uint64_t length = in.enterKlv();
        const std::uint64_t value = in.position();
        in.seek(value + 4); // versions
        const std::uint64_t grid = in.number(4);
        (void)in.number(8), (void)in.number(8), (void)in.number(8); // this, previous and footer partition
        const std::uint64_t headerBytes = in.number(8);
        const std::uint64_t indexBytes = in.number(8);
        const std::uint64_t end = value + length - partition;
        const std::uint64_t behindPack = grid > 1 ? (end + grid - 1) / grid * grid : end;
        if (indexBytes > 0) places.indexTables.push_back({partition + behindPack + headerBytes, indexBytes});
    }
    return places;
}

} // namespace bench
