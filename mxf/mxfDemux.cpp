#include "mxf/mxfDemux.h"

#include "mxf/Status.h"
#include "mxf/demuxer/MxfDemuxer.h"

using TamrelMxf::CMxfDemuxer;
using TamrelMxf::kNullArgument;

CMxfDemuxer* mxfDemuxNew()
{
    return new CMxfDemuxer;
}

int mxfDemuxOpen(CMxfDemuxer* demuxer, const char* path, const mxf_demuxer_config* config, CSnitcher* sink)
{
    return demuxer == nullptr ? kNullArgument : demuxer->Open(path, config, sink);
}

int mxfDemuxGetFileInfo(CMxfDemuxer* demuxer, mxf_file_info* info)
{
    return demuxer == nullptr ? kNullArgument : demuxer->GetFileInfo(info);
}

int mxfDemuxGetIdentification(CMxfDemuxer* demuxer, int index, mxf_identification* identification)
{
    return demuxer == nullptr ? kNullArgument : demuxer->GetIdentification(identification, index);
}

int mxfDemuxGetTopPack(CMxfDemuxer* demuxer, int index, mxf_top_pack* pack, bool material)
{
    return demuxer == nullptr ? kNullArgument : demuxer->GetTopPack(pack, material, index);
}

int mxfDemuxGetStreamFormat(CMxfDemuxer* demuxer, int stream, mxf_stream_format* format)
{
    return demuxer == nullptr ? kNullArgument : demuxer->GetStreamFormat(stream, format, true, true);
}

int mxfDemuxGetDmFramework(CMxfDemuxer* demuxer, int index, mxf_dmd_framework* framework, std::uint32_t* count,
                           const mxf_dmd_framework** list)
{
    return demuxer == nullptr ? kNullArgument : demuxer->GetDmFramework(index, framework, count, list);
}

CMxfDemuxer* mxfDemuxClose(CMxfDemuxer* demuxer)
{
    if (demuxer != nullptr) demuxer->Close();
    return demuxer;
}

void mxfDemuxFree(CMxfDemuxer* demuxer)
{
    delete demuxer;
}
