#pragma once

#include <cstddef>
#include <cstdint>

/// The records of the push-mode interface: plain data without constructors of their own, in the global namespace.

/// What the state callback is told.
enum mxf_stream_event : std::int32_t {
    mxf_stream_header_parsed = 1, ///< the streams are known, and no essence has been delivered yet
    mxf_stream_ended = 2,
    mxf_stream_failed = 3, ///< what follows is discarded
};

#pragma pack(push, 4)
/// How a pushed stream is opened.
struct mxf_stream_demuxer_config {
    void* context; ///< first argument of the callback
    /// Told of events, on the parse thread and with the output locked; may be null. It may ask for formats and add or
    /// remove streams. It must neither push nor wait for a thread that pushes or locks the output.
    void (*state_callback)(void* context, std::int32_t event, std::int32_t zero);
    std::uint64_t core_long;         ///< kept with the settings of the demuxer; not read
    std::uint32_t core_word;         ///< kept with the settings of the demuxer; not read
    std::uint32_t further_words[16]; ///< kept; not read
};
#pragma pack(pop)
static_assert(offsetof(mxf_stream_demuxer_config, core_long) == 2 * sizeof(void*) &&
              sizeof(mxf_stream_demuxer_config) == 2 * sizeof(void*) + 76); // 92 bytes
