#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace zanfcp::quicktime {

/// A text of user data as UTF-8, up to its first NUL. Taken as UTF-16 after a byte order mark, else as UTF-8 where it
/// is well-formed UTF-8, else as Mac OS Roman. The language code beside such a text promises one of these, but writers
/// put UTF-8 under every code, and of the Macintosh encodings only Roman is still met.
/// Source: Apple, QuickTime File Format, "User Data Text Strings and Language Codes".
std::string decodeInternationalText(std::span<const std::byte> bytes);

} // namespace zanfcp::quicktime
