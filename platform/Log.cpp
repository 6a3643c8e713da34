#include "platform/Log.h"

#include "platform/Format.h"

#include <atomic>
#include <cstdarg>
#include <mutex>
#include <string>
#include <syslog.h>
#include <utility>

namespace zanfcp {
namespace {

struct State {
    std::mutex mutex;
    ZANLogger::Sink sink;
    std::atomic<bool> normalEnabled{true};
    std::atomic<bool> errorEnabled{true};

    std::atomic<bool>& enabled(LogLevel level) { return level == LogLevel::error ? errorEnabled : normalEnabled; }
};

State& state()
{
    static State instance;
    return instance;
}

} // namespace

ZANLogger::Sink ZANLogger::setSink(Sink sink)
{
    const std::scoped_lock lock{state().mutex};
    return std::exchange(state().sink, std::move(sink));
}

void ZANLogger::setEnabled(LogLevel level, bool enabled)
{
    state().enabled(level) = enabled;
}

bool ZANLogger::isEnabled(LogLevel level)
{
    return state().enabled(level);
}

void ZANLogger::log(LogLevel level, const char* pattern, ...)
{
    if (!isEnabled(level)) return;
    std::va_list arguments;
    va_start(arguments, pattern);
    const std::string line = formatList(pattern, arguments);
    va_end(arguments);

    const std::scoped_lock lock{state().mutex};
    if (state().sink)
        state().sink(level, line);
    else
        syslog(level == LogLevel::error ? LOG_ERR : LOG_NOTICE, "%s", line.c_str());
}

} // namespace zanfcp
