#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zanfcp::cli {

/// `text` as it can be shown on a terminal: control characters, invalid UTF-8 and characters that reverse or hide
/// what stands around them are written as escapes ("\x1B", "\u{202E}"). A line end is one of them.
std::string printable(std::string_view text);

/// Columns that a terminal uses for a printable UTF-8 text: none for combining marks, two for wide characters of
/// East Asia and for emoji. Source: Unicode Standard Annex 11, and its emoji ranges.
std::size_t displayWidth(std::string_view text);

/// Rows of texts under headings, each column as wide as its widest cell.
class Table {
public:
    explicit Table(std::vector<std::string> headings);

    /// One cell a heading; made printable here.
    void addRow(std::vector<std::string> cells);
    /// All lines, each ended; columns that would hold nothing but empty cells are left out.
    std::string text() const;

private:
    std::vector<std::vector<std::string>> rows_; ///< the first one are the headings
};

} // namespace zanfcp::cli
