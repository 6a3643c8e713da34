#pragma once

#include <cstdarg>
#include <cstdio>

/// Where the MXF library reports to. The host derives from it; the library never owns a sink.
/// Formats are those of printf. The order of the four operations is part of the interface.
class CSnitcher {
public:
    virtual void DoLogError(const char* format, va_list arguments) = 0;
    virtual void DoLogWarning(const char* format, va_list arguments) = 0;
    virtual void DoLogInfo(const char* format, va_list arguments) = 0;
    virtual void DoLogDebug(const char* format, va_list arguments) = 0;

protected:
    CSnitcher() = default;
    CSnitcher(const CSnitcher&) = default;
    CSnitcher& operator=(const CSnitcher&) = default;
    ~CSnitcher() = default; // a sink is destroyed by the host that made it, never through this class
};

/// Passes messages on to a sink of class TSnitcher, or drops them when there is none.
template <class TSnitcher> class CLoggerT {
public:
    CLoggerT() = default;
    /// \param sink  borrowed, may be null; must outlive the logger and its copies
    explicit CLoggerT(TSnitcher* sink) : sink_{sink} {}

    TSnitcher* Sink() const { return sink_; }

    __attribute__((format(printf, 2, 3))) void LogError(const char* format, ...) const
    {
        if (sink_ == nullptr) return;
        va_list arguments;
        va_start(arguments, format);
        sink_->DoLogError(format, arguments);
        va_end(arguments);
    }
    __attribute__((format(printf, 2, 3))) void LogWarning(const char* format, ...) const
    {
        if (sink_ == nullptr) return;
        va_list arguments;
        va_start(arguments, format);
        sink_->DoLogWarning(format, arguments);
        va_end(arguments);
    }
    __attribute__((format(printf, 2, 3))) void LogInfo(const char* format, ...) const
    {
        if (sink_ == nullptr) return;
        va_list arguments;
        va_start(arguments, format);
        sink_->DoLogInfo(format, arguments);
        va_end(arguments);
    }

private:
    TSnitcher* sink_ = nullptr;
};

/// Writes every message as one line, its level in front, to a stream: for diagnostics.
class CDebugSnitcher final : public CSnitcher {
public:
    /// \param stream  borrowed; stays open as long as the sink is used
    explicit CDebugSnitcher(std::FILE* stream = stderr) : stream_{stream} {}

    void DoLogError(const char* format, va_list arguments) override;
    void DoLogWarning(const char* format, va_list arguments) override;
    void DoLogInfo(const char* format, va_list arguments) override;
    void DoLogDebug(const char* format, va_list arguments) override;

private:
    void WriteLine(const char* level, const char* format, va_list arguments);

    std::FILE* stream_;
};
