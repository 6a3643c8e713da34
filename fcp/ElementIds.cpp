#include "fcp/ElementIds.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace zanfcp {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::array<std::string_view, 3> kReferences{"masterclipid", "subclipmasterid", "linkclipref"};

void appendUTF8(std::string& text, std::uint32_t c)
{
    if (c < 0x80) {
        text += static_cast<char>(c);
        return;
    }
    const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    constexpr std::array<std::uint32_t, 4> kLead{0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(kLead[static_cast<std::size_t>(more)] | c >> (6 * more));
    for (int i = more - 1; i >= 0; --i)
        text += static_cast<char>(0x80 | (c >> (6 * i) & 0x3F));
}

/// What a character or predefined entity reference stands for, without its "&" and ";".
std::string meaning(std::string_view name)
{
    struct Entity {
        std::string_view name;
        char stands;
    };
    for (const Entity& each : {Entity{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}})
        if (name == each.name) return {each.stands};
    std::string text;
    if (!name.starts_with('#')) return text;
    const bool isHex = name.size() > 1 && name[1] == 'x';
    std::uint32_t c = 0;
    for (const char digit : name.substr(isHex ? 2 : 1))
        c = (c * (isHex ? 16U : 10U) +
             static_cast<std::uint32_t>(digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10)) &
            0x1FFFFF; // a well-formed reference has no more bits
    appendUTF8(text, c);
    return text;
}

/// One id may be written in several ways: "a&amp;b" and "a&#38;b".
std::string decoded(std::string_view raw)
{
    std::string text;
    while (!raw.empty()) {
        const std::size_t plain = std::min(raw.find('&'), raw.size());
        text += raw.substr(0, plain);
        raw.remove_prefix(plain);
        const std::size_t end = raw.find(';');
        if (raw.empty() || end == std::string_view::npos) break;
        text += meaning(raw.substr(1, end - 1));
        raw.remove_prefix(end + 1);
    }
    return text;
}

/// Where the value of the attribute "id" stands inside a start tag; empty for none.
std::string_view idOf(std::string_view tag)
{
    std::size_t at = std::min(tag.find_first_of(kBlanks), tag.size());
    for (;;) {
        at = tag.find_first_not_of(kBlanks, at);
        if (at == std::string_view::npos) return {};
        const std::size_t equals = tag.find('=', at);
        const std::size_t open = tag.find_first_of("\"'", equals);
        if (equals == std::string_view::npos || open == std::string_view::npos) return {};
        const std::size_t close = tag.find(tag[open], open + 1);
        if (close == std::string_view::npos) return {};
        std::string_view name = tag.substr(at, equals - at);
        name = name.substr(0, name.find_first_of(kBlanks));
        if (name == "id") return tag.substr(open + 1, close - open - 1);
        at = close + 1;
    }
}

/// The end of a tag that begins at `at`: its ">" outside of attribute values.
std::size_t endOfTag(std::string_view text, std::size_t at)
{
    for (char quote = 0; at < text.size(); ++at) {
        if (quote != 0)
            quote = text[at] == quote ? char{0} : quote;
        else if (text[at] == '"' || text[at] == '\'')
            quote = text[at];
        else if (text[at] == '>')
            return at;
    }
    return text.size();
}

/// Calls `visit` with every id, and with every text that refers to one, as they stand in `text`, in their order.
/// Of markup that is no tag, nothing is visited.
template <class Visit> void visitIds(std::string_view text, Visit visit)
{
    struct Skipped {
        std::string_view begin, end;
    };
    constexpr std::array<Skipped, 3> kNoTags{{{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}};
    for (std::size_t at = text.find('<'); at < text.size(); at = text.find('<', at)) {
        const std::string_view rest = text.substr(at);
        const auto skipped = std::ranges::find_if(kNoTags, [&](const Skipped& s) { return rest.starts_with(s.begin); });
        if (skipped != kNoTags.end()) {
            at = text.find(skipped->end, at + skipped->begin.size());
            continue;
        }
        const std::size_t end = endOfTag(text, at);
        const std::string_view tag = text.substr(at + 1, end - at - 1);
        at = end;
        if (tag.starts_with('/') || tag.starts_with('!')) continue;
        const std::string_view id = idOf(tag);
        if (!id.empty()) visit(id, true);
        const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/"));
        if (std::ranges::find(kReferences, name) == kReferences.end() || tag.ends_with('/')) continue;
        const std::size_t begin = std::min(end + 1, text.size());
        const std::string_view reference = text.substr(begin, text.find('<', begin) - begin);
        if (!reference.empty()) visit(reference, false);
    }
}

/// The ids of all elements of a text. Those that stand there as they mean are not copied.
class Ids {
public:
    /// \param text  borrowed; must outlive the ids
    explicit Ids(std::string_view text)
    {
        std::vector<std::string_view> recent(4096); // most ids are those of a few clips, again and again
        visitIds(text, [&](std::string_view raw, bool isId) {
            if (!isId) return;
            std::string_view& last = recent[std::hash<std::string_view>{}(raw) % recent.size()];
            if (std::exchange(last, raw) == raw) return;
            const bool plain = raw.find('&') == std::string_view::npos;
            sorted_.push_back(plain ? raw : std::string_view(decoded_.emplace_back(decoded(raw))));
        });
        std::ranges::sort(sorted_);
        sorted_.erase(std::unique(sorted_.begin(), sorted_.end()), sorted_.end());
    }

    std::size_t size() const { return sorted_.size(); }
    std::string_view operator[](std::size_t at) const { return sorted_[at]; }
    /// Where an id is; nothing when it is not among them.
    std::optional<std::size_t> find(std::string_view id) const
    {
        const auto at = std::ranges::lower_bound(sorted_, id);
        if (at == sorted_.end() || *at != id) return std::nullopt;
        return static_cast<std::size_t>(at - sorted_.begin());
    }
    bool contains(std::string_view id) const { return find(id).has_value(); }

private:
    std::deque<std::string> decoded_; // elements stay where they are
    std::vector<std::string_view> sorted_;
};

std::string suffix(unsigned number)
{
    return " (" + std::to_string(number) + ")";
}

} // namespace

std::string withOwnIds(std::string content, std::string_view existing)
{
    const Ids own{content};
    const Ids taken{existing};
    std::vector<unsigned> numbers(own.size(), 0); // that each id gets at its end; 0 for none
    for (std::size_t i = 0; i < own.size(); ++i) {
        if (!taken.contains(own[i])) continue;
        std::string changed;
        numbers[i] = 1;
        do
            changed.assign(own[i]).append(suffix(++numbers[i]));
        while (taken.contains(changed) || own.contains(changed));
    }
    if (std::ranges::all_of(numbers, [](unsigned number) { return number == 0; })) return content;
    std::string changed;
    changed.reserve(content.size() + content.size() / 64);
    std::size_t copied = 0;
    visitIds(content, [&](std::string_view raw, bool) {
        const auto id = raw.find('&') == std::string_view::npos ? own.find(raw) : own.find(decoded(raw));
        if (!id || numbers[*id] == 0) return;
        const auto end = static_cast<std::size_t>(raw.data() - content.data()) + raw.size();
        changed.append(content, copied, end - copied).append(suffix(numbers[*id]));
        copied = end;
    });
    return changed.append(content, copied);
}

} // namespace zanfcp
