#include "platform/Format.h"

#include <array>
#include <cstdio>

namespace zanfcp {

std::string formatList(const char* pattern, std::va_list arguments)
{
    std::va_list again;
    va_copy(again, arguments);
    std::array<char, 256> brief{};
    const int length = std::vsnprintf(brief.data(), brief.size(), pattern, arguments);
    std::string text;
    if (length >= 0 && static_cast<std::size_t>(length) < brief.size()) {
        text.assign(brief.data(), static_cast<std::size_t>(length));
    } else if (length >= 0) {
        text.resize(static_cast<std::size_t>(length) + 1); // vsnprintf writes the terminating NUL too
        std::vsnprintf(text.data(), text.size(), pattern, again);
        text.pop_back();
    }
    va_end(again);
    return text;
}

std::string format(const char* pattern, ...)
{
    std::va_list arguments;
    va_start(arguments, pattern);
    std::string text = formatList(pattern, arguments);
    va_end(arguments);
    return text;
}

} // namespace zanfcp
