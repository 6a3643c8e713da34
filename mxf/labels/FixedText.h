#pragma once

#include <cstddef>
#include <string_view>

namespace TamrelMxf {

/// A text of at most N bytes that lies in its row itself. A table of such rows holds no addresses, which the loader
/// would have to put in, page by page, for every program that is started; it costs what the addresses cost.
template <std::size_t N> struct SFixedText {
    char text[N + 1];

    /// Valid as long as the row.
    constexpr std::string_view View() const { return text; }
    constexpr operator std::string_view() const { return View(); } // so that it serves where a view does
    friend constexpr bool operator==(const SFixedText& one, std::string_view other) { return one.View() == other; }
};

} // namespace TamrelMxf
