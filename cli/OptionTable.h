#pragma once

#include "platform/Integers.h"

#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zanfcp::cli {

/// What the value of an option key may be. The comment says what JSON and `--set` take for it.
enum class OptionType {
    boolean,    ///< true or false
    integer,    ///< a whole number within the limits of its row
    fileIndex,  ///< a whole number below the number of media files
    text,       ///< any text
    timecode,   ///< a label such as "01:00:00:00", or a number of frames
    choice,     ///< one of the texts of its row
    importFlag, ///< true or false, or the texts "TRUE" and "FALSE"
    color,      ///< "#rrggbb", "#rrggbbaa", or a list of four fractions from 0 to 1 (JSON only)
    dictionary, ///< an object with the keys of its row's table
    list,       ///< a list of such objects (JSON only)
};

struct OptionSpec;
/// The keys that one object may hold, in the order in which help lists them.
using OptionTable = std::span<const OptionSpec>;

/// One row: a key, what its value may be and what it does.
struct OptionSpec {
    std::string_view key;
    OptionType type;
    std::string_view help;
    OptionTable (*table)() = nullptr;            ///< for `dictionary` and `list`: the keys of the objects
    std::span<const std::string_view> choices{}; ///< for `choice`
    NSInteger minimum = 0;                       ///< for `integer`
    NSInteger maximum = std::numeric_limits<std::int32_t>::max(); ///< for `integer`; documents hold 32-bit numbers
    bool required = false;                                        ///< inside a list: every object must have it
    bool mayBeEmpty = true;                                       ///< for `text`
};

/// The options of a project: the one place that says which keys there are. Reading of JSON files, `--set`, help,
/// the manual page and shell completion all follow it.
OptionTable projectOptions();

/// The keys of one cut and of one marker.
OptionTable cutKeys();
OptionTable markerKeys();

/// The row of `key`, or null.
const OptionSpec* findOption(OptionTable table, std::string_view key);

/// What a value of this row looks like, for help and messages: "true or false", "one of none, upper, lower".
std::string valueText(const OptionSpec& spec);

/// Every key that `--set` can set, nested ones as "sequenceOverrides.anamorphicOverride", with its row.
struct SettableOption {
    std::string path;
    const OptionSpec* spec;
};
std::vector<SettableOption> settableOptions();

} // namespace zanfcp::cli
