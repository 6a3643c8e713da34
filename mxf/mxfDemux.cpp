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

int mxfDemuxCreateParser(CMxfDemuxer* demuxer, int file)
{
    return demuxer == nullptr ? kNullArgument : demuxer->CreateParser(file);
}

int mxfDemuxFreeParser(CMxfDemuxer* demuxer, int file)
{
    return demuxer == nullptr ? kNullArgument : demuxer->FreeParser(file);
}

int mxfDemuxAddStream(CMxfDemuxer* demuxer, int file, int stream, SMediaStream* receiver)
{
    return demuxer == nullptr ? kNullArgument : demuxer->AddStream(file, stream, receiver);
}

int mxfDemuxRemoveStream(CMxfDemuxer* demuxer, int file, int stream)
{
    return demuxer == nullptr ? kNullArgument : demuxer->RemoveStream(file, stream);
}

int mxfDemuxPush(CMxfDemuxer* demuxer, int file)
{
    return demuxer == nullptr ? kNullArgument : demuxer->Push(file);
}

int mxfDemuxSeek(CMxfDemuxer* demuxer, int file, mxf_dmuxer_seek* seek)
{
    return demuxer == nullptr ? kNullArgument : demuxer->Seek(file, seek);
}

int mxfDemuxGetSampleInfo(CMxfDemuxer* demuxer, int file, int sample, mxf_sample_info* info)
{
    return demuxer == nullptr ? kNullArgument : demuxer->GetIdxEntryInfo(file, sample, info);
}

int mxfDemuxFillSampleOffset(CMxfDemuxer* demuxer, mxf_sample_info* info)
{
    return demuxer == nullptr ? kNullArgument : demuxer->FillSampleOffset(info);
}

int mxfDemuxGetKlvInfo(CMxfDemuxer* demuxer, std::int64_t position, std::int64_t* keyLength, std::int64_t* valueLength)
{
    return demuxer == nullptr ? kNullArgument : demuxer->GetKlvInfo(position, keyLength, valueLength);
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
