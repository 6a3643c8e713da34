#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zanfcp {

/// A point in time: seconds since 1 January 2001 00:00:00 GMT, leap seconds not counted. Exact to the microsecond.
struct Date {
    double timeIntervalSinceReferenceDate = 0.0;

    static Date now();
    /// From seconds since 1 January 1970 00:00:00 GMT.
    static Date dateWithTimeIntervalSince1970(double seconds);
    double timeIntervalSince1970() const;

    friend auto operator<=>(const Date&, const Date&) = default;
};

/// Day and time of day as calendar and clock show them, without a time zone. Gregorian in all years.
struct CalendarDate {
    std::int64_t year = 1; ///< of the common era; 0 is 1 BC, -1 is 2 BC
    int month = 1;         ///< 1 to 12
    int day = 1;           ///< of the month, 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;

    /// The year as it is written within its era, from 1 on.
    std::int64_t yearOfEra() const { return year > 0 ? year : 1 - year; }

    friend bool operator==(const CalendarDate&, const CalendarDate&) = default;
};

// The local time zone is that of tzset(3) everywhere: a host that changes TZ calls tzset itself.
// Dates more than about 100,000 years away count as that far away, and a date that is no number as 2001.

/// Splits a date in local time; what is below a millisecond is cut off.
CalendarDate localCalendarDate(Date date);

/// Offset of local time from GMT in seconds, at a point in time. East of Greenwich is positive.
int secondsFromGMT(Date date);

/// The same at a local time. Of a time that a change of clocks shows twice the first one counts; a time that it
/// leaves out has the offset from before the change. Values past their ranges carry on (month 13 is next January).
int secondsFromGMTAtLocalTime(const CalendarDate& local);

/// Writes and reads dates by a pattern of Unicode TS 35. Known fields: y M d H m s S (as many digits as letters, at
/// least), Z to ZZZ ("+0130"). All else stands for itself. Written in local time; read in local time too, unless the
/// text has an offset.
class DateFormatter {
public:
    /// \param pattern  borrowed: it must outlive the formatter, as a literal does
    constexpr explicit DateFormatter(std::string_view pattern) : pattern_{pattern} {}

    constexpr std::string_view pattern() const { return pattern_; }
    std::string stringFromDate(Date date) const;
    /// Fields that the pattern lacks are those of 1 January 2001, 00:00:00. Values past their ranges carry on.
    /// \return nothing when the text does not follow the pattern to its end, or a number has more than nine digits
    std::optional<Date> dateFromString(std::string_view text) const;

private:
    std::string_view pattern_;
};

/// The formats that all timecodes share.
namespace DateFormats {
inline constexpr DateFormatter year{"y"};
inline constexpr DateFormatter month{"M"};
inline constexpr DateFormatter day{"d"};
inline constexpr DateFormatter hour{"H"};
inline constexpr DateFormatter minute{"m"};
inline constexpr DateFormatter second{"s"};
inline constexpr DateFormatter millisecond{"SSS"};
inline constexpr DateFormatter full{"yyyy-MM-dd HH:mm:ss ZZZ"};
} // namespace DateFormats

} // namespace zanfcp
