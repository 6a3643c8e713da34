#include "mxf/metadata/PrimerPack.h"

#include "platform/ByteReader.h"

#include <algorithm>
#include <array>

namespace TamrelMxf {
namespace {

constexpr std::array<std::uint8_t, 12> kPackPrefix{0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05,
                                                   0x01, 0x01, 0x0D, 0x01, 0x02, 0x01};
constexpr std::size_t kEntrySize = 2 + SUl::kSize;

/// Sorts by key; of two entries with the same one the later one stays.
template <typename Entry> void SortAsMap(std::vector<Entry>& entries)
{
    std::ranges::stable_sort(entries, {}, &Entry::first);
    const auto last = std::unique(entries.rbegin(), entries.rend(),
                                  [](const Entry& a, const Entry& b) { return a.first == b.first; });
    entries.erase(entries.begin(), last.base());
}

template <typename Entry, typename Key> const Entry* FindKey(const std::vector<Entry>& entries, Key key)
{
    const auto found = std::ranges::lower_bound(entries, key, {}, &Entry::first);
    return found == entries.end() || found->first != key ? nullptr : &*found;
}

} // namespace

int CPackImporter::ImportFrom(const CKlv* klv)
{
    value_.clear();
    if (klv == nullptr) return kNullArgument;
    const std::span<const std::uint8_t> value = klv->Value();
    const SUl& key = klv->Key();
    if (value.empty() || !std::equal(kPackPrefix.begin(), kPackPrefix.end(), key.bytes.begin())) return kOutOfRange;
    value_.assign(value.begin(), value.end());
    return kSuccess;
}

int CPrimerPack::ImportFrom(const CKlv* klv)
{
    dynamicTags_.clear();
    labels_.clear();
    entryCount_ = entrySize_ = 0;
    if (const int result = pack_.ImportFrom(klv); result != kSuccess) return result;

    zanfcp::ByteReader reader{std::as_bytes(Value())};
    entryCount_ = reader.read<std::uint32_t>();
    entrySize_ = reader.read<std::uint32_t>();
    const std::size_t count = std::min<std::size_t>(entryCount_, reader.remaining() / kEntrySize);
    labels_.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto tag = reader.read<std::uint16_t>();
        const auto at = static_cast<std::size_t>(reader.offset());
        reader.skip(SUl::kSize);
        labels_.emplace_back(tag, at);
        if (tag >= kFirstDynamicTag) dynamicTags_.emplace_back(SUl::From(&Value()[at]).Item(), tag);
    }
    SortAsMap(labels_);
    SortAsMap(dynamicTags_);
    return kSuccess;
}

std::optional<std::uint16_t> CPrimerPack::TagOf(std::uint64_t labelItem) const
{
    const auto* found = FindKey(dynamicTags_, labelItem);
    if (found == nullptr) return std::nullopt;
    return found->second;
}

std::optional<SUl> CPrimerPack::LabelOf(std::uint16_t tag) const
{
    const auto* found = FindKey(labels_, tag);
    if (found == nullptr) return std::nullopt;
    return SUl::From(&Value()[found->second]);
}

} // namespace TamrelMxf
