#pragma once

#include "mxf/demuxer/Records.h"
#include "platform/Result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zanfcp::cli {

/// The timecode of an MXF clip: what the labels of a command line mean in it.
class ClipTime {
public:
    /// \param format  of the stream that positions are wanted in
    ClipTime(const mxf_file_info& info, const mxf_stream_format& format);

    /// The place in the clip that a text denotes: a label or a count of frames since midnight, or with "+" before it
    /// one from the start of the clip. Clips may pass midnight. Selects the rate of labels process-wide.
    /// \return frames from the start of the clip; an Error says what is wrong with the text (malformed), or where the
    ///   clip lies (notFound)
    Result<std::int64_t> placeOf(std::string_view text) const;
    /// The same place in edit units of the stream, to the nearest.
    std::int64_t editUnits(std::int64_t frames) const;
    /// The label at a place that is given in edit units of the stream: "10:00:00:05".
    std::string labelAt(std::int64_t editUnits) const;

    /// Frames of the clip, -1 when it does not say.
    std::int64_t frames() const { return frames_; }
    /// Where the clip lies: "10:00:00:00 to 10:00:04:00 (100 frames)".
    std::string extent() const;

private:
    struct Rate {
        std::int64_t num = 0, den = 0;
        bool isKnown() const { return num > 0 && den > 0; }
    };
    static std::int64_t rescaled(std::int64_t value, Rate from, Rate to);
    std::string label(std::int64_t frames) const;

    std::uint16_t base_ = 0; ///< labels a second
    bool dropFrame_ = false;
    std::int64_t start_ = 0; ///< frames since midnight
    std::int64_t frames_ = -1;
    Rate frameRate_;
    Rate editRate_;
};

} // namespace zanfcp::cli
