#pragma once

#include "mxf/io/Snitcher.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

namespace zanfcp::test {

/// Keeps every message of the MXF library as "level: text".
class RecordingSnitcher final : public CSnitcher {
public:
    void DoLogError(const char* format, va_list arguments) override { Keep("error: ", format, arguments); }
    void DoLogWarning(const char* format, va_list arguments) override { Keep("warning: ", format, arguments); }
    void DoLogInfo(const char* format, va_list arguments) override { Keep("info: ", format, arguments); }
    void DoLogDebug(const char* format, va_list arguments) override { Keep("debug: ", format, arguments); }

    std::vector<std::string> lines;

private:
    void Keep(const char* level, const char* format, va_list arguments)
    {
        char text[512];
        std::vsnprintf(text, sizeof text, format, arguments);
        lines.push_back(std::string(level) + text);
    }
};

} // namespace zanfcp::test
