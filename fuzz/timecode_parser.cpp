#include "platform/Log.h"
#include "timecode/PELTimecode.h"
#include "timecode/PELTimecodeObject.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using zanfcp::PELTimecodeObject;

void require(bool holds)
{
    if (!holds) std::abort();
}

/// What is printed reads back as what was printed.
void checkTexts(PELTimecodeObject timecode)
{
    constexpr std::uint32_t kHours = 256;          // as many as a label can say
    constexpr std::uint32_t kSigned = 0x8000'0000; // counts from here on are printed as negative ones
    if (timecode.framesSinceMidnight() < kSigned)
        require(PELTimecodeObject::timecodeWithString(timecode.XMLRepresentation()) == timecode);
    if (timecode.hours() >= kHours) return;
    require(PELTimecodeObject::timecodeWithString(timecode.debugDescription()) == timecode);
    require(PELTimecodeObject::framesFromCString(timecode.description()) == timecode.framesSinceMidnight());
}

/// Every date and count comes to an end, and sums of legal times are legal times.
void checkArithmetic(PELTimecodeObject timecode, std::uint32_t count)
{
    const std::uint32_t perDay = PELTimecodeObject::framesPerDay();
    require(std::isfinite(timecode.toDate().timeIntervalSinceReferenceDate));
    require(std::isfinite(timecode.toCFDate().timeIntervalSinceReferenceDate));
    PELTimecodeObject::timecodeSubtracting(timecode, PELTimecodeObject::timecodeWithFrames(count), true);
    timecode.addDays(count);
    require(count == 0 || timecode.month() >= 12 || timecode.day() < timecode.daysInMonth());
    timecode.subtractDays(count);
    timecode.addMonths(count);
    timecode.subtractMonths(count);
    timecode.addFrames(0);
    require(timecode.framesSinceMidnight() < perDay);
    timecode.addFrames(count);
    require(timecode.framesSinceMidnight() < perDay);
    timecode.subtractFrames(count);
    require(timecode.framesSinceMidnight() < perDay);
    timecode.multiplyBy(count);
    require(timecode.framesSinceMidnight() < perDay);
    timecode.snapToMinute(count);
    timecode.addTimecode(timecode);
    require(timecode.framesSinceMidnight() < perDay);
}

} // namespace

/// The first four bytes are a count, the rest is a text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t kCountSize = 4;
    zanfcp::ZANLogger::setEnabled(zanfcp::LogLevel::error, false); // illegal labels are the rule here
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < kCountSize && i < size; ++i)
        count = count << 8U | data[i];
    std::string_view text{reinterpret_cast<const char*>(data), size};
    text.remove_prefix(size < kCountSize ? size : kCountSize);

    constexpr zanfcp::PELRate kRates[] = {{24, true},  {24, false}, {25, false}, {30, true},
                                          {30, false}, {50, false}, {60, true},  {60, false}};
    for (const zanfcp::PELRate rate : kRates) {
        const zanfcp::PELTimecode record = zanfcp::PELTimecodeMakeWithString(text, rate);
        require(record.string.back() == '\0');
        require(record.frames == zanfcp::PELTimecodeConvertStringToFrames(record));
        (void)zanfcp::PELTimecodeMakeWithCString(text, rate, record);
        (void)zanfcp::NSStringFromPELTimecode(record);

        const auto timecode = PELTimecodeObject::timecodeWithString(text);
        checkTexts(timecode);
        checkArithmetic(timecode, count);
        checkTexts(PELTimecodeObject::timecodeWithFrames(count));
    }
    return 0;
}
