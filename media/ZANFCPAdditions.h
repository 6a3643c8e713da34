#pragma once

#include "../platform/FourCC.h"

#include <string>

/// Additions to texts.
namespace zanfcp::ZANFCPAdditions {

/// The four bytes of `code`, most significant first, as ASCII: always four characters. A byte above 0x7F is no ASCII
/// and becomes U+FFFD; control characters, NUL included, stay.
std::string stringWithFourCharCode(FourCC code);

} // namespace zanfcp::ZANFCPAdditions
