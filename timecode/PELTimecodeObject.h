#pragma once

#include "ZANFCPTimecode.h"

#include <cstdint>
#include <string_view>

namespace zanfcp {

/// The timecode of the element tree and of media files. Its factories make its own class, and comparing two gives
/// their distance.
class PELTimecodeObject : public ZANFCPTimecode {
public:
    PELTimecodeObject() = default;
    explicit PELTimecodeObject(ZANFCPTimecode other) : ZANFCPTimecode{other} {}

    static PELTimecodeObject zeroTime() { return {}; }
    static PELTimecodeObject calendarDate();
    static PELTimecodeObject now();
    static PELTimecodeObject timecodeWithHours(std::uint32_t hours);
    static PELTimecodeObject timecodeWithHours(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds,
                                               std::uint8_t frames);
    static PELTimecodeObject timecodeWithString(std::string_view string);
    static PELTimecodeObject timecodeWithTime(std::int64_t time, std::int64_t scale);
    static PELTimecodeObject timecodeWithSeconds(double seconds);
    static PELTimecodeObject timecodeWithFrames(std::uint64_t frames);
    static PELTimecodeObject timecodeWithDate(Date date);
    static PELTimecodeObject timecodeWithCFDate(Date date);
    static PELTimecodeObject timecodeCombiningDate(ZANFCPTimecode date, ZANFCPTimecode timecode);
    static PELTimecodeObject timecodeAdding(ZANFCPTimecode timecode, ZANFCPTimecode to);
    static PELTimecodeObject timecodeSubtracting(ZANFCPTimecode timecode, ZANFCPTimecode from, bool timecodeOnly,
                                                 bool framesOnly = false);
    static PELTimecodeObject timecodeMultiplying(ZANFCPTimecode timecode, std::uint32_t factor);

    /// Frames since midnight that a text denotes at the selected rate; see timecodeWithString.
    static std::uint32_t framesFromString(std::string_view string);
    /// The same for a text in ASCII; 0 for one that is not.
    static std::uint32_t framesFromCString(std::string_view string);

    /// The `ticks` of `other` minus those of the receiver: positive when `other` is later.
    NSInteger compareToTimecode(ZANFCPTimecode other) const;
    /// Always 0: there are no project dates.
    NSInteger dayIntervalSinceProjectDate(ZANFCPTimecode) const { return 0; }
    /// Does nothing.
    void subtractDate(ZANFCPTimecode) {}
};

} // namespace zanfcp
