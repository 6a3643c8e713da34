#pragma once

#include "demuxer/Records.h"
#include "io/Snitcher.h"

#include <cstdint>

namespace TamrelMxf {
class CMxfDemuxer;
}

/// The MXF library as free functions over an opaque handle. A handle is used from one thread at a time. Functions
/// answer 0 or one of the negative codes of Status.h; -2 for a null handle comes before everything else.

/// Makes a demuxer, nothing opened. \return the handle, owned by the caller until it is freed
TamrelMxf::CMxfDemuxer* mxfDemuxNew();

/// Closes what is open and opens a file: tries for the seconds of the time-out, every 500 ms, then reads the header.
/// \param path    NUL-terminated, borrowed for the call
/// \param config  copied; null for all zero
/// \param sink    takes the messages, borrowed until the next open or free; may be null
/// \return 0; -1 when the file is no MXF file; -2 for a null path; -7 when it could not be opened in time, and when it
///   holds no track of essence; -6 and -9 when its header is damaged. After a failure the handle is closed.
int mxfDemuxOpen(TamrelMxf::CMxfDemuxer* demuxer, const char* path, const mxf_demuxer_config* config, CSnitcher* sink);

/// Fills `info`, which is all zero at the first call. It is left as it is when its `file_size` is that of the file:
/// who polls a file that grows gets fresh facts when there is more of it.
/// \return 0; -2 for a null record; -4 when nothing is open
int mxfDemuxGetFileInfo(TamrelMxf::CMxfDemuxer* demuxer, mxf_file_info* info);

/// \param index  oldest first
/// \return 0; -2 for a null record; -4 when nothing is open; -11 for a bad index
int mxfDemuxGetIdentification(TamrelMxf::CMxfDemuxer* demuxer, int index, mxf_identification* identification);

/// \param index     of the source package, in the order of the file
/// \param material  true: the material package, whatever the index
/// \return 0; -2 for a null record; -4 when nothing is open; -11 when there is none
int mxfDemuxGetTopPack(TamrelMxf::CMxfDemuxer* demuxer, int index, mxf_top_pack* pack, bool material);

/// \param stream  below the stream count of mxfDemuxGetFileInfo
/// \return 0; -2 for a null record; -4 when nothing is open; -3 for a bad index
int mxfDemuxGetStreamFormat(TamrelMxf::CMxfDemuxer* demuxer, int stream, mxf_stream_format* format);

/// Fills `framework` with one descriptive framework, and `list` with pointers to all.
/// \param index      in the order of packages, tracks and components
/// \param framework  may be null
/// \param count      in: the room in `list`; out: the number of frameworks. May be null when `list` is
/// \param list       may be null; what its entries point at belongs to the demuxer
/// \return 0; -2 when both `framework` and `count` are null, or there is a list without a count; -4 when nothing is
///   open; -11 for a bad index with a `framework`
int mxfDemuxGetDmFramework(TamrelMxf::CMxfDemuxer* demuxer, int index, mxf_dmd_framework* framework,
                           std::uint32_t* count, const mxf_dmd_framework** list);

/// Releases everything but the handle, which can be opened again. \return the handle, also a null one
TamrelMxf::CMxfDemuxer* mxfDemuxClose(TamrelMxf::CMxfDemuxer* demuxer);

/// Closes and destroys. A null handle is ignored.
void mxfDemuxFree(TamrelMxf::CMxfDemuxer* demuxer);
