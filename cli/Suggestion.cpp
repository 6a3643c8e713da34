#include "cli/Suggestion.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zanfcp::cli {
namespace {

constexpr std::size_t kLongestWord = 64; // no key is longer, and the comparison is quadratic

std::string lowered(std::string_view text)
{
    std::string out{text};
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

/// Edits from one word to the other, two neighbours that change places counting as one.
std::size_t distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> beforeLast(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        last[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, changed});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        std::swap(beforeLast, last);
        std::swap(last, row);
    }
    return last[b.size()];
}

} // namespace

std::optional<std::string> nearestName(std::string_view word, std::span<const std::string> names)
{
    if (word.empty() || word.size() > kLongestWord) return std::nullopt;
    const std::string wanted = lowered(word);
    const std::string* best = nullptr;
    std::size_t fewest = 0;
    for (const std::string& name : names) {
        const std::size_t edits = distance(wanted, lowered(name));
        if (best == nullptr || edits < fewest) {
            best = &name;
            fewest = edits;
        }
    }
    const bool near = best != nullptr && fewest <= std::max<std::size_t>(2, word.size() / 4) && fewest < word.size();
    return near ? std::optional{*best} : std::nullopt;
}

} // namespace zanfcp::cli
