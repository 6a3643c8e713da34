#include "mxf/mxfDemuxStream.h"

#include "mxf/Status.h"
#include "mxf/mxfDemux.h"
#include "mxf/stream/MxfStreamDemuxer.h"

using TamrelMxf::CMxfStreamDemuxer;
using TamrelMxf::kNullArgument;
using TamrelMxf::kSuccess;
using TamrelMxf::SMemoryStream;

CMxfStreamDemuxer* mxfDemuxStreamNew()
{
    return new CMxfStreamDemuxer;
}

int mxfDemuxStreamOpen(CMxfStreamDemuxer* demuxer, const mxf_stream_demuxer_config* config, CSnitcher* sink,
                       SMemoryStream** stream)
{
    if (demuxer == nullptr || stream == nullptr) return kNullArgument;
    *stream = nullptr;
    const int status = demuxer->Open(config, sink);
    if (status == kSuccess) *stream = demuxer;
    return status;
}

int mxfDemuxStreamGetFileInfo(CMxfStreamDemuxer* demuxer, mxf_file_info* info)
{
    return mxfDemuxGetFileInfo(demuxer, info);
}

int mxfDemuxStreamGetIdentification(CMxfStreamDemuxer* demuxer, int index, mxf_identification* identification)
{
    return mxfDemuxGetIdentification(demuxer, index, identification);
}

int mxfDemuxStreamGetTopPack(CMxfStreamDemuxer* demuxer, int index, mxf_top_pack* pack, bool material)
{
    return mxfDemuxGetTopPack(demuxer, index, pack, material);
}

int mxfDemuxStreamGetStreamFormat(CMxfStreamDemuxer* demuxer, int stream, mxf_stream_format* format)
{
    return mxfDemuxGetStreamFormat(demuxer, stream, format);
}

int mxfDemuxStreamGetDmFramework(CMxfStreamDemuxer* demuxer, int index, mxf_dmd_framework* framework,
                                 std::uint32_t* count, const mxf_dmd_framework** list)
{
    return mxfDemuxGetDmFramework(demuxer, index, framework, count, list);
}

int mxfDemuxStreamAddStream(CMxfStreamDemuxer* demuxer, int stream, SMediaStream* receiver)
{
    return demuxer == nullptr ? kNullArgument : demuxer->AddStream(0, stream, receiver);
}

int mxfDemuxStreamRemoveStream(CMxfStreamDemuxer* demuxer, int stream)
{
    return demuxer == nullptr ? kNullArgument : demuxer->RemoveStream(0, stream);
}

int mxfDemuxStreamLockOutput(CMxfStreamDemuxer* demuxer, int lock)
{
    if (demuxer == nullptr) return kNullArgument;
    demuxer->LockOutput(lock != 0);
    return kSuccess;
}

int mxfDemuxStreamDrain(CMxfStreamDemuxer* demuxer)
{
    if (demuxer == nullptr) return kNullArgument;
    demuxer->Drain();
    return kSuccess;
}

void mxfDemuxStreamClose(CMxfStreamDemuxer* demuxer)
{
    demuxer->Close();
}

void mxfDemuxStreamFree(CMxfStreamDemuxer* demuxer)
{
    mxfDemuxFree(demuxer);
}
