#pragma once

#include "../Status.h"
#include "../io/MediaSource.h"
#include "../labels/Ul.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TamrelMxf {

/// Key and length of one KLV triplet (SMPTE ST 336).
struct SKlvHeader {
    /// Key, length byte and the longest length that is read: what is looked at to read a header.
    static constexpr std::size_t kProbeSize = 32;

    SUl key;
    std::int64_t length = 0;          ///< bytes of the value; -1 for an indefinite length
    std::int64_t lengthFieldSize = 0; ///< bytes of the BER length field, 1 to 128

    /// Reads key and length at the start of `bytes`. The count of length bytes is taken from the low
    /// four bits of the first one, so that lengths of up to 15 bytes are read.
    /// \return 0; -6 when no key stands there; -9 when the header is cut short or the length does not
    ///   fit 63 bits. The header is unchanged unless 0 is returned.
    int Parse(std::span<const std::uint8_t> bytes);

    bool IsIndefinite() const { return length < 0; }
    /// Bytes in front of the value.
    std::int64_t HeaderSize() const { return static_cast<std::int64_t>(SUl::kSize) + lengthFieldSize; }
    /// Bytes from the key to the end of the value; -1 for an indefinite length, the largest number for
    /// a length that has no end inside 63 bits.
    std::int64_t TotalSize() const;
};

/// One KLV triplet with its value in memory: read from a source and owned, or a view of bytes that
/// someone else holds.
class CKlv {
public:
    /// Reads the KLV at the source's current position and leaves the source after what was read.
    /// Whatever the object held is released first. A length of 0 or an indefinite one loads no value.
    /// \param source  borrowed for the call
    /// \return 0 on success. Otherwise the object is empty:
    ///   -1  the value is larger than kMaxKlvValueBytes
    ///   -2  the source is null
    ///   -6  the bytes there are not a key
    ///   -9  fewer than 32 bytes are left, a seek fails or the value is cut short
    int LoadFrom(CMediaSource* source);

    /// Points the object at a KLV that lies whole at the start of `bytes`; nothing is copied but the key.
    /// \param bytes  borrowed for the life of this view
    /// \return 0; -6 and -9 as above, the object then being empty
    int View(std::span<const std::uint8_t> bytes);

    /// Releases what the object holds.
    void Clear();

    const SUl& Key() const { return header_.key; }
    /// The bytes of the value; empty when the length is 0 or indefinite.
    std::span<const std::uint8_t> Value() const { return value_; }
    /// The length as stated in front of the value, -1 for an indefinite one.
    std::int64_t Length() const { return header_.length; }
    /// Bytes of key, length field and value together, -1 for an indefinite length; 0 when empty.
    std::int64_t TotalSize() const { return isEmpty_ ? 0 : header_.TotalSize(); }
    /// True when the value belongs to this object, false for a view and when empty.
    bool IsOwned() const { return isOwned_; }
    bool IsEmpty() const { return isEmpty_; }

    CKlv() = default;
    CKlv(const CKlv&) = delete;
    CKlv& operator=(const CKlv&) = delete;
    CKlv(CKlv&& other) noexcept;
    CKlv& operator=(CKlv&& other) noexcept;

private:
    int ReadValue(CMediaSource& source, std::int64_t position);

    SKlvHeader header_;
    std::vector<std::uint8_t> storage_;
    std::span<const std::uint8_t> value_;
    bool isOwned_ = false;
    bool isEmpty_ = true;
};

} // namespace TamrelMxf
