// Nanoseconds for selecting a rate and for converting labels and frames, beside the plain way of doing it: three tables
// of one byte for every frame of an hour, filled at each selection, read by index and searched for a label.

#include "timecode/PELRate.h"
#include "timecode/PELTimecodeObject.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <string>
#include <vector>

namespace {

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

void selectRate(benchmark::State& state)
{
    const std::array<zanfcp::PELRate, 4> rates{{{30, true}, {25, false}, {60, true}, {24, true}}};
    std::size_t i = 0;
    for (auto _ : state)
        PELSetFPSForRate(rates[i++ % rates.size()]);
}
BENCHMARK(selectRate);

void labelToFrames(benchmark::State& state)
{
    const auto& texts = labels();
    PELTimecodeObject::fps2997();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(PELTimecodeObject::framesFromString(texts[i++ % kFrames.size()]));
}
BENCHMARK(labelToFrames);

void framesToFields(benchmark::State& state)
{
    PELTimecodeObject::fps2997();
    PELTimecodeObject timecode;
    std::size_t i = 0;
    for (auto _ : state) {
        timecode.setFramesSinceMidnight(kFrames[i++ % kFrames.size()]);
        benchmark::DoNotOptimize(timecode.hours() + timecode.minutes() + timecode.seconds() + timecode.frames());
    }
}
BENCHMARK(framesToFields);

void framesToLabel(benchmark::State& state)
{
    PELTimecodeObject::fps2997();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(PELTimecodeObject::timecodeWithFrames(kFrames[i++ % kFrames.size()]).description());
}
BENCHMARK(framesToLabel);

void selectRateAndLabelToFramesAndBack(benchmark::State& state)
{
    const auto& texts = labels();
    std::size_t i = 0;
    for (auto _ : state) {
        zanfcp::PELSetFPSForRate({30, true});
        const std::uint32_t frames = PELTimecodeObject::framesFromString(texts[i++ % kFrames.size()]);
        benchmark::DoNotOptimize(PELTimecodeObject::timecodeWithFrames(frames).description());
    }
}
BENCHMARK(selectRateAndLabelToFramesAndBack);

void tablesSelectRate(benchmark::State& state)
{
    Tables tables;
    for (auto _ : state) {
        tables.select();
        benchmark::ClobberMemory();
    }
}
BENCHMARK(tablesSelectRate);

void tablesLabelToFrames(benchmark::State& state)
{
    Tables tables;
    tables.select();
    PELTimecodeObject::fps2997();
    std::size_t i = 0;
    for (auto _ : state) {
        const auto timecode = PELTimecodeObject::timecodeWithFrames(kFrames[i++ % kFrames.size()]);
        benchmark::DoNotOptimize(
            tables.framesAt(timecode.hours(), timecode.minutes(), timecode.seconds(), timecode.frames()));
    }
}
BENCHMARK(tablesLabelToFrames);

void tablesFramesToFields(benchmark::State& state)
{
    Tables tables;
    tables.select();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(tables.sumOfFields(kFrames[i++ % kFrames.size()]));
}
BENCHMARK(tablesFramesToFields);

} // namespace

BENCHMARK_MAIN();
