#pragma once

#include <cstdarg>
#include <string>

namespace zanfcp {

/// printf into a text. The compiler checks the arguments against the format.
/// Many texts of this system are fixed as printf formats, which is why this is not std::format.
std::string format(const char* pattern, ...) __attribute__((format(printf, 1, 2)));

/// The same for a started argument list; `arguments` is used up as by vsnprintf.
std::string formatList(const char* pattern, std::va_list arguments) __attribute__((format(printf, 1, 0)));

} // namespace zanfcp
