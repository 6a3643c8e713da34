#include "cli/Timecodes.h"

#include "platform/Format.h"
#include "timecode/TimecodeRate.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace zanfcp::cli {
namespace {

struct RateName {
    std::string_view name;
    PELRate rate;
};
constexpr auto kRates = std::to_array<RateName>({
    {"23.976", {24, true}},
    {"23.98", {24, true}},
    {"24", {24, false}},
    {"25", {25, false}},
    {"29.97", {30, true}},
    {"29.97df", {30, true}},
    {"29.97ndf", {30, false}},
    {"30", {30, false}},
    {"50", {50, false}},
    {"59.94", {60, true}},
    {"59.94df", {60, true}},
    {"59.94ndf", {60, false}},
    {"60", {60, false}},
});

constexpr std::size_t kMaxCountDigits = 9; // every count of so many digits fits 32 bits

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isCount(std::string_view text)
{
    return !text.empty() && text.size() <= kMaxCountDigits && std::ranges::all_of(text, isDigit);
}

bool isLabel(std::string_view text)
{
    constexpr std::string_view kPattern = "00:00:00:00";
    return std::ranges::equal(text, kPattern, [i = std::size_t{0}](char c, char wanted) mutable {
        const bool beforeFrames = i++ == 8;
        return wanted == '0' ? isDigit(c) : c == ':' || (beforeFrames && c == ';');
    });
}

/// \pre isLabel(text)
std::uint32_t field(std::string_view text, std::size_t index)
{
    return static_cast<std::uint32_t>((text[index * 3] - '0') * 10 + (text[index * 3 + 1] - '0'));
}

const TimecodeRate& selected(PELRate rate)
{
    PELSetFPSForRate(rate);
    return TimecodeRate::current();
}

std::string labelOf(std::int64_t frames, const TimecodeRate& counting)
{
    const std::int64_t day = counting.framesPerDay();
    const std::int64_t ofDay = (frames % day + day) % day;
    const auto hour = static_cast<std::uint32_t>(ofDay / counting.framesPerHour());
    const FrameLabel label = counting.labelAt(static_cast<std::uint32_t>(ofDay % counting.framesPerHour()));
    return format("%02u:%02u:%02u%c%02u", hour, label.minute, label.second, counting.isDropFrame() ? ';' : ':',
                  label.frame);
}

Error notALabel(std::string_view text, const std::string& why)
{
    return Error{.fault = Fault::malformed, .what = "\"" + std::string(text) + "\" is no timecode: " + why};
}

} // namespace

std::optional<PELRate> rateNamed(std::string_view name)
{
    std::string lowered{name};
    for (char& c : lowered)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    const auto at = std::ranges::find(kRates, lowered, &RateName::name);
    return at == kRates.end() ? std::nullopt : std::optional{at->rate};
}

std::vector<std::string> rateNames()
{
    std::vector<std::string> names;
    for (const RateName& rate : kRates)
        names.emplace_back(rate.name);
    return names;
}

std::string rateText(PELRate rate)
{
    if (rate.timebase == 0) return "unknown";
    if (rate.isNTSC && rate.timebase == 24) return "23.98";
    if (rate.isNTSC && rate.timebase == 30) return "29.97 DF";
    if (rate.isNTSC && rate.timebase == 60) return "59.94 DF";
    return std::to_string(rate.timebase);
}

bool isTimecodeRate(PELRate rate)
{
    constexpr auto kTimebases = std::to_array<NSInteger>({24, 25, 30, 50, 60});
    return std::ranges::find(kTimebases, rate.timebase) != kTimebases.end();
}

bool looksLikeTimecode(std::string_view text)
{
    return isCount(text) || isLabel(text);
}

Result<NSInteger> framesFromText(std::string_view text, PELRate rate)
{
    if (isCount(text)) {
        NSInteger frames = 0;
        std::from_chars(text.data(), text.data() + text.size(), frames);
        return frames;
    }
    if (!isLabel(text))
        return notALabel(text, "write HH:MM:SS:FF, or a number of frames of at most " +
                                   std::to_string(kMaxCountDigits) + " digits");

    const TimecodeRate& counting = selected(rate);
    const FrameLabel label{.minute = field(text, 1), .second = field(text, 2), .frame = field(text, 3)};
    const std::string name = rateText(rate);
    if (field(text, 0) >= 24) return notALabel(text, "a day has 24 hours");
    if (label.minute >= 60 || label.second >= 60) return notALabel(text, "minutes and seconds end at 59");
    if (label.frame >= counting.framesPerSecond)
        return notALabel(text,
                         format("frames end at %02u at a rate of %s", counting.framesPerSecond - 1, name.c_str()));
    if (text[8] == ';' && !counting.isDropFrame())
        return notALabel(text, "\";\" marks drop-frame labels, which a rate of " + name + " does not have");
    const auto frame = counting.frameAt(label);
    if (!frame)
        return notALabel(text,
                         format("at %s, labels 00 to %02u are skipped at the start of every minute but each tenth",
                                name.c_str(), counting.droppedPerMinute - 1));
    return NSInteger{field(text, 0)} * counting.framesPerHour() + *frame;
}

std::string labelFromFrames(NSInteger frames, PELRate rate)
{
    return labelOf(frames, selected(rate));
}

std::string labelAtBase(std::int64_t frames, std::uint16_t base, bool dropFrame)
{
    constexpr std::uint16_t kMostFrames = 1000; // a day of them fits 32 bits
    if (base == 0 || base > kMostFrames) return {};
    const std::uint32_t dropped = dropFrame && base % 30 == 0 ? base / 15U : 0U;
    return labelOf(frames, {.framesPerSecond = base, .droppedPerMinute = dropped});
}

NSInteger framesPerDay(PELRate rate)
{
    return selected(rate).framesPerDay();
}

} // namespace zanfcp::cli
