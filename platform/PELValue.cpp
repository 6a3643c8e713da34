#include "platform/PELValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

namespace zanfcp {
namespace {

constexpr bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view afterBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

bool truthOf(std::string_view text)
{
    text = afterBlanks(text);
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) text.remove_prefix(1);
    while (!text.empty() && text.front() == '0')
        text.remove_prefix(1);
    return !text.empty() && std::string_view{"YyTt123456789"}.find(text.front()) != std::string_view::npos;
}

NSInteger leadingInteger(std::string_view text)
{
    text = afterBlanks(text);
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (!text.empty() && text.front() == '-' && !negative) return 0; // "+-5"
    NSInteger value = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (fault == std::errc::result_out_of_range)
        return negative ? std::numeric_limits<NSInteger>::min() : std::numeric_limits<NSInteger>::max();
    return fault == std::errc{} ? value : 0;
}

NSInteger truncated(double number)
{
    constexpr double kLimit = 9223372036854775808.0; // 2^63
    if (std::isnan(number)) return 0;
    if (number >= kLimit) return std::numeric_limits<NSInteger>::max();
    if (number < -kLimit) return std::numeric_limits<NSInteger>::min();
    return static_cast<NSInteger>(number);
}

} // namespace

PELDictionary::PELDictionary(std::initializer_list<std::pair<std::string, PELValue>> entries)
{
    for (const auto& [key, value] : entries)
        set(key, value);
}

const PELValue* PELDictionary::find(std::string_view key) const
{
    const auto at = std::ranges::find_if(entries_, [key](const auto& entry) { return entry.first == key; });
    return at == entries_.end() ? nullptr : &at->second;
}

void PELDictionary::set(std::string_view key, PELValue value)
{
    const auto at = std::ranges::find_if(entries_, [key](const auto& entry) { return entry.first == key; });
    if (at != entries_.end())
        at->second = std::move(value);
    else
        entries_.emplace_back(std::string(key), std::move(value));
}

void PELDictionary::remove(std::string_view key)
{
    std::erase_if(entries_, [key](const auto& entry) { return entry.first == key; });
}

bool PELDictionary::boolFor(std::string_view key) const
{
    const PELValue* value = find(key);
    return value != nullptr && value->boolValue();
}

NSInteger PELDictionary::integerFor(std::string_view key) const
{
    const PELValue* value = find(key);
    return value == nullptr ? 0 : value->integerValue();
}

std::optional<std::string> PELDictionary::stringFor(std::string_view key) const
{
    const PELValue* value = find(key);
    const std::string* text = value == nullptr ? nullptr : value->as<std::string>();
    return text == nullptr ? std::nullopt : std::optional{*text};
}

const PELArray* PELDictionary::arrayFor(std::string_view key) const
{
    const PELValue* value = find(key);
    return value == nullptr ? nullptr : value->as<PELArray>();
}

const PELDictionary* PELDictionary::dictionaryFor(std::string_view key) const
{
    const PELValue* value = find(key);
    return value == nullptr ? nullptr : value->as<PELDictionary>();
}

const PELColor* PELDictionary::colorFor(std::string_view key) const
{
    const PELValue* value = find(key);
    return value == nullptr ? nullptr : value->as<PELColor>();
}

bool operator==(const PELDictionary& a, const PELDictionary& b)
{
    return a.entries_ == b.entries_;
}

bool PELValue::boolValue() const
{
    return std::visit(
        [](const auto& value) {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, bool>)
                return value;
            else if constexpr (std::is_arithmetic_v<T>)
                return value < 0 || value > 0;
            else if constexpr (std::is_same_v<T, std::string>)
                return truthOf(value);
            else
                return false;
        },
        content_);
}

NSInteger PELValue::integerValue() const
{
    return std::visit(
        [](const auto& value) -> NSInteger {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, double>)
                return truncated(value);
            else if constexpr (std::is_integral_v<T>)
                return static_cast<NSInteger>(value);
            else if constexpr (std::is_same_v<T, std::string>)
                return leadingInteger(value);
            else
                return 0;
        },
        content_);
}

std::string PELValue::stringValue() const
{
    return std::visit(
        [](const auto& value) -> std::string {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, bool>)
                return value ? "1" : "0";
            else if constexpr (std::is_same_v<T, std::string>)
                return value;
            else if constexpr (std::is_arithmetic_v<T>) {
                char digits[64];
                const auto [end, fault] = std::to_chars(digits, digits + sizeof digits, value);
                return fault == std::errc{} ? std::string(digits, end) : std::string();
            } else
                return {};
        },
        content_);
}

} // namespace zanfcp
