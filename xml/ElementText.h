#pragma once

#include "../platform/Integers.h"

#include <cstdint>
#include <string>

namespace zanfcp {

/// "TRUE" or "FALSE".
inline std::string booleanText(bool value)
{
    return value ? "TRUE" : "FALSE";
}

/// The number as printf's "%i" shows it: the format takes 32 bits, so of a larger number the low 32 bits are written,
/// as a signed number. An undefined integer (NSNotFound) is written "-1".
inline std::string integerText(NSInteger value)
{
    return std::to_string(static_cast<std::int32_t>(value));
}

/// The number as printf's "%lu" shows it: all 64 bits, unsigned.
inline std::string unsignedText(std::uint64_t value)
{
    return std::to_string(value);
}

} // namespace zanfcp
