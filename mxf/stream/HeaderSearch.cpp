#include "mxf/stream/HeaderSearch.h"

#include "mxf/klv/Keys.h"
#include "mxf/klv/Klv.h"

#include <algorithm>
#include <limits>

namespace TamrelMxf {
namespace {

constexpr std::int64_t kEndless = std::numeric_limits<std::int64_t>::max();

bool LooksLikeKey(const std::uint8_t* at)
{
    return at[0] == 0x06 && at[1] == 0x0E && at[2] == 0x2B && at[3] == 0x34 && at[4] >= 1 && at[4] <= 4 && at[5] >= 1 &&
           at[5] <= 5;
}

/// Bytes of the KLV at the start of `bytes`, which hold a key and its first length byte; nothing while the length is
/// not whole. An indefinite length counts as none, one that does not fit 63 bits as endless.
std::optional<std::int64_t> KlvSize(std::span<const std::uint8_t> bytes)
{
    SKlvHeader klv;
    if (klv.Parse(bytes) == kSuccess) return klv.IsIndefinite() ? klv.HeaderSize() : klv.TotalSize();
    const std::size_t lengthBytes = bytes[SUl::kSize] & 0x0FU;
    if (bytes.size() <= SUl::kSize + lengthBytes) return std::nullopt;
    return kEndless;
}

std::int64_t HeaderSize(const CPartitionPack& pack, std::int64_t klvSize)
{
    auto size = static_cast<std::uint64_t>(klvSize); // a few megabytes at most, as are the lines of the grid
    if (pack.kagSize >= 2) size = (size + pack.kagSize - 1) / pack.kagSize * pack.kagSize;
    if (__builtin_add_overflow(size, pack.extent.headerByteCount, &size) ||
        __builtin_add_overflow(size, pack.extent.indexByteCount, &size))
        return kEndless;
    return static_cast<std::int64_t>(std::min(size, static_cast<std::uint64_t>(kEndless)));
}

} // namespace

SHeaderSearch SearchHeader(std::span<const std::uint8_t> slice, const CMxfUlDict& dict)
{
    SHeaderSearch search;
    if (slice.size() <= kSearchTail) return search;
    const std::size_t end = slice.size() - kSearchTail;
    search.consumed = end;
    for (std::size_t i = 0; i < end;) {
        if (!LooksLikeKey(&slice[i])) {
            ++i;
            continue;
        }
        const auto rest = slice.subspan(i);
        const std::optional<std::int64_t> size = KlvSize(rest);
        if (!size || *size > static_cast<std::int64_t>(rest.size())) {
            const bool isLarge = size && *size > kMostBytesWaitedFor;
            search.consumed = isLarge ? i + SUl::kSize : i;
            return search;
        }
        const SUl key = SUl::From(rest.data());
        const bool isHeader = key.bytes[13] == static_cast<std::uint8_t>(EPartitionKind::header);
        const bool isBody = key.bytes[13] == static_cast<std::uint8_t>(EPartitionKind::body);
        if (!Keys::IsPartitionPack(key) || (!isHeader && !isBody)) {
            ++i;
            continue;
        }
        CKlv klv;
        auto pack = std::make_unique<CPartitionPack>();
        search.isDamaged = klv.View(rest.first(static_cast<std::size_t>(*size))) != kSuccess ||
                           pack->ImportFrom(&klv, dict, static_cast<std::int64_t>(i)) != kSuccess;
        if (search.isDamaged || isHeader || pack->HasMetadata()) {
            search.consumed = i;
            search.isFound = !search.isDamaged;
            search.headerSize = search.isFound ? HeaderSize(*pack, *size) : 0;
            search.pack = search.isFound ? std::move(pack) : nullptr;
            return search;
        }
        i += static_cast<std::size_t>(*size);
    }
    return search;
}

} // namespace TamrelMxf
