#pragma once

#include "mxf/io/Snitcher.h"
#include "platform/Log.h"

#include <string>
#include <string_view>
#include <vector>

namespace zanfcp::cli {

/// What the command says: results on standard output, messages on standard error, and the log lines of both libraries,
/// which it receives as long as it lives. One at a time.
class Console {
public:
    Console();
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    void setQuiet(bool quiet) { quiet_ = quiet; }
    /// Shows every log line as it comes.
    void setVerbose(bool verbose) { verbose_ = verbose; }

    /// Results. False once writing them has failed; finish() says why.
    bool print(std::string_view text);
    /// Writes out what print() still holds, for who waits for it. False once writing has failed.
    bool flush();
    /// Writes out what print() still holds. False, with a message, when not all of the results could be written.
    bool finish();

    /// What went wrong, in one line; always shown.
    void error(std::string_view text);
    /// More about it: printable lines with their ends; always shown.
    void errorLines(std::string_view lines);
    /// What will need attention, in one line; hidden when quiet.
    void warning(std::string_view text);
    /// What a person wants to see, with line ends as given; hidden when quiet.
    void note(std::string_view text);

    /// Shows how far long work has come, in a line of standard error that the next one replaces and every message wipes
    /// away. Nothing is shown when quiet, and where standard error is no terminal.
    void progress(std::string_view text);
    /// Whether progress would show.
    bool showsProgress() const { return isTerminal_ && !quiet_; }
    /// Wipes the line of progress away.
    void endProgress();

    /// Forgets the log lines so far: those of the step that begins are kept.
    /// \param file  that the step reads: warnings of the MXF library then name it. Without one they are log lines like
    ///   any other.
    void beginStep(std::string_view file = {});
    /// Shows the error lines of the step, unless they were shown as they came.
    void stepFailed();

    /// The sink for messages of the MXF library: errors belong to the step, warnings are warnings, everything else
    /// shows when verbose.
    CSnitcher& mxfSink() { return mxfSink_; }

private:
    class MxfSink final : public CSnitcher {
    public:
        explicit MxfSink(Console& console) : console_{console} {}
        void DoLogError(const char* format, va_list arguments) override;
        void DoLogWarning(const char* format, va_list arguments) override;
        void DoLogInfo(const char* format, va_list arguments) override;
        void DoLogDebug(const char* format, va_list arguments) override;

    private:
        Console& console_;
    };

    void log(LogLevel level, std::string_view line);
    void say(std::string_view text);

    bool quiet_ = false;
    bool verbose_ = false;
    bool isTerminal_ = false; ///< standard error
    std::string progress_;    ///< the line that is there now
    std::string results_;
    int writeFault_ = 0; ///< errno of the first write of results that failed
    std::string stepFile_;
    std::vector<std::string> stepErrors_;
    MxfSink mxfSink_{*this};
    ZANLogger::Sink before_;
};

/// Whether an error line is no failure but the library's trace of the cuts it makes.
bool isTrace(std::string_view line);

} // namespace zanfcp::cli
