#include "mxf/metadata/HeaderSets.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace TamrelMxf {
namespace {

constexpr std::array<std::uint8_t, 4> kSmptePrefix{0x06, 0x0E, 0x2B, 0x34};
constexpr std::uint64_t kPrimerItem = 0x0D01020101050100;

std::size_t DistanceToNextKey(std::span<const std::uint8_t> bytes)
{
    const auto found = std::search(bytes.begin() + 1, bytes.end(), kSmptePrefix.begin(), kSmptePrefix.end());
    return static_cast<std::size_t>(found - bytes.begin());
}

} // namespace

bool IsLocalSetKey(const SUl& key)
{
    // Byte 5: 02 for groups. Byte 6: the coding; its lower bits are 13h for local sets with 2-byte tags (SMPTE ST 336).
    return key.IsSmpte() && key.bytes[4] == 0x02 && (key.bytes[5] & 0x1F) == 0x13;
}

SHeaderSets ReadHeaderSets(std::span<const std::uint8_t> bytes)
{
    SHeaderSets header;
    while (!bytes.empty()) {
        CKlv klv;
        const int result = klv.View(bytes);
        if (result == kNotAKey) {
            const std::size_t step = DistanceToNextKey(bytes);
            header.skippedBytes += step;
            bytes = bytes.subspan(step);
            continue;
        }
        if (result != kSuccess || klv.TotalSize() < 0) { // cut, or of indefinite length
            header.isCut = true;
            break;
        }
        if (!header.hasPrimer && klv.Key().Item() == kPrimerItem) {
            header.hasPrimer = header.primer.ImportFrom(&klv) == kSuccess;
        } else if (IsLocalSetKey(klv.Key())) {
            auto set = std::make_unique<CMetadataSet>();
            if (set->ImportFrom(&klv) == kSuccess) header.sets.Append(std::move(set));
        }
        bytes = bytes.subspan(static_cast<std::size_t>(klv.TotalSize()));
    }
    return header;
}

} // namespace TamrelMxf
