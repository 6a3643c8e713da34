#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace zanfcp {

/// The text in a field of fixed size: up to the first NUL, or all of it when there is none. Borrowed.
template <std::size_t N> std::string_view fixedText(const std::array<char, N>& field)
{
    const auto end = std::ranges::find(field, '\0');
    return {field.data(), static_cast<std::size_t>(end - field.begin())};
}

} // namespace zanfcp
