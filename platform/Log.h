#pragma once

#include <functional>
#include <string_view>

namespace zanfcp {

/// How much a log line matters. Fall-backs and progress are `normal`, refusals and failures `error`.
enum class LogLevel { normal, error };

/// The shared log handle. Every line the framework writes goes through it.
/// Without a sink of the host's own, lines go to syslog(3) (LOG_NOTICE and LOG_ERR).
/// Safe to use from several threads; a sink is called by one thread at a time.
class ZANLogger {
public:
    /// Receives one line without a line end. Must not throw and must not log.
    using Sink = std::function<void(LogLevel level, std::string_view line)>;

    /// Replaces the sink; an empty one restores syslog. Returns the sink that was there before.
    static Sink setSink(Sink sink);

    /// Lines of a level that is switched off are dropped before they are formatted. Both are on at first.
    static void setEnabled(LogLevel level, bool enabled);
    static bool isEnabled(LogLevel level);

    /// Writes one line; the compiler checks the arguments against the format.
    static void log(LogLevel level, const char* pattern, ...) __attribute__((format(printf, 2, 3)));
};

/// Shorthands for the two levels.
#define ZAN_LOG_ERROR(...) ::zanfcp::ZANLogger::log(::zanfcp::LogLevel::error, __VA_ARGS__)
#define ZAN_LOG_DEFAULT(...) ::zanfcp::ZANLogger::log(::zanfcp::LogLevel::normal, __VA_ARGS__)

} // namespace zanfcp
