#pragma once

#include "platform/Log.h"

#include <string>
#include <vector>

namespace zanfcp::test {

/// Collects the log lines written while it lives; the sink that was there before comes back afterwards.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    struct Line {
        LogLevel level;
        std::string text;
    };
    const std::vector<Line>& lines() const { return lines_; }
    /// The texts of all lines of one level.
    std::vector<std::string> texts(LogLevel level) const;
    std::vector<std::string> errors() const { return texts(LogLevel::error); }
    void clear() { lines_.clear(); }

private:
    std::vector<Line> lines_;
    ZANLogger::Sink before_;
};

} // namespace zanfcp::test
