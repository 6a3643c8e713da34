#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zanfcp {

/// The names of the five colour labels of bins and clips. Users of Final Cut Pro 7 can change them, and documents
/// carry labels by name, so they are read from its preferences file: once, for the rest of the process.
/// Safe to use from several threads.

/// Loads the names unless they are there already.
/// \return whether they are there, be it from the file or as the English defaults that PELLabelForColor fell back to;
///   false, without a log line, when the file is missing, unreadable or lacks one of the five names. It is then tried
///   again the next time.
bool PELInitializeFCPLabelStrings();

/// The name of a label: empty for index 0 (no label), and for 1 to 5 the names in order, "Good Take", "Best Take",
/// "Alternate Shots", "Interviews" and "B Roll" where the file does not give all five; the one log line that says so
/// is written once.
/// \return nothing, with one error line, for any larger index
std::optional<std::string> PELLabelForColor(std::uint32_t index);

/// The file that the names are read from: at first "Library/Preferences/Final Cut Pro User Data/
/// Final Cut Pro 7.0 Prefs.fcset" in the user's home as the password database has it. Empty when there is no home.
std::string labelPreferencesPath();

/// Reads the names from another file from now on, or again from the user's own for nothing. Names that were loaded
/// before are forgotten.
void setLabelPreferencesPath(std::optional<std::string> path);

} // namespace zanfcp
