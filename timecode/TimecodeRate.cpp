#include "timecode/TimecodeRate.h"

#include <array>
#include <atomic>
#include <cassert>

namespace zanfcp {
namespace {

constexpr auto kRates = std::to_array<TimecodeRate>({
    {.index = 0, .framesPerSecond = 24, .droppedPerMinute = 0, .realFramesPerSecond = 23.98},
    {.index = 1, .framesPerSecond = 24, .droppedPerMinute = 0, .realFramesPerSecond = 24.0},
    {.index = 2, .framesPerSecond = 25, .droppedPerMinute = 0, .realFramesPerSecond = 25.0},
    {.index = 3, .framesPerSecond = 30, .droppedPerMinute = 2, .realFramesPerSecond = 29.97},
    {.index = 4, .framesPerSecond = 30, .droppedPerMinute = 0, .realFramesPerSecond = 30.0},
    {.index = 5, .framesPerSecond = 50, .droppedPerMinute = 0, .realFramesPerSecond = 50.0},
    {.index = 6, .framesPerSecond = 60, .droppedPerMinute = 4, .realFramesPerSecond = 59.94},
    {.index = 7, .framesPerSecond = 60, .droppedPerMinute = 0, .realFramesPerSecond = 60.0},
    {}, // none selected
});
static_assert(kRates.size() == TimecodeRate::kNone + 1);
static_assert(kRates[3].framesPerHour() == 107892 && kRates[6].framesPerHour() == 215784);

/// Conversions on two threads at once are not supported, but a stray one must not be undefined behaviour.
constinit std::atomic<const TimecodeRate*> selected{&kRates[TimecodeRate::kNone]};

} // namespace

const TimecodeRate& TimecodeRate::current()
{
    return *selected.load(std::memory_order_relaxed);
}

void TimecodeRate::select(std::uint32_t index)
{
    assert(index < kNone);
    selected.store(&kRates[index], std::memory_order_relaxed);
}

} // namespace zanfcp
