#pragma once

#include "../platform/Dates.h"
#include "../platform/Integers.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zanfcp {

/// A point in time or a duration, counted in frames: frames since midnight and, optionally, a calendar date. A value
/// of eight bytes. Without a date (day, month and year all 0) it is a duration.
///
/// The frame rate is no part of it. It is one process-wide setting: select it with one of the `fps…` functions
/// before anything is parsed, split into hours, minutes, seconds and frames, or printed. Until then every conversion
/// gives 0. Frames, days, months and years wrap at the width of their fields.
/// Two threads must not convert timecodes at the same time.
class ZANFCPTimecode {
public:
    // --- The process-wide frame rate -------------------------------------------------------------------------------

    static void fps2398(); ///< counts like 24
    static void fps24();
    static void fps25();
    static void fps2997(); ///< drop-frame: labels 00 and 01 are skipped each minute but every tenth
    static void fps30();
    static void fps50();
    static void fps5994(); ///< drop-frame: labels 00 to 03 are skipped each minute but every tenth
    static void fps60();

    /// 0 to 7 in the order 23.98, 24, 25, 29.97, 30, 50, 59.94, 60; 8 before any selection.
    static std::uint32_t currentFrameRate();
    static bool hasValidFrameRate();
    /// Whole frames in one second of a label.
    static std::uint32_t framesPerSecond();
    /// 23.98, 24, 25, 29.97, 30, 50, 59.94 or 60.
    static double realFramesPerSecond();
    static bool dropFrameTimecode();
    static std::uint32_t framesPerHour();
    static std::uint32_t framesPerDay();

    // --- Making ----------------------------------------------------------------------------------------------------

    static ZANFCPTimecode zeroTime();
    static ZANFCPTimecode timecodeWithHours(std::uint32_t hours);
    /// Reads "HH:MM:SS:FF", "HH:MM:SS;FF" or a bare frame count, each after an optional date "D.M.YYYY" and a blank.
    /// Numbers are their leading digits, without any 0; those of a label are cut to 8 bits. Other numbers of ":"
    /// leave seconds and frames 0. An illegal label is logged and gives its full hours only.
    static ZANFCPTimecode timecodeWithString(std::string_view string);
    /// `time` / `scale` seconds in single precision; 0 when `scale` is 0.
    static ZANFCPTimecode timecodeWithTime(std::int64_t time, std::int64_t scale);
    static ZANFCPTimecode timecodeWithSeconds(double seconds);
    /// Whole days go into `day`, the rest is the time.
    static ZANFCPTimecode timecodeWithFrames(std::uint64_t frames);
    static ZANFCPTimecode timecodeWithHours(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds,
                                            std::uint8_t frames);
    /// Date and time of `date` in local time.
    static ZANFCPTimecode timecodeWithDate(Date date);
    static ZANFCPTimecode timecodeWithCFDate(Date date);
    /// The date of the first with the time of the second.
    static ZANFCPTimecode timecodeCombiningDate(ZANFCPTimecode date, ZANFCPTimecode timecode);
    /// Today, without a time.
    static ZANFCPTimecode calendarDate();
    /// Today and the time of day.
    static ZANFCPTimecode now();

    ZANFCPTimecode() = default;
    /// Each starts from zero and fills the receiver as the factory of the same name does.
    void init();
    void initWithHours(std::uint32_t hours);
    void initWithString(std::string_view string);
    void initWithTime(std::int64_t time, std::int64_t scale);
    void initWithSeconds(double seconds);
    void initWithFrames(std::uint64_t frames);
    void initWithHours(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds, std::uint8_t frames);
    void initWithDate(Date date);
    void initWithCFDate(Date date);
    void initWithDate(ZANFCPTimecode date, ZANFCPTimecode timecode);

    // --- Reading ---------------------------------------------------------------------------------------------------

    std::uint32_t framesSinceMidnight() const { return frames_; }
    std::uint8_t day() const { return day_; }     ///< 0 is the first of the month
    std::uint8_t month() const { return month_; } ///< 0 is January
    std::uint16_t year() const { return year_; }  ///< of the common era; 0 without a date
    /// All fields in one number, from the highest bits: year 16, month 8, day 8, frames since midnight 32.
    std::uint64_t ticks() const;

    /// The four fields of the label at the selected rate; all 0 while none is selected.
    std::uint32_t hours() const;
    std::uint32_t minutes() const;
    std::uint32_t seconds() const;
    std::uint32_t frames() const;
    /// Frames since midnight at the real rate; 0 while none is selected.
    double secondsSinceMidnight() const;

    bool isZeroTime() const { return frames_ == 0; }
    bool isDuration() const { return day_ == 0 && month_ == 0 && year_ == 0; }
    bool isToday() const;
    /// 28 to 31, by the Gregorian calendar; 31 for a month that does not exist.
    std::uint32_t daysInMonth() const;
    /// Always 0.
    double timeIntervalSinceReferenceDate() const { return 0.0; }

    // --- Setting ---------------------------------------------------------------------------------------------------

    void setFramesSinceMidnight(std::uint32_t frames) { frames_ = frames; }
    /// Seconds at the real rate, truncated to frames; what is below 0 becomes 0, what does not fit the greatest count.
    void setSecondsSinceMidnight(double seconds);
    /// The frame with this label. A label that does not exist at the selected rate is logged as an error and sets
    /// the full hours only. The date stays.
    void setHours(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds, std::uint8_t frames);
    void takeValues(ZANFCPTimecode other) { *this = other; }
    void takeTimecodeValues(ZANFCPTimecode other) { frames_ = other.frames_; }
    void takeDateValues(ZANFCPTimecode other);
    /// Year, month and day of `date`; the time stays.
    void takeCalendarDataValues(const CalendarDate& date);
    /// Clears the time and keeps the date (the instance method `zeroTime`; C++ cannot tell it from the factory).
    void setZeroTime() { frames_ = 0; }
    /// Clears the date and keeps the time.
    void zeroDate();
    /// Does nothing; a place for subclasses.
    void ensureLegalDuration() {}

    // --- Arithmetic ------------------------------------------------------------------------------------------------
    // Frames carry into days, days into months, months into years. Seconds and minutes are `framesPerSecond` frames
    // each, at drop-frame rates too: there they are no label seconds.

    void addFrames(std::uint32_t count);
    void addSeconds(std::uint32_t count);
    void addMinutes(std::uint32_t count);
    void addHours(std::uint32_t count);
    void addDays(std::uint32_t count);
    void addMonths(std::uint32_t count);
    void addYears(std::uint32_t count);
    /// Adds the frames, then the days of `other`; its month and year do not count.
    void addTimecode(ZANFCPTimecode other);
    /// Adds one frame.
    void tick() { addFrames(1); }

    void subtractFrames(std::uint32_t count);
    void subtractSeconds(std::uint32_t count);
    void subtractMinutes(std::uint32_t count);
    void subtractHours(std::uint32_t count);
    void subtractDays(std::uint32_t count);
    void subtractMonths(std::uint32_t count);
    /// There are no negative years: what would be one becomes 0.
    void subtractYears(std::uint32_t count);
    /// Subtracts the frames of `other`.
    void subtractTimecode(ZANFCPTimecode other) { subtractFrames(other.frames_); }
    /// Subtracts the frames, then the days of `other`.
    void subtractTimecodeIncludingDays(ZANFCPTimecode other);
    /// Subtracts one frame; true while frames since midnight are left.
    bool tickDown();

    /// Adds the time to itself until it is there `factor` times; 0 and 1 leave it as it is. Days carry.
    void multiplyBy(std::uint32_t factor);
    /// Whether the product stays within one day.
    bool canMultiplyBy(std::uint32_t factor) const;
    /// The greatest factor that stays within one day; 0 for a zero time.
    std::uint32_t maximumMultiplePerDay() const;
    /// Rounds the time down to a multiple of so many minutes; 0 counts as 1, and from 60 on whole hours count.
    void snapToMinute(std::uint32_t minutes);
    /// Rounds the time down to a multiple of so many hours; 0 leaves it as it is.
    void snapToHour(std::uint32_t hours);

    /// `to` plus `timecode`.
    static ZANFCPTimecode timecodeAdding(ZANFCPTimecode timecode, ZANFCPTimecode to);
    /// `from` minus `timecode`.
    /// \param timecodeOnly  the result is a duration, and frames are counted across different days, from `timecode`
    ///                      forward to `from`; otherwise the frames of `timecode` are taken off the date and time
    /// \param framesOnly    such a count stays whole in the frames; otherwise whole days of it go into `day`
    static ZANFCPTimecode timecodeSubtracting(ZANFCPTimecode timecode, ZANFCPTimecode from, bool timecodeOnly,
                                              bool framesOnly = false);
    static ZANFCPTimecode timecodeMultiplying(ZANFCPTimecode timecode, std::uint32_t factor);

    // --- Comparing -------------------------------------------------------------------------------------------------

    /// -1, 0 or 1 as the receiver is earlier than, the same as or later than `other`, by date and then by time.
    int compareTo(ZANFCPTimecode other) const;
    /// The opposite sense: 1 when `other` is later.
    NSInteger compareToTimecode(ZANFCPTimecode other) const { return -compareTo(other); }
    /// The same date and time.
    bool isSameTimecode(ZANFCPTimecode other) const { return compareToTimecode(other) == 0; }
    bool isSameDay(ZANFCPTimecode other) const;
    bool isSameCalendarDate(const CalendarDate& date) const;
    /// The difference of the `ticks`; frames as long as both are of the same day.
    std::int64_t framesSinceTimecode(ZANFCPTimecode other) const;
    /// Seconds from the receiver to `other`; negative when `other` is earlier.
    double differenceInSecondsTo(ZANFCPTimecode other) const;

    friend bool operator==(const ZANFCPTimecode&, const ZANFCPTimecode&) = default;

    // --- Dates -----------------------------------------------------------------------------------------------------

    /// Takes the day of `date` in local time, and with `includeTime` its time: the frame of its hour, minute, second
    /// and millisecond, never one that a label puts into another second. Otherwise the time stays.
    void fromDate(Date date, bool includeTime);
    void fromCFDate(Date date, bool includeTime);
    /// The point in time of date and time in local time. Years 2001 to 2020 count frames since midnight at the real
    /// rate; all other years take the label as a clock would show it, and the offset from GMT in whole minutes.
    Date toDate() const;
    /// As toDate in the second way, for every year.
    Date toCFDate() const;
    /// Date, hours, minutes and seconds of the label.
    CalendarDate toCalendarDate() const;
    /// The text of a date in one of the shared formats, read as a number.
    static NSInteger valueFromDate(Date date, const DateFormatter& format);

    // --- Texts -----------------------------------------------------------------------------------------------------

    /// "HH:MM:SS:FF"; with ";" before the frames at drop-frame rates, but not for a duration.
    std::string description() const;
    std::string descriptionWithPrefix(std::string_view prefix) const;
    /// "D.M.YYYY HH:MM:SS:FF".
    std::string debugDescription() const;
    /// Frames since midnight; after "D.M.YYYY " when there is a date.
    std::string XMLRepresentation() const;

private:
    /// Adds days one after another, whatever their number; the time it takes does not depend on it.
    void advanceDays(std::uint64_t count);
    /// Sets the date to so many days after 1 January of year 0.
    void setDayNumber(std::uint64_t number);
    Date dateFromText() const;

    std::uint32_t frames_ = 0;
    std::uint8_t day_ = 0;
    std::uint8_t month_ = 0;
    std::uint16_t year_ = 0;
};

} // namespace zanfcp
