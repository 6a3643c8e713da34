#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace zanfcp::test {

/// Makes a time zone the local one while it lives.
class TimeZone {
public:
    explicit TimeZone(const char* name)
    {
        if (const char* before = std::getenv("TZ")) before_ = before;
        ::setenv("TZ", name, 1);
        ::tzset();
    }
    ~TimeZone()
    {
        before_ ? ::setenv("TZ", before_->c_str(), 1) : ::unsetenv("TZ");
        ::tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    std::optional<std::string> before_;
};

} // namespace zanfcp::test
