#pragma once

#include "FixedText.h"
#include "Ul.h"

#include <cstdint>
#include <span>

namespace TamrelMxf {

/// What a label of the dictionary stands for.
enum class EUlKind : std::uint8_t {
    node,  ///< a branch of the register
    label, ///< a leaf of the register
    pack,  ///< key of a pack or of fill
    set,   ///< key of a metadata set
    own,   ///< added by this library to what is registered
};

/// One label that the library knows. All entries are constant data and live as long as the process.
struct SUlEntry {
    std::uint64_t key;        ///< bytes 9 to 16 of the label, as SUl::Item gives them
    std::uint16_t attributes; ///< 1 for the register's nodes down to level 2, else 0
    EUlKind kind;
    SFixedText<84> name; ///< as registered
};

/// The catalogue of SMPTE universal labels: registry nodes, essence containers and codings, operational
/// patterns, data definitions (RP 224), keys of sets and packs, and the library's own labels.
///
/// A label is found by its last 8 bytes alone; where several entries share them, the last one in the table is
/// found. Dictionaries share the table and its order, so one costs no more than a pointer and a size.
class CMxfUlDict {
public:
    /// Every entry, in the order of the registers, the library's own ones last.
    static std::span<const SUlEntry> Entries();

    /// Makes the entries known to this dictionary. Until then nothing is found. \return 0
    int Init();

    /// \return the entry with the last 8 bytes of `label`, whatever the other 8 are; null when there is none
    const SUlEntry* Find(const SUl& label) const { return Find(label.Item()); }
    /// \param key  bytes 9 to 16 of a label
    const SUlEntry* Find(std::uint64_t key) const;

private:
    std::span<const std::uint16_t> order_; // indexes of the entries that can be found, by ascending key
};

} // namespace TamrelMxf
