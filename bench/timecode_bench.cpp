// Nanoseconds for selecting a rate and for converting labels and frames, beside the plain way of doing it: three tables
// of one byte for every frame of an hour, filled at each selection, read by index and searched for a label; and beside
// the timecodes of libavutil.

#include "bench/Measure.h"
#include "timecode/PELRate.h"
#include "timecode/PELTimecodeObject.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

extern "C" {
#include <libavutil/timecode.h>
}

namespace {

using namespace bench;

using zanfcp::PELTimecodeObject;

constexpr std::uint32_t kFramesPerSecond = 30; // 29.97 drop-frame
constexpr std::uint32_t kDropped = 2;
constexpr std::uint32_t kFramesPerHour = 107892;

class Tables {
public:
    void select()
    {
        frame_ = std::vector<std::uint8_t>(kFramesPerHour);
        second_ = std::vector<std::uint8_t>(kFramesPerHour);
        minute_ = std::vector<std::uint8_t>(kFramesPerHour);
        std::uint8_t frame = 0, second = 0, minute = 0;
        for (std::uint32_t index = 0; index < kFramesPerHour; ++index) {
            frame_[index] = frame;
            second_[index] = second;
            minute_[index] = minute;
            if (++frame < kFramesPerSecond) continue;
            frame = 0;
            if (++second < 60) continue;
            second = 0;
            ++minute;
            if (minute % 10 != 0) frame = kDropped;
        }
    }
    std::uint32_t framesAt(std::uint32_t hour, std::uint32_t minute, std::uint32_t second, std::uint32_t frame) const
    {
        for (std::uint32_t index = 0; index < kFramesPerHour; ++index)
            if (minute_[index] == minute && second_[index] == second && frame_[index] == frame)
                return hour * kFramesPerHour + index;
        return hour * kFramesPerHour;
    }
    std::uint32_t sumOfFields(std::uint32_t frames) const
    {
        const std::uint32_t index = frames % kFramesPerHour;
        return frames / kFramesPerHour + minute_[index] + second_[index] + frame_[index];
    }

private:
    std::vector<std::uint8_t> frame_, second_, minute_;
};

/// Frame counts spread over a day, so that neither branches nor caches learn them.
std::array<std::uint32_t, 4096> spreadFrames()
{
    std::array<std::uint32_t, 4096> frames{};
    std::uint32_t next = 1;
    for (std::uint32_t& count : frames) {
        next = next * 1664525U + 1013904223U;
        count = next % (kFramesPerHour * 24);
    }
    return frames;
}

const auto kFrames = spreadFrames();

const std::vector<std::string>& labels()
{
    static const std::vector<std::string> all = [] {
        std::vector<std::string> made;
        PELTimecodeObject::fps2997();
        for (const std::uint32_t count : kFrames)
            made.push_back(PELTimecodeObject::timecodeWithFrames(count).description());
        return made;
    }();
    return all;
}

volatile std::uint64_t consumed = 0; ///< what was made ends here, so that it has to be made

/// Nanoseconds for one of many calls of `convert(i)`, which returns something of what it made.
template <typename Convert> Contestant contestant(int calls, Convert convert)
{
    return {"", [calls, convert]() mutable {
                std::uint64_t sum = 0;
                const double time = seconds([&] {
                    for (int i = 0; i < calls; ++i)
                        sum += convert(static_cast<std::size_t>(i) % kFrames.size());
                });
                consumed = consumed + sum;
                return 1e9 * time / calls;
            }};
}

std::uint64_t sumOf(const std::string& text)
{
    return static_cast<unsigned char>(text.back());
}

AVTimecode parsed(const std::string& label)
{
    AVTimecode timecode{};
    if (av_timecode_init_from_string(&timecode, {30000, 1001}, label.c_str(), nullptr) != 0) fail(label);
    return timecode;
}

struct Row {
    const char* name;
    std::vector<Contestant> contestants; ///< ours, tables, libavutil
};

std::vector<Row> rows()
{
    constexpr int kCalls = 200'000, kSlowCalls = 200;
    const auto& texts = labels();
    static Tables tables;
    tables.select();
    static const AVTimecode zero = parsed("00:00:00;00");

    std::vector<Row> rows;
    rows.push_back({"select a rate",
                    {contestant(kCalls,
                                [](std::size_t i) {
                                    constexpr std::array<zanfcp::PELRate, 2> kRates{{{25, false}, {30, true}}};
                                    zanfcp::PELSetFPSForRate(kRates[i % kRates.size()]);
                                    return i;
                                }),
                     contestant(kSlowCalls, [](std::size_t i) {
                         tables.select();
                         return tables.sumOfFields(kFrames[i]);
                     })}});
    PELTimecodeObject::fps2997();
    rows.push_back(
        {"label to frames",
         {contestant(kCalls, [&texts](std::size_t i) { return PELTimecodeObject::framesFromString(texts[i]); }),
          contestant(kSlowCalls,
                     [](std::size_t i) {
                         const auto at = PELTimecodeObject::timecodeWithFrames(kFrames[i]);
                         return tables.framesAt(at.hours(), at.minutes(), at.seconds(), at.frames());
                     }),
          contestant(kCalls, [&texts](std::size_t i) { return static_cast<std::uint64_t>(parsed(texts[i]).start); })}});
    rows.push_back({"frames to hours, minutes, seconds, frames",
                    {contestant(kCalls,
                                [timecode = PELTimecodeObject()](std::size_t i) mutable {
                                    timecode.setFramesSinceMidnight(kFrames[i]);
                                    return timecode.hours() + timecode.minutes() + timecode.seconds() +
                                           timecode.frames();
                                }),
                     contestant(kCalls, [](std::size_t i) { return tables.sumOfFields(kFrames[i]); })}});
    rows.push_back({"frames to label",
                    {contestant(kCalls,
                                [](std::size_t i) {
                                    return sumOf(PELTimecodeObject::timecodeWithFrames(kFrames[i]).description());
                                }),
                     {},
                     contestant(kCalls, [](std::size_t i) {
                         char text[AV_TIMECODE_STR_SIZE];
                         return sumOf(av_timecode_make_string(&zero, text, static_cast<int>(kFrames[i])));
                     })}});
    rows.push_back({"select, label to frames and back",
                    {contestant(kCalls,
                                [&texts](std::size_t i) {
                                    zanfcp::PELSetFPSForRate({30, true});
                                    const std::uint32_t frames = PELTimecodeObject::framesFromString(texts[i]);
                                    return sumOf(PELTimecodeObject::timecodeWithFrames(frames).description());
                                }),
                     contestant(kSlowCalls,
                                [](std::size_t i) {
                                    tables.select();
                                    const auto at = PELTimecodeObject::timecodeWithFrames(kFrames[i]);
                                    return tables.sumOfFields(
                                        tables.framesAt(at.hours(), at.minutes(), at.seconds(), at.frames()));
                                }),
                     contestant(kCalls, [&texts](std::size_t i) {
                         const AVTimecode timecode = parsed(texts[i]);
                         char text[AV_TIMECODE_STR_SIZE];
                         return sumOf(av_timecode_make_string(&timecode, text, 0));
                     })}});
    return rows;
}

} // namespace

int main()
{
    std::printf("In process, nanoseconds at 29.97 drop-frame, labels spread over a day. Tables: three bytes for each "
                "of an\nhour's 107,892 frames, rebuilt at each selection. libavutil: av_timecode_init_from_string, "
                "av_timecode_make_string.\n\n");
    std::printf("%-44s %11s %14s %10s %10s %10s\n", "", "tables over", "libavutil over", "zanfcp", "tables",
                "libavutil");
    for (Row& row : rows()) {
        std::vector<Contestant> racing;
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < row.contestants.size(); ++i)
            if (row.contestants[i].run) {
                racing.push_back(row.contestants[i]);
                places.push_back(i);
            }
        PELTimecodeObject::fps2997();
        race(racing, 21);
        std::array<double, 3> times{};
        for (std::size_t i = 0; i < racing.size(); ++i)
            times[places[i]] = racing[i].median();
        const auto show = [](double value, int width) {
            value > 0 ? std::printf(" %*.1f", width, value) : std::printf(" %*s", width, "");
        };
        std::printf("%-44s", row.name);
        show(times[1] / times[0], 11);
        show(times[2] / times[0], 14);
        for (const double time : times)
            show(time, 10);
        std::printf("\n");
        if (std::string(row.name) == "select, label to frames and back")
            atMost("timecode, a rate selected, a label to frames and back, nanoseconds", 1000, times[0]);
    }
}
