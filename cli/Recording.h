#pragma once

#include "cli/Inspection.h"
#include "media/PELFileElement.h"

#include <string>
#include <vector>

namespace zanfcp::cli {

/// The files of one recording with the options of its project, before the project is built.
struct Recording {
    std::vector<InspectedFile> inspected; ///< one for each file, all of them read
    PELFileElements files;                ///< the same files, lined up in time
    PELDictionary options;                ///< checked against the option table and the number of files
};

/// The rate at which the labels of cuts and markers are read: the template file's, with the override of its timebase.
PELRate sequenceRate(const std::vector<InspectedFile>& files, const PELDictionary& options);
/// Whether the options ask for a sequence.
bool hasSequence(const PELDictionary& options);
/// The files that the options choose.
/// \pre their indices were checked
const InspectedFile& templateFile(const std::vector<InspectedFile>& files, const PELDictionary& options);
const InspectedFile& mainFile(const std::vector<InspectedFile>& files, const PELDictionary& options);

/// What a person wants to see before a project is written: one line a file, and the common span.
std::string recordingTable(const Recording& recording);

/// What will not import well, one line each, in the order of importance.
std::vector<std::string> recordingWarnings(const Recording& recording);

} // namespace zanfcp::cli
