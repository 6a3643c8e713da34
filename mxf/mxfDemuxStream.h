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
///     struct Out : SMediaStream {
///         int TakeSample(const mxf_sample& sample) override { return write(1, sample.data, sample.size) < 0; }
///     };
///     struct Job {
///         TamrelMxf::CMxfStreamDemuxer* demuxer = mxfDemuxStreamNew();
///         Out out;
///         std::promise<int> end;
///     } job;
///     mxf_stream_demuxer_config config{};
///     config.context = &job;
///     config.state_callback = [](void* context, std::int32_t event, std::int32_t) {
///         Job& self = *static_cast<Job*>(context);
///         if (event == mxf_stream_header_parsed)
///             mxfDemuxStreamAddStream(self.demuxer, 0, &self.out);
///         else
///             self.end.set_value(event);
///     };
///     TamrelMxf::SMemoryStream* stream = nullptr;
///     mxfDemuxStreamOpen(job.demuxer, &config, nullptr, &stream);
///     while ((length = static_cast<int>(read(0, bytes, sizeof bytes))) > 0)
///         while (stream->CopyData(bytes, length) == TamrelMxf::SMemoryStream::kNoRoom)
///             std::this_thread::yield(); // the receiver is slow
///     job.end.get_future().wait(); // of a stream that is whole
///     mxfDemuxStreamFree(job.demuxer);
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
/// on the thread of the stream; none is marked as the last one, which event 2 tells instead.
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
/// Called at the end of the input, it keeps mxfDemuxStreamClose from cutting off what was pushed last, of a stream that
/// is cut short as well. Not from the callback or a receiver.
/// \return 0; -2 for a null handle
int mxfDemuxStreamDrain(TamrelMxf::CMxfStreamDemuxer* demuxer);

/// Ends the thread of the stream and releases everything but the handle, which can be opened again. From the callback
/// or a receiver it only ends the thread: the handle is then closed once more from elsewhere.
/// \param demuxer  not null
void mxfDemuxStreamClose(TamrelMxf::CMxfStreamDemuxer* demuxer);
/// Closes and destroys; never from the callback or a receiver. A null handle is ignored.
void mxfDemuxStreamFree(TamrelMxf::CMxfStreamDemuxer* demuxer);
