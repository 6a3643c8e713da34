#pragma once

#include "../klv/Klv.h"
#include "../labels/Ul.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace TamrelMxf {

/// A pack kept whole: an owned copy of its value. Packs are partition packs, primer packs and the random index
/// pack, whose keys share twelve bytes (SMPTE ST 377-1).
class CPackImporter {
public:
    /// \param klv  borrowed for the call
    /// \return 0; -2 for a null KLV; -3 for an empty value and for a key that does not begin with
    ///   06 0E 2B 34 02 05 01 01 0D 01 02 01. After a failure the pack is empty.
    int ImportFrom(const CKlv* klv);

    std::span<const std::uint8_t> Value() const { return value_; }
    std::size_t Length() const { return value_.size(); }

private:
    std::vector<std::uint8_t> value_;
};

/// The primer pack of one copy of the header metadata: which local tag this file gives to which label.
/// Static tags, below 8000, mean the same in every file and are not looked up.
class CPrimerPack {
public:
    static constexpr std::uint16_t kFirstDynamicTag = 0x8000;

    /// Reads the pack; entries that the value does not hold whole are left out.
    /// \return as CPackImporter::ImportFrom. After a failure there are no dynamic tags.
    int ImportFrom(const CKlv* klv);

    std::span<const std::uint8_t> Value() const { return pack_.Value(); }
    std::size_t Length() const { return pack_.Length(); }
    /// As the pack states it; it may hold fewer entries.
    std::uint32_t EntryCount() const { return entryCount_; }
    /// The bytes of an entry as the pack states them. Entries are read as the 18 bytes that they are.
    std::uint32_t EntrySize() const { return entrySize_; }

    /// The dynamic tag that the file gives to this label; its first 8 bytes do not matter.
    /// Of two entries for one label the later one counts.
    std::optional<std::uint16_t> TagOf(const SUl& label) const { return TagOf(label.Item()); }
    /// The same by bytes 9 to 16 of the label.
    std::optional<std::uint16_t> TagOf(std::uint64_t labelItem) const;
    /// The whole label behind a tag, static or dynamic; nothing when the pack does not name the tag.
    std::optional<SUl> LabelOf(std::uint16_t tag) const;
    /// The number of dynamic tags.
    std::size_t DynamicTagCount() const { return dynamicTags_.size(); }

private:
    CPackImporter pack_;
    std::uint32_t entryCount_ = 0;
    std::uint32_t entrySize_ = 0;
    // both sorted, each key once
    std::vector<std::pair<std::uint64_t, std::uint16_t>> dynamicTags_;
    std::vector<std::pair<std::uint16_t, std::size_t>> labels_; ///< offset of the label in the value
};

} // namespace TamrelMxf
