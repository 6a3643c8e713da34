#pragma once

#include "../labels/FixedText.h"
#include "../labels/Ul.h"
#include "Registry.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace TamrelMxf {

/// What the bytes of a property mean, one by one where there are several. All numbers are big-endian.
enum class EValue : std::uint8_t {
    boolean,
    uint8,
    uint16,
    uint32,
    uint64,
    int8,
    int16,
    int32,
    int64,
    float16,        ///< IEEE 754 binary16
    float32,        ///< IEEE 754 binary32
    lensFloat,      ///< decimal float of SMPTE RDD 18: 4-bit exponent of ten, 12-bit mantissa, both signed
    position,       ///< Int64 in edit units, -1 unknown
    length,         ///< Int64 in edit units, -1 unknown
    rational,       ///< two Int32: numerator, denominator
    timestamp,      ///< Int16 year, month, day, hour, minute, second, 1/4 ms; all zero unknown
    utf16,          ///< big-endian, may end at a zero
    utf8,           ///< may end at a zero
    ascii,          ///< ISO 7-bit, may end at a zero
    uuid,           ///< 16 bytes
    label,          ///< a universal label, or a UUID with its halves swapped
    umid,           ///< 32 bytes
    version,        ///< two bytes: major, minor
    productVersion, ///< five UInt16: major, minor, tertiary, patch, release kind
    strongRef,      ///< Instance UID of a set that this one owns
    weakRef,        ///< Instance UID or identifier of a set that another one owns
    indirect,       ///< byte order, type and value
    pixelLayout,    ///< pairs of a component code and its depth, ended by 0, 0
    chromaticity,   ///< two UInt16: x and y in 0.00002
    primerEntries,  ///< list of local tag and label
    bytes,          ///< anything else
};

enum class EShape : std::uint8_t {
    single,
    list, ///< a batch or array: UInt32 count, UInt32 entry size, entries
    run,  ///< entries up to the end of the value, without a count
};

/// How a property finds its place.
enum class EPlace : std::uint8_t {
    localTag,   ///< a tag of its own, the same in every file
    dynamicTag, ///< a tag of 8000 or above that the primer pack of the file gives it
    pack,       ///< a fixed place in a pack, no tag
    record,     ///< inside the entries of an array
};

/// A label of the register as two numbers: bytes 1 to 8 and bytes 9 to 16.
struct SRegisteredUl {
    std::uint64_t head = 0;
    std::uint64_t item = 0;

    constexpr SUl Label() const
    {
        SUl label;
        for (std::size_t i = 0; i < 8; ++i) {
            label.bytes[i] = static_cast<std::uint8_t>(head >> (8 * (7 - i)));
            label.bytes[8 + i] = static_cast<std::uint8_t>(item >> (8 * (7 - i)));
        }
        return label;
    }
};

/// A class of sets or packs (SMPTE ST 395 and the documents that it registers).
struct SSetDef {
    SFixedText<44> name;
    SRegisteredUl key;
    std::int16_t parent = -1; ///< index into the sets, -1 for none
    std::uint16_t firstProperty = 0;
    std::uint16_t propertyCount = 0; ///< its own, without those of its parents
    bool isAbstract = false;
    SFixedText<30> standard; ///< the document that defines it, may be empty

    /// The class that this one refines, or null.
    const SSetDef* Parent() const;
    /// True for `base` itself and every class that refines it.
    bool Is(const SSetDef& base) const;
    bool Is(ESet base) const;
    /// Its own properties.
    std::span<const struct SPropertyDef> Properties() const;
};

/// A property of a set (SMPTE ST 335 and the documents that it registers).
struct SPropertyDef {
    SFixedText<51> name;
    SRegisteredUl label;
    std::uint16_t set = 0; ///< index of the class that owns it
    std::uint16_t tag = 0; ///< for EPlace::localTag
    EPlace place = EPlace::localTag;
    EValue value = EValue::bytes;
    EShape shape = EShape::single;
    std::int16_t target = -1; ///< of a reference: index of the class of the sets it names, -1 when not known

    /// The class that the sets named by this reference belong to, or null.
    const SSetDef* Target() const;
};

/// All classes, in the order of the register.
std::span<const SSetDef> AllSets();

/// The row of a class.
const SSetDef& SetOf(ESet set);
/// The class of a set or pack with this key; bytes 6 (coding) and 8 (version) do not matter. Null when unknown.
const SSetDef* FindSet(const SUl& key);
/// The class of this name, or null.
const SSetDef* FindSet(std::string_view name);

/// The property with a static local tag: of `set` or a parent of it when one has it, else of any class.
/// \param set  null when the class is unknown
/// \return null for a tag that no class uses, and for dynamic tags
const SPropertyDef* FindProperty(const SSetDef* set, std::uint16_t localTag);
/// The same by the label that the primer pack gives; byte 8 (version) does not matter.
const SPropertyDef* FindProperty(const SSetDef* set, const SUl& label);

} // namespace TamrelMxf
