#include "cli/Console.h"

#include "cli/Text.h"
#include "media/MXFMovieProperties.h"
#include "platform/Format.h"

#include <cerrno>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zanfcp::cli {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{64} << 10;
constexpr std::size_t kMaxStepLines = 200; // a broken file can have a fault in each of its thousands of parts

/// 0, or the errno of the write that failed.
int writeAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

} // namespace

Console::Console() : isTerminal_{::isatty(STDERR_FILENO) == 1}
{
    before_ = ZANLogger::setSink([this](LogLevel level, std::string_view line) { log(level, line); });
    setMXFMessageSink(&mxfSink_);
}

Console::~Console()
{
    endProgress();
    setMXFMessageSink(nullptr);
    ZANLogger::setSink(std::move(before_));
}

void Console::say(std::string_view text)
{
    endProgress();
    (void)writeAll(STDERR_FILENO, text); // there is nowhere to say that this failed
}

void Console::progress(std::string_view text)
{
    if (!showsProgress() || text == progress_) return;
    (void)flush();
    constexpr std::string_view kToStartAndWipe = "\r\033[K";
    winsize window{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 1)
        text = text.substr(0, window.ws_col - 1U); // a line that wraps could not be wiped away
    progress_ = text;
    (void)writeAll(STDERR_FILENO, std::string(kToStartAndWipe) + progress_);
}

void Console::endProgress()
{
    if (progress_.empty()) return;
    progress_.clear();
    (void)writeAll(STDERR_FILENO, "\r\033[K");
}

bool Console::print(std::string_view text)
{
    results_ += text;
    return results_.size() < kBufferBytes ? writeFault_ == 0 : flush();
}

bool Console::flush()
{
    if (writeFault_ == 0) writeFault_ = writeAll(STDOUT_FILENO, results_);
    results_.clear();
    return writeFault_ == 0;
}

bool Console::finish()
{
    if (flush()) return true;
    error(std::string("could not write to standard output: ") + std::strerror(writeFault_));
    return false;
}

void Console::error(std::string_view text)
{
    (void)flush(); // so that both streams stay in order on a terminal
    say("zanfcp: " + printable(text) + "\n");
}

void Console::errorLines(std::string_view lines)
{
    (void)flush();
    say(lines);
}

void Console::warning(std::string_view text)
{
    if (!quiet_) say("zanfcp: warning: " + printable(text) + "\n");
}

void Console::note(std::string_view text)
{
    if (!quiet_) say(text);
}

void Console::beginStep(std::string_view file)
{
    stepFile_ = file;
    stepErrors_.clear();
}

void Console::stepFailed()
{
    for (const std::string& line : stepErrors_)
        say("  " + printable(line) + "\n");
    stepErrors_.clear();
}

void Console::log(LogLevel level, std::string_view line)
{
    if (verbose_)
        say(std::string(level == LogLevel::error && !isTrace(line) ? "[error] " : "[log] ") + printable(line) + "\n");
    else if (level == LogLevel::error && !isTrace(line) && stepErrors_.size() < kMaxStepLines)
        stepErrors_.emplace_back(line);
}

void Console::MxfSink::DoLogError(const char* format, va_list arguments)
{
    console_.log(LogLevel::error, formatList(format, arguments));
}
void Console::MxfSink::DoLogWarning(const char* format, va_list arguments)
{
    const std::string line = formatList(format, arguments);
    if (console_.stepFile_.empty())
        console_.log(LogLevel::normal, line);
    else
        console_.warning(console_.stepFile_ + ": " + line);
}
void Console::MxfSink::DoLogInfo(const char* format, va_list arguments)
{
    console_.log(LogLevel::normal, formatList(format, arguments));
}
void Console::MxfSink::DoLogDebug(const char* format, va_list arguments)
{
    console_.log(LogLevel::normal, formatList(format, arguments));
}

bool isTrace(std::string_view line)
{
    return line.starts_with("PELElement: Element from ");
}

} // namespace zanfcp::cli
