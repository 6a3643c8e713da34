#include "mxf/klv/KlvSearch.h"

#include "mxf/klv/Keys.h"
#include "mxf/klv/Klv.h"

#include <algorithm>
#include <array>

namespace TamrelMxf {

namespace {

constexpr std::array<std::uint8_t, 3> kKeyStart{0x06, 0x0E, 0x2B};

std::span<const std::uint8_t> From(std::span<const std::uint8_t> buffer, std::int64_t position)
{
    return buffer.subspan(std::min(buffer.size(), static_cast<std::size_t>(position)));
}

bool IsKey(std::span<const std::uint8_t> bytes)
{
    return bytes.size() >= 4 && std::equal(kKeyStart.begin(), kKeyStart.end(), bytes.begin()) && bytes[3] == 0x34;
}

/// An offset the way the warning prints it.
const void* Printed(std::int64_t offset)
{
    return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(offset));
}

} // namespace

void SkipNonKlvData(const std::uint8_t* buffer, std::int64_t length, std::int64_t& position,
                    const CLoggerT<CSnitcher>& logger)
{
    constexpr std::int64_t kTail = 5;
    const std::int64_t stop = length - kTail; // the last place that is looked at ends before it
    if (position >= stop) return;
    // Two bytes of a match may lie in the tail, its first byte may not.
    const std::uint8_t* const found =
        std::search(buffer + position, buffer + stop + 2, kKeyStart.begin(), kKeyStart.end());
    const std::int64_t first = position;
    position = std::min<std::int64_t>(found - buffer, stop);
    if (position != first) logger.LogWarning("Non-KLV data at offsets %p...%p", Printed(first), Printed(position));
}

bool SkipToKey(std::span<const std::uint8_t> buffer, std::int64_t& position, const CLoggerT<CSnitcher>& logger)
{
    while (!IsKey(From(buffer, position))) {
        const std::int64_t before = position;
        SkipNonKlvData(buffer.data(), static_cast<std::int64_t>(buffer.size()), position, logger);
        if (position != before) continue;
        if (From(buffer, position).size() <= 5) return false;
        ++position; // three bytes of a key, but not the fourth
    }
    return true;
}

std::optional<std::int64_t> WalkToPartitionPack(std::span<const std::uint8_t> buffer, std::int64_t& position,
                                                const CLoggerT<CSnitcher>& logger)
{
    while (SkipToKey(buffer, position, logger)) {
        SKlvHeader header;
        const auto left = From(buffer, position);
        if (header.Parse(left) != kSuccess) {
            if (left.size() < SKlvHeader::kProbeSize) return std::nullopt;
            ++position; // a key with an impossible length is rubbish like any other
            continue;
        }
        if (Keys::IsPartitionPack(header.key)) return position;
        if (header.IsIndefinite() || header.TotalSize() > static_cast<std::int64_t>(left.size())) return std::nullopt;
        position += header.TotalSize();
    }
    return std::nullopt;
}

std::optional<std::int64_t> SearchPartitionPack(std::span<const std::uint8_t> buffer)
{
    auto at = buffer.begin();
    for (;;) {
        at = std::search(at, buffer.end(), kKeyStart.begin(), kKeyStart.end());
        if (static_cast<std::size_t>(buffer.end() - at) < SUl::kSize) return std::nullopt;
        const std::int64_t position = at - buffer.begin();
        if (Keys::IsPartitionPack(SUl::From(buffer.data() + position))) return position;
        ++at;
    }
}

} // namespace TamrelMxf
