#pragma once

#include "demuxer/Records.h"
#include "essence/EssenceRecords.h"
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

/// Makes the parser for one essence container of the file. Nothing happens when there is one.
/// \param file  the containers (BodySIDs) of this file count from 0 in the order of their file packages; most files
///   hold one. Streams of one container lie side by side and are delivered together.
/// \return 0; -1 when the essence cannot be parsed; -4 when nothing is open; -3 for a bad index
int mxfDemuxCreateParser(TamrelMxf::CMxfDemuxer* demuxer, int file);
/// Releases the parser and forgets its receivers. \return 0
int mxfDemuxFreeParser(TamrelMxf::CMxfDemuxer* demuxer, int file);

/// \param stream    as mxfDemuxGetStreamFormat counts. Streams that are joined there (OP2a) deliver what their first
///   member holds
/// \param receiver  borrowed until it is removed or the parser is released; takes the samples from now on
/// \return 0; -2 for a null receiver; -4 when nothing is open; -3 for bad indexes, without a parser, and for a stream
///   that has a receiver
int mxfDemuxAddStream(TamrelMxf::CMxfDemuxer* demuxer, int file, int stream, SMediaStream* receiver);
/// \return 0; -4 when nothing is open; -3 for bad indexes, without a parser, and for a stream without a receiver
int mxfDemuxRemoveStream(TamrelMxf::CMxfDemuxer* demuxer, int file, int stream);

/// Delivers the next edit unit of all streams that have a receiver; without any the edit unit is passed over.
/// \return 0 delivered; 1 a receiver refused its sample, which is offered again; 2 the essence has ended; 3 the next
///   sample is not there yet; -1 when reading failed; -3 without a parser; -4 when nothing is open
int mxfDemuxPush(TamrelMxf::CMxfDemuxer* demuxer, int file);

/// Goes on at another edit unit.
/// \return 0; -2 for a null record; -3 when the stream or the position does not exist, and without a parser: the place
///   is as before; -1 when reading failed; -4 when nothing is open
int mxfDemuxSeek(TamrelMxf::CMxfDemuxer* demuxer, int file, mxf_dmuxer_seek* seek);

/// \param sample  stored edit unit of info->stream
/// \return 0; -2 for a null record; -3 for a bad index or without a parser; -4 when nothing is open; -11 when the edit
///   unit is not known
int mxfDemuxGetSampleInfo(TamrelMxf::CMxfDemuxer* demuxer, int file, int sample, mxf_sample_info* info);
/// Fills in `position` from `body_sid` and `stream_offset`.
/// \return 0; -2 for a null record; -3 without a parser for that container; -4 when nothing is open; -11 when the
///   container does not reach there
int mxfDemuxFillSampleOffset(TamrelMxf::CMxfDemuxer* demuxer, mxf_sample_info* info);

/// Reads key and length of a KLV.
/// \param position     of the key in the file
/// \param keyLength    out: bytes in front of the value: those of the key and of the length field
/// \param valueLength  out: bytes of the value, -1 when the file leaves that open
/// \return 0; -2 for a null output; -4 when nothing is open; -6 when no key stands there; -9 at the end of the file
int mxfDemuxGetKlvInfo(TamrelMxf::CMxfDemuxer* demuxer, std::int64_t position, std::int64_t* keyLength,
                       std::int64_t* valueLength);

/// Releases everything but the handle, which can be opened again. \return the handle, also a null one
TamrelMxf::CMxfDemuxer* mxfDemuxClose(TamrelMxf::CMxfDemuxer* demuxer);

/// Closes and destroys. A null handle is ignored.
void mxfDemuxFree(TamrelMxf::CMxfDemuxer* demuxer);
