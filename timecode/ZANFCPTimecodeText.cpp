// Labels: how texts and frames since midnight become one another.

#include "timecode/ZANFCPTimecode.h"

#include "platform/Format.h"
#include "platform/Log.h"
#include "timecode/TimecodeRate.h"

#include <array>
#include <charconv>
#include <limits>

namespace zanfcp {
namespace {

/// The parts of a text between separators: all are counted, the first four are kept.
struct Parts {
    std::array<std::string_view, 4> at{};
    std::size_t count = 0;
};

Parts split(std::string_view text, char separator)
{
    Parts parts;
    while (true) {
        const std::size_t end = text.find(separator);
        if (parts.count < parts.at.size()) parts.at[parts.count] = text.substr(0, end);
        ++parts.count;
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

/// The leading digits; 0 without any, and the greatest number for more than fit.
std::uint64_t leadingNumber(std::string_view text)
{
    std::uint64_t number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return fault == std::errc::result_out_of_range ? std::numeric_limits<std::uint64_t>::max() : number;
}

template <typename Field> Field leadingField(std::string_view text)
{
    return static_cast<Field>(leadingNumber(text));
}

void appendTwoDigits(std::string& text, std::uint32_t number)
{
    if (number >= 100) text += std::to_string(number / 100);
    text += static_cast<char>('0' + number / 10 % 10);
    text += static_cast<char>('0' + number % 10);
}

/// All 0 while no rate is selected.
FrameLabel labelOf(std::uint32_t framesSinceMidnight)
{
    const TimecodeRate& rate = TimecodeRate::current();
    const std::uint32_t perHour = rate.framesPerHour();
    return perHour == 0 ? FrameLabel{} : rate.labelAt(framesSinceMidnight % perHour);
}

} // namespace

void ZANFCPTimecode::initWithString(std::string_view string)
{
    init();
    const Parts dateAndTime = split(string, ' ');
    std::string_view time = dateAndTime.at[0];
    if (dateAndTime.count == 2) {
        const Parts date = split(dateAndTime.at[0], '.');
        if (date.count >= 3) { // fewer numbers are no date
            day_ = static_cast<std::uint8_t>(leadingNumber(date.at[0]) - 1);
            month_ = static_cast<std::uint8_t>(leadingNumber(date.at[1]) - 1);
            year_ = leadingField<std::uint16_t>(date.at[2]);
        }
        time = dateAndTime.at[1];
    }

    const Parts label = split(time, ':');
    if (label.count == 1) {
        frames_ = leadingField<std::uint32_t>(time);
        return;
    }
    std::string_view seconds;
    std::string_view frames;
    if (label.count == 3) {
        const Parts dropFrame = split(label.at[2], ';');
        if (dropFrame.count == 2) {
            seconds = dropFrame.at[0];
            frames = dropFrame.at[1];
        }
    } else if (label.count == 4) {
        seconds = label.at[2];
        frames = label.at[3];
    }
    setHours(leadingField<std::uint8_t>(label.at[0]), leadingField<std::uint8_t>(label.at[1]),
             leadingField<std::uint8_t>(seconds), leadingField<std::uint8_t>(frames));
}

void ZANFCPTimecode::setHours(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds, std::uint8_t frames)
{
    const TimecodeRate& rate = TimecodeRate::current();
    frames_ = hours * rate.framesPerHour();
    if (const auto index = rate.frameAt({.minute = minutes, .second = seconds, .frame = frames}))
        frames_ += *index;
    else
        ZAN_LOG_ERROR("ZANFCPTimecode: Illegal timecode %02i:%02i:%02i:%02i", hours, minutes, seconds, frames);
}

std::uint32_t ZANFCPTimecode::hours() const
{
    const std::uint32_t perHour = framesPerHour();
    return perHour == 0 ? 0 : frames_ / perHour;
}

std::uint32_t ZANFCPTimecode::minutes() const
{
    return labelOf(frames_).minute;
}

std::uint32_t ZANFCPTimecode::seconds() const
{
    return labelOf(frames_).second;
}

std::uint32_t ZANFCPTimecode::frames() const
{
    return labelOf(frames_).frame;
}

std::string ZANFCPTimecode::descriptionWithPrefix(std::string_view prefix) const
{
    const FrameLabel label = labelOf(frames_);
    std::string text{prefix};
    appendTwoDigits(text, hours());
    text += ':';
    appendTwoDigits(text, label.minute);
    text += ':';
    appendTwoDigits(text, label.second);
    text += dropFrameTimecode() && !isDuration() ? ';' : ':';
    appendTwoDigits(text, label.frame);
    return text;
}

std::string ZANFCPTimecode::description() const
{
    return descriptionWithPrefix({});
}

std::string ZANFCPTimecode::debugDescription() const
{
    return descriptionWithPrefix(format("%i.%i.%i ", day_ + 1, month_ + 1, year_));
}

std::string ZANFCPTimecode::XMLRepresentation() const
{
    const int count = static_cast<int>(frames_);
    if (isDuration()) return format("%d", count);
    return format("%d.%d.%d %d", day_ + 1, month_ + 1, year_, count);
}

} // namespace zanfcp
