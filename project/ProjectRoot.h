#pragma once

#include "../media/PELFileElement.h"
#include "../platform/PELValue.h"
#include "../xml/PELRootElement.h"

#include <cstdint>
#include <memory>

namespace zanfcp::Convenience {

/// The whole document of one recording: import options, project, bin, master clips, multiclip, and a sequence with its
/// media, cuts, sound and markers, as the options (see Options.h) ask for them.
///
/// Neither the files' properties nor the options are changed; the files are attached to the document as they are.
/// With a sequence, the frame rate of the sequence is selected process-wide, and the labels of cuts and markers are
/// read at it.
/// \param root     receives the document on success and stays as it was otherwise
/// \param files    at least one; a list with an absent file in it is refused where that file is needed
/// \param options  indices are the caller's business: one outside the list stands for an absent file
/// \return 0; -50 for a null `root` and an empty list, without a log line; otherwise the code of the step that failed,
///   after one line that names it. What files and options can bring about:
///   838   the project name is empty
///   852   the bin name is empty
///   883   a file is absent, so its clip could not be added
///   1036  the template file has no picture, and the settings are not left to the first clip
///   1083  without cuts: the main file is not in the list
///   1106  the angle of a cut is not in the list
///   1162  a marker has no name
///   The other codes guard steps that cannot fail as things are.
std::int32_t rootElementForProject(std::shared_ptr<PELRootElement>* root, const PELFileElements& files,
                                   const PELDictionary& options);

} // namespace zanfcp::Convenience
