#include "fcp/ElementIds.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

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

std::unordered_set<std::string> idsOf(std::string_view text)
{
    std::unordered_set<std::string> ids;
    std::string_view last;
    visitIds(text, [&](std::string_view raw, bool isId) {
        if (isId && raw != last) ids.insert(decoded(raw));
        last = raw;
    });
    return ids;
}

} // namespace

std::string withOwnIds(std::string_view content, std::string_view existing)
{
    std::unordered_set<std::string> taken = idsOf(existing);
    const std::unordered_set<std::string> own = idsOf(content);
    std::unordered_map<std::string, std::string> suffixes; // of the ids that are to be changed
    for (const std::string& id : own) {
        if (!taken.contains(id)) continue;
        std::size_t number = 2;
        std::string suffix;
        do
            suffix = " (" + std::to_string(number++) + ")";
        while (taken.contains(id + suffix) || own.contains(id + suffix));
        suffixes.emplace(id, suffix);
    }
    std::string changed;
    if (suffixes.empty()) return changed = content;
    changed.reserve(content.size() + content.size() / 64);
    const char* copied = content.data();
    visitIds(content, [&](std::string_view raw, bool) {
        const auto suffix = suffixes.find(decoded(raw));
        if (suffix == suffixes.end()) return;
        const char* end = raw.data() + raw.size();
        changed.append(copied, end).append(suffix->second);
        copied = end;
    });
    return changed.append(copied, content.data() + content.size());
}

} // namespace zanfcp
