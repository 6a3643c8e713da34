#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace zanfcp {

/// The name of an element, in the size of one pointer. The names of the interchange format are kept once for the whole
/// program; any other name belongs to its element. Looking a name up takes no lock.
class ElementName {
public:
    /// Longest name that `Entry::padded` holds.
    static constexpr std::size_t kPadded = 32;

    struct Entry {
        std::string text;
        std::array<char, kPadded> padded{}; ///< `text` followed by zeros, where it fits: can be copied at fixed length
        bool isName = false;                ///< can stand in a document: an NCName of XML Namespaces 1.0
        bool shared = false;                ///< one of the format's own names
    };

    explicit ElementName(std::string_view text = {}) : entry_{find(text)} {}
    ElementName(const ElementName& other) : entry_{other.entry_->shared ? other.entry_ : new Entry(*other.entry_)} {}
    ElementName& operator=(const ElementName&) = delete;
    ElementName& operator=(std::string_view text)
    {
        const Entry* const next = find(text); // before the old text goes: `text` may be a view of it
        release();
        entry_ = next;
        return *this;
    }
    ~ElementName() { release(); }

    const std::string& text() const { return entry_->text; }
    const Entry& entry() const { return *entry_; }

private:
    static const Entry* find(std::string_view text);
    void release()
    {
        if (!entry_->shared) delete entry_;
    }

    const Entry* entry_; ///< never null; owned unless shared
};

} // namespace zanfcp
