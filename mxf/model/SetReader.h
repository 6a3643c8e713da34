#pragma once

#include "mxf/metadata/MetadataSet.h"
#include "mxf/metadata/PrimerPack.h"
#include "mxf/metadata/SetTables.h"
#include "mxf/metadata/Values.h"

#include <concepts>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace TamrelMxf {

/// Reads the properties of one set by their constants of the register. What is absent, or too short for its type, is
/// nothing: no property is relied on, required or not.
class CSetReader {
public:
    /// Both are borrowed for the life of the reader.
    CSetReader(const CMetadataSet& set, const CPrimerPack& primer) : set_{set}, primer_{primer} {}

    std::span<const std::uint8_t> Value(SPropertyId id) const
    {
        if (id.tag != 0) return set_.Value(id.tag);
        const auto tag = primer_.TagOf(id.item);
        return tag ? set_.Value(*tag) : std::span<const std::uint8_t>{};
    }

    template <std::integral T> void Read(SPropertyId id, std::optional<T>& out) const
    {
        out = Values::Number<T>(Value(id));
    }
    void Read(SPropertyId id, std::optional<SRational>& out) const { out = Values::Rational(Value(id)); }
    void Read(SPropertyId id, std::optional<STimestamp>& out) const { out = Values::Timestamp(Value(id)); }
    void Read(SPropertyId id, std::optional<SProductVersion>& out) const { out = Values::ProductVersion(Value(id)); }
    void Read(SPropertyId id, std::optional<SUl>& out) const { out = Values::Label(Value(id)); }
    void Read(SPropertyId id, std::optional<SUUID>& out) const { out = Values::Uuid(Value(id)); }
    void Read(SPropertyId id, std::optional<SUmid>& out) const { out = Values::Umid(Value(id)); }
    /// A UTF-16 text; empty when absent.
    void Read(SPropertyId id, std::string& out) const { out = Values::Utf16(Value(id)); }
    void Read(SPropertyId id, std::vector<SUl>& out) const { out = Values::Labels(Value(id)); }
    template <std::integral T> void Read(SPropertyId id, std::vector<T>& out) const
    {
        out = Values::Numbers<T>(Value(id));
    }

    /// A position or length; the stored -1 means that it is not known, as does everything else below 0.
    void ReadTime(SPropertyId id, std::optional<std::int64_t>& out) const
    {
        out = Values::Number<std::int64_t>(Value(id));
        if (out && *out < 0) out.reset();
    }
    /// A position that may well be negative.
    void ReadSigned(SPropertyId id, std::optional<std::int64_t>& out) const { Read(id, out); }
    /// A rate or aspect; nothing unless both parts are above zero.
    void ReadRate(SPropertyId id, std::optional<SRational>& out) const
    {
        Read(id, out);
        if (out && !out->IsPositive()) out.reset();
    }
    void ReadUtf8(SPropertyId id, std::string& out) const { out = Values::Utf8(Value(id)); }
    /// The bytes as they are.
    void ReadBytes(SPropertyId id, std::vector<std::uint8_t>& out) const
    {
        const auto value = Value(id);
        out.assign(value.begin(), value.end());
    }

    const CMetadataSet& Set() const { return set_; }

private:
    const CMetadataSet& set_;
    const CPrimerPack& primer_;
};

} // namespace TamrelMxf
