#pragma once

#include "demuxer/Records.h"
#include "essence/EssenceRecords.h"
#include "io/Snitcher.h"
#include "stream/MemoryStream.h"
#include "stream/StreamRecords.h"

#include <cstdint>

namespace TamrelMxf {
class CMxfStreamDemuxer;
}

/// Push mode as free functions over an opaque handle: bytes of an MXF stream go in through a queue, samples come out at
/// the receivers on a thread of its own. What may be called from where is told with each function; the rest as in
/// mxfDemux.h.
///
///     struct Picture : SMediaStream {
///         int TakeSample(const mxf_sample& sample) override { return write(1, sample.data, sample.size) < 0; }
///     } picture;
///     TamrelMxf::CMxfStreamDemuxer* const demuxer = mxfDemuxStreamNew();
///     static struct { TamrelMxf::CMxfStreamDemuxer* demuxer; Picture* picture; } both{demuxer, &picture};
///     mxf_stream_demuxer_config config{};
///     config.context = &both;
///     config.state_callback = [](void*, std::int32_t event, std::int32_t) {
///         if (event == mxf_stream_header_parsed) mxfDemuxStreamAddStream(both.demuxer, 0, both.picture);
///     };
///     TamrelMxf::SMemoryStream* stream = nullptr;
///     mxfDemuxStreamOpen(demuxer, &config, nullptr, &stream);
///     while ((length = read(0, bytes, sizeof bytes)) > 0)
///         if (stream->CopyData(bytes, length) < 0) break;
///     mxfDemuxStreamDrain(demuxer);
///     mxfDemuxStreamFree(demuxer);
TamrelMxf::CMxfStreamDemuxer* mxfDemuxStreamNew();

/// Closes what is open and waits for the first bytes of a stream.
/// \param config  copied
/// \param sink    takes the messages, on the calling thread and on that of the stream; borrowed until the next open or
///   free; may be null
/// \param stream  out: where to push bytes, with CopyData alone; it belongs to the handle and is good until that is
///   closed. Null on failure
/// \return 0; -1 when no thread can be started; -2 for a null config or `stream`
int mxfDemuxStreamOpen(TamrelMxf::CMxfStreamDemuxer* demuxer, const mxf_stream_demuxer_config* config, CSnitcher* sink,
                       TamrelMxf::SMemoryStream** stream);

/// These are mxfDemuxGetFileInfo and its neighbours under a second name. They answer -4 until event 1. As they take no
/// lock, they are called from the callback, or from elsewhere with the output locked. A pushed stream has no size, no
/// duration and is never complete.
int mxfDemuxStreamGetFileInfo(TamrelMxf::CMxfStreamDemuxer* demuxer, mxf_file_info* info);
int mxfDemuxStreamGetIdentification(TamrelMxf::CMxfStreamDemuxer* demuxer, int index,
                                    mxf_identification* identification);
int mxfDemuxStreamGetTopPack(TamrelMxf::CMxfStreamDemuxer* demuxer, int index, mxf_top_pack* pack, bool material);
int mxfDemuxStreamGetStreamFormat(TamrelMxf::CMxfStreamDemuxer* demuxer, int stream, mxf_stream_format* format);
int mxfDemuxStreamGetDmFramework(TamrelMxf::CMxfStreamDemuxer* demuxer, int index, mxf_dmd_framework* framework,
                                 std::uint32_t* count, const mxf_dmd_framework** list);

/// From any thread, the callback included: streams that are added during event 1 miss nothing. Samples are handed over
/// on the thread of the stream.
/// \param receiver  borrowed until it is removed or the handle is closed; it must not push, close or wait for a thread
///   that does
/// \return 0; -2 for a null receiver; -3 for a bad index, a stream outside the container that is delivered, and one
///   that has a receiver; -4 before event 1
int mxfDemuxStreamAddStream(TamrelMxf::CMxfStreamDemuxer* demuxer, int stream, SMediaStream* receiver);
/// From any thread. When it has returned, the receiver is not called any more.
/// \return 0; -3 for a bad index or a stream without a receiver; -4 before event 1
int mxfDemuxStreamRemoveStream(TamrelMxf::CMxfStreamDemuxer* demuxer, int stream);

/// Keeps the thread of the stream from delivering and calling back, from any thread and as often as it is locked. Bytes
/// may be pushed meanwhile. A thread that does not hold the lock cannot unlock it.
/// \param lock  0 unlocks
/// \return 0
int mxfDemuxStreamLockOutput(TamrelMxf::CMxfStreamDemuxer* demuxer, int lock);

/// Waits until all that was pushed has been used as far as it can be: no sample and no event comes until the next push.
/// Called at the end of the input, it keeps mxfDemuxStreamClose from cutting off what was pushed last.
/// \return 0; -1 from the callback or a receiver, and for a thread that has locked the output; -2 for a null handle; -4
///   when nothing is open
int mxfDemuxStreamDrain(TamrelMxf::CMxfStreamDemuxer* demuxer);

/// Ends the thread of the stream and releases everything but the handle, which can be opened again. From the callback
/// or a receiver it only ends the thread: the handle is then closed once more from elsewhere.
/// \param demuxer  not null
void mxfDemuxStreamClose(TamrelMxf::CMxfStreamDemuxer* demuxer);
/// Closes and destroys; never from the callback or a receiver. A null handle is ignored.
void mxfDemuxStreamFree(TamrelMxf::CMxfStreamDemuxer* demuxer);
