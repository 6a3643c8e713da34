#pragma once

#include "platform/PELValue.h"
#include "platform/Result.h"
#include "timecode/PELRate.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zanfcp::cli {

// All of these follow the option table. An Error is about one key: `path` names it ("cuts[2].start") and `what` says
// what is wrong with its value and what it may be. Faults are those of parseJson, and malformed for a key that does
// not exist, is missing or has a value it cannot have.

/// The options of a project from JSON: one object.
Result<PELDictionary> optionsFromJson(std::string_view text);
/// The value of the option "cuts" or "markers" from JSON: a list of objects.
Result<PELArray> cutsFromJson(std::string_view text);
Result<PELArray> markersFromJson(std::string_view text);

/// Sets one option from "KEY=VALUE". Keys inside an object are written "OBJECT.KEY"; the row of the key says how the
/// value is read. `options` is as before when this fails.
Status setOption(PELDictionary& options, std::string_view assignment);

/// An error of these functions in one line: "cuts[2].start: is missing; …".
std::string lineOf(const Error& error);

/// Whether every index of a file is below the number of files.
Status checkFileIndices(const PELDictionary& options, std::size_t fileCount);

/// Whether every timecode is a label that exists at the rate of the sequence, and every cut ends after it starts.
/// Selects `rate` process-wide.
Status checkTimecodes(const PELDictionary& options, PELRate rate);

} // namespace zanfcp::cli
