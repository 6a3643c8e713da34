#include "tests/support/LogCapture.h"

#include <utility>

namespace zanfcp::test {

LogCapture::LogCapture()
{
    before_ = ZANLogger::setSink([this](LogLevel level, std::string_view line) {
        lines_.push_back({level, std::string(line)});
    });
}

LogCapture::~LogCapture()
{
    ZANLogger::setSink(std::move(before_));
}

std::vector<std::string> LogCapture::texts(LogLevel level) const
{
    std::vector<std::string> found;
    for (const Line& line : lines_)
        if (line.level == level) found.push_back(line.text);
    return found;
}

} // namespace zanfcp::test
