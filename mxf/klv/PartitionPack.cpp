#include "mxf/klv/PartitionPack.h"

#include "mxf/klv/Keys.h"
#include "platform/ByteReader.h"

#include <algorithm>
#include <span>
#include <utility>

namespace TamrelMxf {

namespace {

SUl ReadUl(zanfcp::ByteReader& in)
{
    SUl ul;
    const auto bytes = in.take(SUl::kSize);
    std::ranges::transform(bytes, ul.bytes.begin(), [](std::byte b) { return std::to_integer<std::uint8_t>(b); });
    return ul;
}

/// A batch: entry count, entry size, entries. Longer entries than a label are read by their first 16 bytes.
std::vector<CPartitionPack::SEssenceContainer> ReadContainers(zanfcp::ByteReader& in, const CMxfUlDict& dict)
{
    std::vector<CPartitionPack::SEssenceContainer> containers;
    const auto count = in.read<std::uint32_t>();
    const auto size = in.read<std::uint32_t>();
    if (!in.ok() || size < SUl::kSize) return containers;
    containers.reserve(std::min<std::size_t>(count, in.remaining() / size));
    for (std::uint32_t i = 0; i < count && in.remaining() >= size; ++i) {
        zanfcp::ByteReader entry = in.sub(size);
        const SUl label = ReadUl(entry);
        const bool isGeneric = label.Item() == Keys::kMultipleMappings.Item(); // byte 5 is 01 or 04 in files
        containers.push_back({label, isGeneric ? nullptr : dict.Find(label)});
    }
    return containers;
}

} // namespace

int CPartitionPack::ImportFrom(const CKlv* klv, const CMxfUlDict& dict, std::int64_t foundAt)
{
    if (klv == nullptr) return kNullArgument;
    if (!Keys::IsPartitionPack(klv->Key()) || klv->Value().empty()) return kOutOfRange;

    CPartitionPack pack;
    pack.kind = static_cast<EPartitionKind>(klv->Key().bytes[13]);
    pack.status = static_cast<EPartitionStatus>(klv->Key().bytes[14]);
    zanfcp::ByteReader in{std::as_bytes(klv->Value())};
    pack.majorVersion = in.read<std::uint16_t>();
    pack.minorVersion = in.read<std::uint16_t>();
    pack.kagSize = in.read<std::uint32_t>();
    pack.thisPartition = in.read<std::uint64_t>();
    pack.previousPartition = in.read<std::uint64_t>();
    pack.footerPartition = in.read<std::uint64_t>();
    pack.extent.headerByteCount = in.read<std::uint64_t>();
    pack.extent.indexByteCount = in.read<std::uint64_t>();
    pack.indexSID = in.read<std::uint32_t>();
    pack.bodyOffset = in.read<std::uint64_t>();
    pack.bodySID = in.read<std::uint32_t>();
    pack.operationalPattern = ReadUl(in);
    if (!in.ok()) return kCutShort;
    pack.essenceContainers = ReadContainers(in, dict);
    pack.extent.position = foundAt;
    pack.extent.packSize = klv->TotalSize();
    *this = std::move(pack);
    return kSuccess;
}

std::unique_ptr<CPartitionPack> CPartitionPack::CreateFrom(const CKlv* klv, const CMxfUlDict& dict,
                                                           std::int64_t foundAt)
{
    auto pack = std::make_unique<CPartitionPack>();
    if (pack->ImportFrom(klv, dict, foundAt) != kSuccess) return nullptr;
    return pack;
}

} // namespace TamrelMxf
