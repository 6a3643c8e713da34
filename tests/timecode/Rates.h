#pragma once

#include "timecode/ZANFCPTimecode.h"

#include <array>
#include <cstdint>
#include <string>

namespace zanfcp::test {

/// One selectable frame rate and what is known about it.
struct RateRow {
    const char* name;
    void (*select)();
    std::uint32_t index;
    std::uint32_t framesPerSecond;
    std::uint32_t droppedPerMinute;
    double real;
    std::uint32_t framesPerHour;
};

inline constexpr std::array<RateRow, 8> kRateRows{{
    {"23.98", &ZANFCPTimecode::fps2398, 0, 24, 0, 23.98, 86400},
    {"24", &ZANFCPTimecode::fps24, 1, 24, 0, 24.0, 86400},
    {"25", &ZANFCPTimecode::fps25, 2, 25, 0, 25.0, 90000},
    {"29.97", &ZANFCPTimecode::fps2997, 3, 30, 2, 29.97, 107892},
    {"30", &ZANFCPTimecode::fps30, 4, 30, 0, 30.0, 108000},
    {"50", &ZANFCPTimecode::fps50, 5, 50, 0, 50.0, 180000},
    {"59.94", &ZANFCPTimecode::fps5994, 6, 60, 4, 59.94, 215784},
    {"60", &ZANFCPTimecode::fps60, 7, 60, 0, 60.0, 216000},
}};

/// A timecode with these fields, whatever they hold; `day` and `month` count from 0.
inline ZANFCPTimecode timecodeOf(std::uint32_t year, std::uint32_t month, std::uint32_t day, std::uint32_t frames = 0)
{
    auto made = ZANFCPTimecode::timecodeWithString(std::to_string(day + 1) + "." + std::to_string(month + 1) + "." +
                                                   std::to_string(year) + " 0");
    made.setFramesSinceMidnight(frames);
    return made;
}

} // namespace zanfcp::test
