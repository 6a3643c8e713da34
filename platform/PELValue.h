#pragma once

#include "Integers.h"
#include "PELColor.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace zanfcp {

class PELValue;

/// Ordered list of option values.
using PELArray = std::vector<PELValue>;

/// Keyed option values in the order in which they were first set. Setting a key again keeps its place.
class PELDictionary {
public:
    PELDictionary() = default;
    PELDictionary(std::initializer_list<std::pair<std::string, PELValue>> entries);

    /// The value of `key`, or null. Owned by the dictionary, valid until it changes.
    const PELValue* find(std::string_view key) const;
    bool contains(std::string_view key) const { return find(key) != nullptr; }
    void set(std::string_view key, PELValue value);
    void remove(std::string_view key);

    using Entries = std::vector<std::pair<std::string, PELValue>>;
    bool empty() const;
    std::size_t size() const;
    Entries::const_iterator begin() const;
    Entries::const_iterator end() const;

    /// The usual reading of one entry; an absent key reads false, 0 or nothing.
    bool boolFor(std::string_view key) const;
    NSInteger integerFor(std::string_view key) const;
    /// The text of a text value; nothing for an absent key or a value of another type.
    std::optional<std::string> stringFor(std::string_view key) const;
    /// Borrowed; null for an absent key or a value of another type.
    const PELArray* arrayFor(std::string_view key) const;
    const PELDictionary* dictionaryFor(std::string_view key) const;
    const PELColor* colorFor(std::string_view key) const;

    friend bool operator==(const PELDictionary&, const PELDictionary&);

private:
    Entries entries_;
};

/// One value of an options dictionary: boolean, integer, number, text, colour, list or dictionary.
class PELValue {
public:
    using Content = std::variant<bool, std::int64_t, double, std::string, PELColor, PELArray, PELDictionary>;

    PELValue() : content_{false} {}
    PELValue(bool value) : content_{value} {}                           // NOLINT: implicit, dictionaries read well
    PELValue(int value) : content_{static_cast<std::int64_t>(value)} {} // NOLINT
    PELValue(std::int64_t value) : content_{value} {}                   // NOLINT
    PELValue(double value) : content_{value} {}                         // NOLINT
    PELValue(const char* value) : content_{std::string(value)} {}       // NOLINT
    PELValue(std::string value) : content_{std::move(value)} {}         // NOLINT
    PELValue(PELColor value) : content_{value} {}                       // NOLINT
    PELValue(PELArray value) : content_{std::move(value)} {}            // NOLINT
    PELValue(PELDictionary value) : content_{std::move(value)} {}       // NOLINT

    /// Boolean, integer or floating-point number.
    bool isNumber() const { return content_.index() <= 2; }
    template <typename T> const T* as() const { return std::get_if<T>(&content_); }
    const Content& content() const { return content_; }

    /// Truth: a number other than 0; a text that, after blanks, a sign and zeros, begins with Y, y, T, t or 1 to 9.
    bool boolValue() const;
    /// A number, truncated toward zero; a text's leading integer (blanks and a sign allowed, saturating), else 0.
    NSInteger integerValue() const;
    /// The value as it is written into a document: texts as they are, integers in decimal, booleans "1" and "0",
    /// other numbers in the shortest form that reads back the same; empty for a colour, list or dictionary.
    std::string stringValue() const;

    friend bool operator==(const PELValue&, const PELValue&) = default;

private:
    Content content_;
};

inline bool PELDictionary::empty() const
{
    return entries_.empty();
}
inline std::size_t PELDictionary::size() const
{
    return entries_.size();
}
inline PELDictionary::Entries::const_iterator PELDictionary::begin() const
{
    return entries_.begin();
}
inline PELDictionary::Entries::const_iterator PELDictionary::end() const
{
    return entries_.end();
}

} // namespace zanfcp
