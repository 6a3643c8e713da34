#include "mxf/io/Snitcher.h"

void CDebugSnitcher::DoLogError(const char* format, va_list arguments)
{
    WriteLine("error", format, arguments);
}

void CDebugSnitcher::DoLogWarning(const char* format, va_list arguments)
{
    WriteLine("warning", format, arguments);
}

void CDebugSnitcher::DoLogInfo(const char* format, va_list arguments)
{
    WriteLine("info", format, arguments);
}

void CDebugSnitcher::DoLogDebug(const char* format, va_list arguments)
{
    WriteLine("debug", format, arguments);
}

void CDebugSnitcher::WriteLine(const char* level, const char* format, va_list arguments)
{
    std::fprintf(stream_, "mxf %s: ", level);
    std::vfprintf(stream_, format, arguments);
    std::fputc('\n', stream_);
}
