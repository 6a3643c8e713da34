#include "mxf/avc/Sei.h"

namespace TamrelMxf {
namespace {

constexpr std::uint32_t kPictureTiming = 1;
constexpr std::uint32_t kRecoveryPoint = 6;

/// Payload type or size: bytes FF and one that is less, all added up.
std::uint32_t ReadStepped(CBitsReader& bits)
{
    std::uint32_t sum = 0;
    for (std::uint32_t byte = 0xFF; byte == 0xFF && bits.IsOk();) {
        byte = bits.Bits(8);
        sum += byte;
    }
    return sum;
}

} // namespace

void SAvcSei::Read(std::span<const std::uint8_t> nal)
{
    if (nal.empty()) return;
    CBitsReader bits{nal.subspan(1)};
    while (bits.MoreRbspData()) {
        const std::uint32_t type = ReadStepped(bits);
        const std::uint32_t size = ReadStepped(bits);
        CBitsReader message = bits;
        bits.Skip(std::uint64_t{size} * 8);
        if (!bits.IsOk()) return;
        if (type == kPictureTiming) timing_ = message;
        if (type != kRecoveryPoint) continue;
        const SAvcRecoveryPoint point{message.Ue(), message.Flag(), message.Flag()};
        if (message.IsOk()) recoveryPoint = point;
    }
}

std::optional<std::uint8_t> SAvcSei::PictureStructure(const SAvcVui& vui) const
{
    if (!timing_ || !vui.hasPictureStructure) return std::nullopt;
    CBitsReader bits = *timing_;
    if (vui.hasRemovalDelays) bits.Skip(std::uint64_t{vui.removalDelayBits} + vui.outputDelayBits);
    const std::uint32_t structure = bits.Bits(4);
    if (!bits.IsOk() || structure > 8) return std::nullopt;
    return static_cast<std::uint8_t>(structure);
}

} // namespace TamrelMxf
