#pragma once

#include "../klv/Klv.h"
#include "../labels/Ul.h"
#include "Identifiers.h"
#include "MetadataItem.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace TamrelMxf {

/// Items in the order of their tags, in one piece of memory: a header has hundreds of sets of a few items each.
class CItemMap {
public:
    using CEntry = std::pair<std::uint16_t, CMetadataItem>;
    using const_iterator = std::vector<CEntry>::const_iterator;

    const_iterator begin() const { return entries_.begin(); }
    const_iterator end() const { return entries_.end(); }
    std::size_t size() const { return entries_.size(); }
    /// The first item whose tag is not below this one.
    const_iterator lower_bound(std::uint16_t tag) const
    {
        return std::ranges::lower_bound(entries_, tag, {}, &CEntry::first);
    }
    const_iterator find(std::uint16_t tag) const
    {
        const auto found = lower_bound(tag);
        return found != entries_.end() && found->first == tag ? found : entries_.end();
    }

private:
    friend class CMetadataSet;
    void Import(std::span<const std::uint8_t> value, std::uint8_t coding);

    std::vector<CEntry> entries_; // each tag once
};

/// A local set of header metadata or an index table segment: its key and its items by local tag
/// (SMPTE ST 336, ST 377-1). Every value is copied once, when the set is read.
class CMetadataSet {
public:
    CMetadataSet() = default;
    virtual ~CMetadataSet();
    CMetadataSet(const CMetadataSet&) = delete;
    CMetadataSet& operator=(const CMetadataSet&) = delete;

    /// The local tag of the Instance UID, the same in every set.
    static constexpr std::uint16_t kInstanceUid = 0x3C0A;

    /// Reads the set from its KLV. Reading stops at the first item that is cut or broken
    /// and keeps those before it; of two items with the same tag the later one stays. Fewer than 5 bytes at the
    /// end are ignored.
    /// \param klv  borrowed for the call
    /// \return 0; -1 for a value above kMaxKlvValueBytes; -2 for a null KLV; -3 for an empty value
    virtual int ImportFrom(const CKlv* klv);

    const SUl& Key() const { return key_; }
    /// Bytes 14 and 15 of the key: 012F for a Preface. Classes above 017F need byte 16 as well.
    std::uint16_t Type() const { return static_cast<std::uint16_t>((key_.bytes[13] << 8) | key_.bytes[14]); }

    /// The items in the order of their tags.
    const CItemMap& Items() const { return items_; }
    std::size_t ItemCount() const { return items_.size(); }
    /// The item with this tag, or null; valid as long as the set is.
    const CMetadataItem* Find(std::uint16_t tag) const;
    /// The value of the item with this tag; empty when there is none.
    std::span<const std::uint8_t> Value(std::uint16_t tag) const;
    /// The value of item 3C0A; nothing when it is absent or shorter than 16 bytes.
    std::optional<SUUID> InstanceUid() const;

private:
    SUl key_;
    CItemMap items_;
};

/// Sets in the order of the file, owned.
class CMetadataArray {
public:
    void Append(std::unique_ptr<CMetadataSet> set) { sets_.push_back(std::move(set)); }
    /// Puts `set` into the place of the first set with this Instance UID, which is destroyed.
    /// \param set  taken only when there is such a set
    /// \return the index of the place, or -1 when no set carries the Instance UID: then nothing has changed
    std::int32_t RepaceByUID(const SUUID& uid, std::unique_ptr<CMetadataSet>& set);

    std::size_t Size() const { return sets_.size(); }
    bool Empty() const { return sets_.empty(); }
    /// \pre index < Size()
    const CMetadataSet& operator[](std::size_t index) const { return *sets_[index]; }
    void Clear() { sets_.clear(); }

private:
    std::vector<std::unique_ptr<CMetadataSet>> sets_;
};

} // namespace TamrelMxf
