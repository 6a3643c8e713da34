#include "platform/Dates.h"

#include "platform/Format.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>

namespace zanfcp {
namespace {

constexpr std::int64_t kReferenceDate = 978307200; ///< 1 January 2001 in seconds since 1970
constexpr double kFurthest = 3.2e12;               ///< seconds; keeps years and microseconds well within their integers
constexpr std::int64_t kMicroseconds = 1000000;

struct Instant {
    std::time_t seconds = 0; ///< since 1970
    int millisecond = 0;
};

/// Rounds to microseconds first: a double cannot hold most milliseconds, and cutting 39.99999 to 39 would lose one.
Instant instantOf(Date date)
{
    const double since2001 = date.timeIntervalSinceReferenceDate;
    const double bounded = std::isnan(since2001) ? 0.0 : std::clamp(since2001, -kFurthest, kFurthest);
    const std::int64_t total = std::llround(bounded * static_cast<double>(kMicroseconds));
    std::int64_t seconds = total / kMicroseconds;
    std::int64_t rest = total % kMicroseconds;
    if (rest < 0) {
        --seconds;
        rest += kMicroseconds;
    }
    return {.seconds = seconds + kReferenceDate, .millisecond = static_cast<int>(rest / 1000)};
}

std::tm localTime(std::time_t seconds)
{
    std::tm fields{};
    ::localtime_r(&seconds, &fields);
    return fields;
}

int offsetAt(std::time_t seconds)
{
    return static_cast<int>(localTime(seconds).tm_gmtoff);
}

/// Seconds since 1970 as if the local time were GMT.
std::time_t asGMT(const CalendarDate& local)
{
    std::tm fields{};
    fields.tm_year = static_cast<int>(std::clamp<std::int64_t>(local.year, -1000000000, 1000000000) - 1900);
    fields.tm_mon = local.month - 1;
    fields.tm_mday = local.day;
    fields.tm_hour = local.hour;
    fields.tm_min = local.minute;
    fields.tm_sec = local.second;
    return ::timegm(&fields);
}

std::optional<int> takeNumber(std::string_view& text, std::size_t mostDigits)
{
    int number = 0;
    const std::string_view digits = text.substr(0, std::min(mostDigits, text.find_first_not_of("0123456789")));
    const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (digits.empty() || fault != std::errc{}) return std::nullopt;
    text.remove_prefix(digits.size());
    return number;
}

/// "+0130", "-01:30" or "Z", in seconds.
std::optional<int> takeOffset(std::string_view& text)
{
    if (text.starts_with('Z')) {
        text.remove_prefix(1);
        return 0;
    }
    if (!text.starts_with('+') && !text.starts_with('-')) return std::nullopt;
    const int sign = text.front() == '-' ? -1 : 1;
    text.remove_prefix(1);
    const auto hours = takeNumber(text, 2);
    if (text.starts_with(':')) text.remove_prefix(1);
    const auto minutes = takeNumber(text, 2);
    if (!hours || !minutes) return std::nullopt;
    return sign * (*hours * 3600 + *minutes * 60);
}

std::string offsetText(int seconds)
{
    const int minutes = std::abs(seconds) / 60;
    return format("%c%02d%02d", seconds < 0 && minutes > 0 ? '-' : '+', minutes / 60, minutes % 60);
}

/// A pattern's next run of one field letter, or one character that stands for itself.
std::string_view takeField(std::string_view& pattern)
{
    std::size_t length = 1;
    if (std::string_view{"yMdHmsSZ"}.find(pattern.front()) != std::string_view::npos)
        length = std::min(pattern.find_first_not_of(pattern.front()), pattern.size());
    const std::string_view field = pattern.substr(0, length);
    pattern.remove_prefix(length);
    return field;
}

} // namespace

Date Date::now()
{
    const std::chrono::duration<double> since1970 = std::chrono::system_clock::now().time_since_epoch();
    return dateWithTimeIntervalSince1970(since1970.count());
}

Date Date::dateWithTimeIntervalSince1970(double seconds)
{
    return {seconds - static_cast<double>(kReferenceDate)};
}

double Date::timeIntervalSince1970() const
{
    return timeIntervalSinceReferenceDate + static_cast<double>(kReferenceDate);
}

CalendarDate localCalendarDate(Date date)
{
    const Instant instant = instantOf(date);
    const std::tm fields = localTime(instant.seconds);
    return {.year = std::int64_t{fields.tm_year} + 1900,
            .month = fields.tm_mon + 1,
            .day = fields.tm_mday,
            .hour = fields.tm_hour,
            .minute = fields.tm_min,
            .second = std::min(fields.tm_sec, 59), // time zones that count leap seconds have a second 60
            .millisecond = instant.millisecond};
}

int secondsFromGMT(Date date)
{
    return offsetAt(instantOf(date).seconds);
}

int secondsFromGMTAtLocalTime(const CalendarDate& local)
{
    constexpr std::time_t kDay = 86400; // no zone is further from GMT, and clocks change less often
    const std::time_t seconds = asGMT(local);
    const int before = offsetAt(seconds - kDay);
    if (offsetAt(seconds - before) == before) return before;
    const int after = offsetAt(seconds + kDay);
    return offsetAt(seconds - after) == after ? after : before;
}

std::string DateFormatter::stringFromDate(Date date) const
{
    const CalendarDate local = localCalendarDate(date);
    std::string text;
    for (std::string_view left = pattern_; !left.empty();) {
        const std::string_view field = takeField(left);
        const int width = static_cast<int>(field.size());
        switch (field.front()) {
        case 'y': text += format("%0*lld", width, static_cast<long long>(local.yearOfEra())); break;
        case 'M': text += format("%0*d", width, local.month); break;
        case 'd': text += format("%0*d", width, local.day); break;
        case 'H': text += format("%0*d", width, local.hour); break;
        case 'm': text += format("%0*d", width, local.minute); break;
        case 's': text += format("%0*d", width, local.second); break;
        case 'S':
            text += (format("%03d", local.millisecond) + std::string(field.size(), '0')).substr(0, field.size());
            break;
        case 'Z': text += offsetText(secondsFromGMT(date)); break;
        default: text += field; break;
        }
    }
    return text;
}

std::optional<Date> DateFormatter::dateFromString(std::string_view text) const
{
    constexpr std::size_t kMostDigits = 9;
    CalendarDate local{.year = 2001};
    double fraction = 0.0;
    std::optional<int> offset;
    for (std::string_view left = pattern_; !left.empty();) {
        const std::string_view field = takeField(left);
        if (field.front() == 'Z') {
            offset = takeOffset(text);
            if (!offset) return std::nullopt;
            continue;
        }
        if (std::string_view{"yMdHmsS"}.find(field.front()) == std::string_view::npos) {
            if (!text.starts_with(field)) return std::nullopt;
            text.remove_prefix(field.size());
            continue;
        }
        // Fields that touch end by their width, all others at the first character that is no digit.
        const bool touches = !left.empty() && std::string_view{"yMdHmsS"}.find(left.front()) != std::string_view::npos;
        const std::size_t before = text.size();
        const auto number = takeNumber(text, touches ? field.size() : kMostDigits);
        if (!number) return std::nullopt;
        switch (field.front()) {
        case 'y': local.year = *number; break;
        case 'M': local.month = *number; break;
        case 'd': local.day = *number; break;
        case 'H': local.hour = *number; break;
        case 'm': local.minute = *number; break;
        case 's': local.second = *number; break;
        default: fraction = *number / std::pow(10.0, static_cast<double>(before - text.size())); break;
        }
    }
    if (!text.empty()) return std::nullopt;
    const std::time_t seconds = asGMT(local) - (offset ? *offset : secondsFromGMTAtLocalTime(local));
    return Date{static_cast<double>(seconds - kReferenceDate) + fraction};
}

} // namespace zanfcp
