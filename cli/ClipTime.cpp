#include "cli/ClipTime.h"

#include "cli/Timecodes.h"
#include "mxf/model/Timing.h"

#include <limits>

namespace zanfcp::cli {

ClipTime::ClipTime(const mxf_file_info& info, const mxf_stream_format& format)
    : base_{info.timecode_base}, dropFrame_{info.drop_frame != 0}, start_{info.start_timecode},
      frameRate_{format.timecode_rate_num, format.timecode_rate_den}, editRate_{format.edit_rate_num,
                                                                                format.edit_rate_den}
{
    const Rate clipRate{info.edit_rate_num, info.edit_rate_den};
    if (base_ == 0 || !frameRate_.isKnown()) { // no timecode: it counts from midnight at the rate of the clip
        frameRate_ = clipRate.isKnown() ? clipRate : editRate_;
        start_ = 0;
        dropFrame_ = false;
        const std::int64_t rounded =
            frameRate_.isKnown() ? (frameRate_.num + frameRate_.den / 2) / frameRate_.den : std::int64_t{0};
        base_ = static_cast<std::uint16_t>(rounded <= std::numeric_limits<std::uint16_t>::max() ? rounded : 0);
    }
    if (info.duration >= 0) frames_ = rescaled(info.duration, clipRate, frameRate_);
}

std::int64_t ClipTime::rescaled(std::int64_t value, Rate from, Rate to)
{
    const auto rational = [](Rate rate) {
        return TamrelMxf::SRational{static_cast<std::int32_t>(rate.num), static_cast<std::int32_t>(rate.den)};
    };
    return TamrelMxf::Rescale(value, rational(from), rational(to)).value_or(value);
}

std::int64_t ClipTime::editUnits(std::int64_t frames) const
{
    return rescaled(frames, frameRate_, editRate_);
}

std::string ClipTime::label(std::int64_t frames) const
{
    const std::string text = labelAtBase(start_ + frames, base_, dropFrame_);
    return text.empty() ? "+" + std::to_string(frames) : text;
}

std::string ClipTime::labelAt(std::int64_t editUnits) const
{
    return label(rescaled(editUnits, editRate_, frameRate_));
}

std::string ClipTime::extent() const
{
    if (frames_ < 0) return "from " + label(0) + " on";
    return label(0) + " to " + label(frames_) + " (" + std::to_string(frames_) + " frames)";
}

Result<std::int64_t> ClipTime::placeOf(std::string_view text) const
{
    const bool isRelative = text.starts_with('+');
    if (isRelative) text.remove_prefix(1);
    const bool isLabel = text.find(':') != std::string_view::npos;
    const PELRate rate{.timebase = base_, .isNTSC = dropFrame_};
    if (isLabel && !isTimecodeRate(rate))
        return Error{.fault = Fault::malformed,
                     .what = "labels are not known at " + std::to_string(base_) +
                             " frames a second; write +FRAMES from the start of the clip"};
    const auto read = framesFromText(text, isTimecodeRate(rate) ? rate : PELRate{.timebase = 25, .isNTSC = false});
    if (!read) return read.error();
    std::int64_t place = *read;
    if (!isRelative) {
        place -= start_;
        if (place < 0 && isTimecodeRate(rate) && frames_ > 0 && place + framesPerDay(rate) <= frames_)
            place += framesPerDay(rate); // behind midnight
    }
    if (place < 0 || (frames_ >= 0 && place > frames_))
        return Error{.fault = Fault::notFound, .what = "lies outside of the clip, which goes from " + extent()};
    return place;
}

} // namespace zanfcp::cli
