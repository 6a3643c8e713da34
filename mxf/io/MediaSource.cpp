#include "mxf/io/MediaSource.h"

CMediaSource::~CMediaSource() = default;

std::int32_t CMediaSource::GetBufferSize()
{
    return -1;
}
