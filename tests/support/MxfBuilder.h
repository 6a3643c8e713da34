#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

/// MXF files, written byte by byte.
namespace TamrelMxf::test {

using Bytes = std::vector<std::uint8_t>;

/// Appends a big-endian number of `size` bytes.
inline void putNumber(Bytes& bytes, std::uint64_t value, int size)
{
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.push_back(shift < 64 ? static_cast<std::uint8_t>(value >> shift) : std::uint8_t{0});
}

inline void putBytes(Bytes& bytes, const Bytes& more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

/// 16 bytes of a key or label from their hexadecimal digits.
inline Bytes ulOf(std::uint64_t first, std::uint64_t last)
{
    Bytes ul;
    putNumber(ul, first, 8);
    putNumber(ul, last, 8);
    return ul;
}

inline const Bytes kFillKey = ulOf(0x060E2B3401010102, 0x0301021001000000);
inline const Bytes kPrimerKey = ulOf(0x060E2B3402050101, 0x0D01020101050100);
inline const Bytes kRipKey = ulOf(0x060E2B3402050101, 0x0D01020101110100);
inline const Bytes kIndexKey = ulOf(0x060E2B3402530101, 0x0D01020101100100);
inline const Bytes kPictureKey = ulOf(0x060E2B3401020101, 0x0D01030115010501);

/// Writes an MXF file piece by piece. Partitions remember where they are, so that footer offset and random index
/// pack can be written truthfully; a test that wants a lie edits the bytes afterwards.
class MxfBuilder {
public:
    struct Partition {
        std::uint8_t kind = 2;   ///< 2 header, 3 body, 4 footer
        std::uint8_t status = 4; ///< 1 open incomplete … 4 closed complete
        std::uint32_t bodySID = 0;
        std::uint64_t bodyOffset = 0;
        std::uint32_t indexSID = 0;
        Bytes metadata = {};  ///< counted as header metadata
        Bytes index = {};     ///< counted as index table
        std::size_t fill = 0; ///< bytes of fill between pack and metadata, 0 or at least 20
        std::vector<Bytes> containers = {};
    };

    /// Bytes that stand before the header partition; offsets do not count them.
    explicit MxfBuilder(Bytes runIn = {}) : bytes{std::move(runIn)}, runIn_{bytes.size()} {}

    MxfBuilder& klv(const Bytes& key, const Bytes& value, int lengthBytes = 3)
    {
        putBytes(bytes, key);
        bytes.push_back(static_cast<std::uint8_t>(0x80 | lengthBytes));
        putNumber(bytes, value.size(), lengthBytes);
        putBytes(bytes, value);
        return *this;
    }
    /// A fill item of `size` bytes in all, at least 20.
    MxfBuilder& fill(std::size_t size) { return klv(kFillKey, Bytes(size - 20)); }
    MxfBuilder& essence(std::size_t size) { return klv(kPictureKey, Bytes(size, 0xEE)); }

    MxfBuilder& partition(const Partition& p)
    {
        const std::uint64_t at = bytes.size() - runIn_;
        Bytes value;
        putNumber(value, 1, 2);
        putNumber(value, 3, 2);
        putNumber(value, 512, 4);
        putNumber(value, at, 8);
        putNumber(value, partitions.empty() ? 0 : partitions.back().second, 8);
        putNumber(value, p.kind == 4 ? at : 0, 8);
        putNumber(value, p.metadata.size(), 8);
        putNumber(value, p.index.size(), 8);
        putNumber(value, p.indexSID, 4);
        putNumber(value, p.bodyOffset, 8);
        putNumber(value, p.bodySID, 4);
        putBytes(value, ulOf(0x060E2B3404010101, 0x0D01020101010900));
        putNumber(value, p.containers.size(), 4);
        putNumber(value, 16, 4);
        for (const Bytes& container : p.containers)
            putBytes(value, container);
        partitions.emplace_back(p.bodySID, at);
        Bytes key = ulOf(0x060E2B3402050101, 0x0D01020101000000);
        key[13] = p.kind;
        key[14] = p.status;
        klv(key, value);
        if (p.fill > 0) fill(p.fill);
        putBytes(bytes, p.metadata);
        putBytes(bytes, p.index);
        return *this;
    }

    MxfBuilder& randomIndexPack()
    {
        Bytes value;
        for (const auto& [bodySID, offset] : partitions) {
            putNumber(value, bodySID, 4);
            putNumber(value, offset, 8);
        }
        putNumber(value, 16 + 4 + value.size() + 4, 4);
        return klv(kRipKey, value);
    }

    /// Writes the offset of the last partition as Footer Partition into the pack of the first one.
    MxfBuilder& stateFooter() { return stateFooter(partitions.back().second); }
    MxfBuilder& stateFooter(std::uint64_t offset)
    {
        Bytes number;
        putNumber(number, offset, 8);
        constexpr std::size_t kFooterField = 20 + 24;
        for (std::size_t i = 0; i < number.size(); ++i)
            bytes[runIn_ + kFooterField + i] = number[i];
        return *this;
    }

    /// The place of partition `index` in the file.
    std::int64_t positionOf(std::size_t index) const
    {
        return static_cast<std::int64_t>(partitions[index].second + runIn_);
    }

    Bytes bytes;
    std::vector<std::pair<std::uint32_t, std::uint64_t>> partitions; ///< BodySID and stated offset, in file order

private:
    std::size_t runIn_;
};

/// One KLV, for metadata and index tables.
inline Bytes klvBytes(const Bytes& key, std::size_t valueSize, std::uint8_t content = 0)
{
    return MxfBuilder{}.klv(key, Bytes(valueSize, content)).bytes;
}

} // namespace TamrelMxf::test
