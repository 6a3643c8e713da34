#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace TamrelMxf {

/// Byte 6 of the key of a local set (SMPTE ST 336): how the tags and lengths of its items are written.
/// Every value that is not named here is read like `tag2Length2`.
enum class ESetCoding : std::uint8_t {
    tag2LengthBer = 0x13, ///< 2-byte tag, BER length
    tag2Length2 = 0x53,   ///< 2-byte tag, 2-byte length: what header metadata and index tables use
    tag2Length4 = 0x73,   ///< 2-byte tag, 4-byte length
};

/// One item of a local set: a tag and an owned copy of its value.
class CMetadataItem {
public:
    CMetadataItem() = default;
    virtual ~CMetadataItem();
    CMetadataItem(CMetadataItem&& other) noexcept;
    CMetadataItem& operator=(CMetadataItem&& other) noexcept;

    /// The local tag of the Index Entry Array of an index table segment.
    static constexpr std::uint16_t kIndexEntryArray = 0x3F0A;

    /// What an item states in front of its value.
    struct SHeader {
        std::uint16_t tag = 0;
        std::uint32_t totalSize = 0;  ///< tag, length field and stated length
        std::uint32_t valueStart = 0; ///< bytes of tag and length field
        std::uint32_t length = 0;     ///< of the value, beyond what is stated where an array says so
        bool exceedsStated = false;
    };
    /// Reads the header of the item that starts at `data`. \return as ImportFrom
    static int ReadHeader(std::span<const std::uint8_t> data, std::uint8_t coding, SHeader& header);

    /// Reads the item that starts at `data`; bytes after it are left alone.
    /// The length of an Index Entry Array is taken from its own entry count and size when these say more
    /// than the length field, and the bytes are there: a 2-byte length cannot describe a long array.
    /// \param data    borrowed; the rest of the set, from the item's tag on
    /// \param coding  byte 6 of the key of the set
    /// \return 0; -2 for null data; -9 when the item does not fit into `data`; -11 for an indefinite length
    ///   (a BER length byte of 80). After a failure the item is empty.
    int ImportFrom(std::span<const std::uint8_t> data, std::uint8_t coding);
    /// The same for an item whose header is read already.
    void ImportFrom(std::span<const std::uint8_t> data, const SHeader& header);

    std::uint16_t Tag() const { return tag_; }
    /// The bytes of the value.
    std::uint32_t Length() const { return length_; }
    /// The bytes by which the item moves the reader of the set on: tag, length field and stated length.
    std::uint32_t TotalSize() const { return totalSize_; }
    /// True for an Index Entry Array that is longer than its length field says: it ends its segment.
    bool ExceedsStatedLength() const { return exceedsStated_; }
    std::span<const std::uint8_t> Value() const { return {long_ ? long_.get() : short_.data(), length_}; }

private:
    void Clear();
    void Assign(std::span<const std::uint8_t> value);
    void Take(CMetadataItem& other) noexcept;

    static constexpr std::size_t kShortest = 32; ///< a UMID; longer values are rare and live on the heap

    std::uint16_t tag_ = 0;
    std::uint32_t length_ = 0;
    std::uint32_t totalSize_ = 0;
    bool exceedsStated_ = false;
    std::array<std::uint8_t, kShortest> short_{};
    std::unique_ptr<std::uint8_t[]> long_;
};

} // namespace TamrelMxf
