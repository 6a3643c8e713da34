#pragma once

#include "../mxf/demuxer/Records.h"
#include "../mxf/io/Snitcher.h"
#include "PELMovieProperties.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>

namespace zanfcp {

/// Prints what the MXF library reports, a line a message; errors begin with "Error: ".
class CMyLogger final : public CSnitcher {
public:
    /// \param stream  borrowed; stays open as long as the sink is used
    explicit CMyLogger(std::FILE* stream = stdout) : stream_{stream} {}

    void DoLogError(const char* format, va_list arguments) override;
    void DoLogWarning(const char* format, va_list arguments) override;
    void DoLogInfo(const char* format, va_list arguments) override;
    void DoLogDebug(const char* format, va_list arguments) override;

private:
    std::FILE* stream_;
};

/// Where the messages go while MXF properties are read: to a CMyLogger on standard output, unless a program that has
/// a better place for them says otherwise.
/// \param sink  borrowed until the next call; null for the logger
void setMXFMessageSink(CSnitcher* sink);

/// Fills `properties`, all zero before, from an MXF file. A file that is still being written or not there yet is
/// waited for, some ten seconds.
/// \param options  "interlaced": upper field first, at every rate; "measureSoundFiles": a file without picture gets its
///   duration in frames of its timecode track, and the base of that as its timebase
/// \return 0; -38 and a line on standard error when the file cannot be read
/// Selects the rate of the file's timecode process-wide.
std::int32_t readMXFProperties(const FileURL& url, PELMovieProperties& properties, const PELDictionary& options);

/// The timebase behind a frame rate written as whole frames, frames x 100 or frames x 1000; 0 for any other code.
NSInteger timebaseFromFrameInfo(std::uint32_t code);

/// The codec of a picture stream in videoCodec, but for its field dominance: always of the XDCAM family, its type code
/// 0 for what is not.
void propagateMXFCodecInfo(PELMovieProperties& properties, const mxf_stream_format& format);

} // namespace zanfcp
