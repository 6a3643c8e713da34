#pragma once

#include "../platform/Integers.h"

#include <cstddef>
#include <string_view>

/// Checks of the arguments of factories. Each is true when the argument will do; otherwise it writes one error line
/// with the argument's name, and the factory gives up.
namespace zanfcp::Parameter {

/// Not empty.
bool requireText(std::string_view text, const char* name);
/// Not null.
bool requireObject(const void* object, const char* name);
/// Not NSNotFound.
bool requireDefined(NSInteger value, const char* name);
/// One of the two at least.
bool requireEither(bool hasFirst, const char* firstName, bool hasSecond, const char* secondName);
/// At least one entry.
bool requireEntries(std::size_t count, const char* name);

} // namespace zanfcp::Parameter
