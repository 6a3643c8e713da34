#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What XML 1.0 says about characters and names.
namespace zanfcp {

/// What stands in a document for anything that a document cannot hold: U+FFFD in UTF-8.
inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// One character at the beginning of a text.
struct XMLCharacter {
    std::size_t length = 0; ///< bytes, at least 1; for broken UTF-8 those that one replacement stands for
    char32_t code = 0;      ///< 0 for broken UTF-8
    bool allowed = false;   ///< a document can hold it
};

/// Reads the first character of a text that is not empty. Broken UTF-8 (stray, missing or overlong bytes, surrogates)
/// is taken in the portions that the Unicode Standard recommends, 3.9 "maximal subpart".
/// Source: XML 1.0 (fifth edition), production 2, Char.
XMLCharacter readXmlCharacter(std::string_view text);

/// True for a text without broken UTF-8.
bool isUtf8(std::string_view text);

/// True for a text that can name an element of a document without namespaces.
/// Source: XML 1.0 (fifth edition), production 5, Name; Namespaces in XML 1.0, production 4: no colon.
bool isXmlName(std::string_view text);

/// A text as a document can hold it.
struct XMLCleanText {
    std::string text;
    std::size_t replaced = 0; ///< characters that became kReplacementCharacter
};
XMLCleanText cleanXmlText(std::string_view text);

/// A text for a log line: what a document cannot hold, and line ends, are replaced.
std::string printableXmlText(std::string_view text);

} // namespace zanfcp
