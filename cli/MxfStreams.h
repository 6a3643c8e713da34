#pragma once

#include "mxf/demuxer/Records.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Streams of essence in the words of the command, from what the flat interface of the MXF library says of them.
namespace zanfcp::cli {

/// The formats of all streams.
/// \param ask  answers as mxfDemuxGetStreamFormat for one stream
template <typename Ask> std::vector<mxf_stream_format> streamFormats(std::uint32_t count, Ask ask)
{
    std::vector<mxf_stream_format> formats(count);
    for (std::uint32_t stream = 0; stream < count; ++stream)
        if (ask(static_cast<int>(stream), &formats[stream]) != 0) formats[stream] = {};
    return formats;
}

/// A table of them, a line each.
std::string streamTable(const std::vector<mxf_stream_format>& formats);

/// The index among the containers of the file of the one that holds a stream; -1 when its essence is not in the file.
int containerOf(const std::vector<mxf_stream_format>& formats, std::size_t stream);

/// Why a stream cannot be delivered, to stand behind "stream N"; empty when it can, as far as its format tells.
std::string hindrance(const mxf_stream_format& format);

/// What a stream is coded with, in short: "MPEG-2 422P@HL", "PCM". Empty when the file does not say.
std::string codecName(const mxf_stream_format& format);

/// "picture", "sound", "data", "other".
const char* kindWord(const mxf_stream_format& format);

} // namespace zanfcp::cli
