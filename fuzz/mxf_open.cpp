#include "fuzz/MemoryFile.h"
#include "mxf/mxfDemux.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

void ask(TamrelMxf::CMxfDemuxer* demuxer, const mxf_file_info& info)
{
    for (std::uint32_t i = 0; i < info.stream_count; ++i) {
        mxf_stream_format format{};
        require(mxfDemuxGetStreamFormat(demuxer, static_cast<int>(i), &format) == 0);
        require(std::memchr(format.codec_name, 0, sizeof format.codec_name) != nullptr);
        require((format.extra_data == nullptr) == (format.extra_data_size == 0));
        if (i > 100) break; // each may look at the essence
    }
    mxf_stream_format format{};
    require(mxfDemuxGetStreamFormat(demuxer, static_cast<int>(info.stream_count), &format) == -3);
    for (std::uint32_t i = 0; i < info.identification_count; ++i) {
        mxf_identification identification{};
        require(mxfDemuxGetIdentification(demuxer, static_cast<int>(i), &identification) == 0);
        require(identification.product_name[128] == 0);
    }
    mxf_top_pack pack{};
    for (int i = 0; i < 8; ++i)
        if (mxfDemuxGetTopPack(demuxer, i, &pack, i == 0) == 0) require(pack.name[1023] == 0);
    std::uint32_t count = 0;
    require(mxfDemuxGetDmFramework(demuxer, 0, nullptr, &count, nullptr) == 0);
    std::vector<const mxf_dmd_framework*> list(count);
    require(mxfDemuxGetDmFramework(demuxer, 0, nullptr, &count, list.data()) == 0);
    std::size_t letters = 0;
    for (const mxf_dmd_framework* framework : list)
        for (std::uint32_t i = 0; i < framework->property_count; ++i)
            letters += std::strlen(framework->properties[i].name) + std::strlen(framework->properties[i].value);
    (void)letters;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    MemoryFile memory{data, size};
    mxf_demuxer_config config = memory.config();
    TamrelMxf::CMxfDemuxer* const demuxer = mxfDemuxNew();
    mxf_file_info info{};
    if (mxfDemuxOpen(demuxer, "memory", &config, nullptr) == 0) {
        require(mxfDemuxGetFileInfo(demuxer, &info) == 0);
        ask(demuxer, info);
    } else {
        require(mxfDemuxGetFileInfo(demuxer, &info) == -4);
    }
    mxfDemuxFree(demuxer);
    return 0;
}
