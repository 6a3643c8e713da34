#pragma once

#include <cstdint>

/// The records of essence delivery: plain data without constructors of their own, in the global namespace.
/// Edit units are those of the stream. "Stored" counts them as they lie in the essence, from 0 for the first one there;
/// "played" counts them as they are shown or heard, from 0 for the first one that the clip plays. Pre-charge in front
/// of that one is played at negative numbers.

enum mxf_sample_flags : std::uint32_t {
    mxf_sample_key = 1,           ///< decoding can start here
    mxf_sample_discontinuity = 2, ///< what lies in front of it is missing: after a seek, or damage
    mxf_sample_last = 4,          ///< the last one of its stream
    mxf_sample_damaged = 8,       ///< bytes of it are missing
};

/// One sample on its way to a receiver: an edit unit, or several whole ones of sound.
struct mxf_sample {
    std::uint32_t stream;   ///< as mxfDemuxGetStreamFormat counts
    std::uint32_t flags;    ///< of mxf_sample_flags
    std::int64_t edit_unit; ///< stored
    std::int64_t pts;       ///< played
    /// The decoding order on the same scale: rises with every sample, never above `pts`. Only of a recording that
    /// begins inside a group, those that belong in front of its first picture have their pts.
    std::int64_t dts;
    std::int64_t duration;    ///< edit units
    std::int32_t rate_num;    ///< edit units a second
    std::int32_t rate_den;    ///<
    std::int64_t position;    ///< of the first byte of the value in the file, or among the bytes pushed
    std::uint32_t size;       ///< bytes
    const std::uint8_t* data; ///< good for the call
};

/// Where a sample lies, without its bytes.
struct mxf_sample_info {
    std::uint32_t stream;       ///< in: as mxfDemuxGetStreamFormat counts
    std::uint32_t flags;        ///< of mxf_sample_flags
    std::int64_t edit_unit;     ///< stored
    std::int64_t pts;           ///< played
    std::int64_t dts;           ///<
    std::uint32_t body_sid;     ///< whose essence `stream_offset` counts in
    std::int64_t stream_offset; ///< byte of the essence container where the edit unit begins, -1 when not known
    std::int64_t position;      ///< the same in the file; -1 until mxfDemuxFillSampleOffset
    std::int64_t size;          ///< bytes, -1 when not known
    std::uint8_t index_flags;   ///< of the index entry; 0 without one
    std::int8_t temporal_offset;
    std::int8_t key_frame_offset;
};

enum mxf_seek_flags : std::uint32_t {
    mxf_seek_exact = 0,     ///< to the picture itself, even where it cannot be decoded alone
    mxf_seek_key_frame = 1, ///< to the picture that its decoding starts from
    mxf_seek_stored = 2,    ///< `position` counts stored edit units
};

/// Where to go on.
struct mxf_dmuxer_seek {
    std::uint32_t stream;       ///< whose edit units `position` counts
    std::uint32_t flags;        ///< of mxf_seek_flags
    std::int64_t position;      ///< played
    std::int64_t edit_unit;     ///< out: the stored edit unit of `stream` that the next push delivers
    std::int64_t file_position; ///< out: where it lies, -1 when that is not known yet
};

/// The receiver of one stream. It belongs to the caller, who keeps it until it is removed or the demuxer is closed.
struct SMediaStream {
    virtual ~SMediaStream();

    /// Takes a sample, and copies what it keeps of it.
    /// \return 0 taken; anything else: not now, the same sample is offered again at the next push
    virtual int TakeSample(const mxf_sample& sample) = 0;

protected:
    SMediaStream() = default;
    SMediaStream(const SMediaStream&) = default;
    SMediaStream& operator=(const SMediaStream&) = default;
};

namespace TamrelMxf {

/// What a push came to; a negative answer is one of Status.h.
inline constexpr int kDelivered = 0; ///< at least one sample was handed over
inline constexpr int kRefused = 1;   ///< a receiver would not take its sample: it is offered again
inline constexpr int kEnded = 2;     ///< nothing is left
inline constexpr int kNeedsData = 3; ///< the next sample is not there yet

} // namespace TamrelMxf
