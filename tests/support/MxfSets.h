#pragma once

#include "mxf/metadata/Identifiers.h"
#include "mxf/metadata/SetTables.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

/// Header metadata of MXF files, written byte by byte: what no muxer at hand writes.
namespace TamrelMxf::test {

using Bytes = std::vector<std::uint8_t>;

/// The `size` lowest bytes of a number, most significant first.
inline Bytes BigEndian(std::uint64_t number, std::size_t size)
{
    Bytes out(size);
    for (std::size_t i = 0; i < size; ++i)
        out[size - 1 - i] = static_cast<std::uint8_t>(number >> (8 * i));
    return out;
}

template <typename... Parts> Bytes Join(const Parts&... parts)
{
    Bytes out;
    (out.insert(out.end(), parts.begin(), parts.end()), ...);
    return out;
}

/// "06.0E.2B.34...." or "06 0E 2B 34 ..." as bytes.
inline Bytes Hex(std::string_view digits)
{
    Bytes out;
    const auto value = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
    for (std::size_t i = 0; i + 1 < digits.size();) {
        if (digits[i] == '.' || digits[i] == ' ') {
            ++i;
            continue;
        }
        out.push_back(static_cast<std::uint8_t>(value(digits[i]) * 16 + value(digits[i + 1])));
        i += 2;
    }
    return out;
}
inline SUl Label(std::string_view digits)
{
    return SUl::From(Hex(digits).data());
}

/// An Instance UID that no two numbers share.
inline SUUID Uid(std::uint32_t number)
{
    SUUID uid = SUUID::From(Hex("A1A2A3A4 B1B2C1C2 D1D2D3D4 00000000").data());
    std::ranges::copy(BigEndian(number, 4), uid.bytes.begin() + 12);
    return uid;
}
/// A package UMID that no two numbers share; 0 is the end of a chain.
inline SUmid Umid(std::uint32_t number)
{
    if (number == 0) return {};
    SUmid umid = SUmid::From(Hex("060A2B340101010501010D2013000000 00010203040506070809000000000000").data());
    std::ranges::copy(BigEndian(number, 4), umid.bytes.begin() + 28);
    return umid;
}

inline Bytes Utf16(std::u16string_view text)
{
    Bytes out;
    for (const char16_t c : text) {
        out.push_back(static_cast<std::uint8_t>(c >> 8));
        out.push_back(static_cast<std::uint8_t>(c));
    }
    return out;
}
inline Bytes Ratio(std::int32_t num, std::int32_t den)
{
    return Join(BigEndian(static_cast<std::uint32_t>(num), 4), BigEndian(static_cast<std::uint32_t>(den), 4));
}
/// A batch or array of entries of the same size.
inline Bytes Batch(const std::vector<Bytes>& entries, std::size_t entrySize = 16)
{
    Bytes out = Join(BigEndian(entries.size(), 4), BigEndian(entries.empty() ? entrySize : entries[0].size(), 4));
    for (const Bytes& entry : entries)
        out.insert(out.end(), entry.begin(), entry.end());
    return out;
}
inline Bytes Refs(const std::vector<std::uint32_t>& numbers)
{
    std::vector<Bytes> entries;
    for (const std::uint32_t number : numbers)
        entries.emplace_back(Join(Uid(number).bytes));
    return Batch(entries);
}

/// A KLV with a four-byte length.
inline Bytes Klv(const SUl& key, const Bytes& value)
{
    return Join(key.bytes, Bytes{0x83}, BigEndian(value.size(), 3), value);
}

/// A local set with 2-byte tags and 2-byte lengths.
class MxfSet {
public:
    /// \param className  of the register, such as "Preface"
    /// \param number     of its Instance UID; 0 for a set without one
    MxfSet(std::string_view className, std::uint32_t number) : MxfSet(KeyOf(className), number) {}
    MxfSet(const SUl& key, std::uint32_t number) : key_{key}
    {
        if (number != 0) Put(0x3C0A, Join(Uid(number).bytes));
    }

    /// A property with a static local tag.
    MxfSet& Put(std::uint16_t tag, const Bytes& value)
    {
        items_.push_back({tag, {}, value});
        return *this;
    }
    MxfSet& U8(std::uint16_t tag, std::uint8_t value) { return Put(tag, {value}); }
    MxfSet& U16(std::uint16_t tag, std::uint16_t value) { return Put(tag, BigEndian(value, 2)); }
    MxfSet& U32(std::uint16_t tag, std::uint32_t value) { return Put(tag, BigEndian(value, 4)); }
    MxfSet& I64(std::uint16_t tag, std::int64_t value)
    {
        return Put(tag, BigEndian(static_cast<std::uint64_t>(value), 8));
    }
    MxfSet& Rate(std::uint16_t tag, std::int32_t num, std::int32_t den) { return Put(tag, Ratio(num, den)); }
    MxfSet& Text(std::uint16_t tag, std::u16string_view text) { return Put(tag, Utf16(text)); }
    MxfSet& Ul(std::uint16_t tag, std::string_view digits) { return Put(tag, Hex(digits)); }
    MxfSet& Ref(std::uint16_t tag, std::uint32_t number) { return Put(tag, Join(Uid(number).bytes)); }
    MxfSet& Refs(std::uint16_t tag, const std::vector<std::uint32_t>& numbers) { return Put(tag, test::Refs(numbers)); }
    MxfSet& Package(std::uint16_t tag, std::uint32_t number) { return Put(tag, Join(Umid(number).bytes)); }
    /// A property that the primer pack gives a dynamic tag to.
    MxfSet& Dynamic(std::string_view label, const Bytes& value)
    {
        items_.push_back({0, Label(label), value});
        return *this;
    }

private:
    friend class MxfHeader;
    static SUl KeyOf(std::string_view className)
    {
        const SSetDef* found = FindSet(className);
        assert(found != nullptr);
        return found->key.Label();
    }

    struct Item {
        std::uint16_t tag;
        SUl label;
        Bytes value;
    };
    SUl key_;
    std::vector<Item> items_;
};

/// A primer pack and the sets after it.
class MxfHeader {
public:
    MxfHeader& Add(const MxfSet& set)
    {
        Bytes value;
        for (const MxfSet::Item& item : set.items_) {
            const std::uint16_t tag = item.tag != 0 ? item.tag : TagOf(item.label);
            value = Join(value, BigEndian(tag, 2), BigEndian(item.value.size(), 2), item.value);
        }
        return Raw(Klv(set.key_, value));
    }
    /// Any bytes after the sets so far.
    MxfHeader& Raw(const Bytes& bytes)
    {
        sets_.insert(sets_.end(), bytes.begin(), bytes.end());
        return *this;
    }
    /// The primer pack and the sets, as a partition holds them.
    Bytes All() const
    {
        std::vector<Bytes> entries;
        for (const auto& [label, tag] : tags_)
            entries.push_back(Join(BigEndian(tag, 2), label.bytes));
        return Join(Klv(Label("060E2B34020501010D01020101050100"), Batch(entries, 18)), sets_);
    }

private:
    std::uint16_t TagOf(const SUl& label)
    {
        const auto next = static_cast<std::uint16_t>(0xFFFF - tags_.size());
        return tags_.try_emplace(label, next).first->second;
    }

    Bytes sets_;
    std::map<SUl, std::uint16_t> tags_;
};

} // namespace TamrelMxf::test
