#pragma once

#include "../media/PELFileElement.h"
#include "../xml/PELElement.h"

#include <memory>

namespace zanfcp::Convenience {

struct Multiclip {
    const PELFileElements& files;
    NSInteger mainFileIndex = 0;     ///< an index outside the list counts as an absent file without sound
    NSInteger multiclipDuration = 0; ///< frames, as PELGetMulticlipDurationOfFileElements has it
    const PELElements& clips;        ///< the master clips, one for each file in the same order
    std::shared_ptr<PELElement> loggingInfo = nullptr; ///< may be null
};
/// The "clip" that holds all files as the angles of one multiclip, in the order of the files. The main file lends its
/// name, rate and sound, and its angle is the active one.
std::shared_ptr<PELElement> multiclipElementForFiles(const Multiclip& multiclip);

struct MulticlipVideoTrack {
    const PELFileElements& files;
    std::shared_ptr<PELFileElement> mainFile = nullptr;
    const PELElements& clips;
    NSInteger duration = 0;                            ///< frames
    std::shared_ptr<PELElement> loggingInfo = nullptr; ///< may be null
    const PELElements& linkElements;
};
/// The video "track" of the multiclip: one clip item with the whole multiclip in it, and nothing else yet. Without a
/// main file, which would give the clip item its name, the track stays empty.
std::shared_ptr<PELElement> videoTrackForMulticlipWithFiles(const MulticlipVideoTrack& track);

/// The clip item of one audio track of the multiclip. Null for a file that is absent or has no name.
/// \param index  of the audio track, from 1
std::shared_ptr<PELElement> audioTrackForMulticlipWithFile(const std::shared_ptr<PELFileElement>& file, NSInteger index,
                                                           NSInteger duration,
                                                           const std::shared_ptr<PELElement>& loggingInfo);

/// One "link" to the multiclip's picture, then one for each audio channel of the main file.
PELElements linkElementsForMulticlipElement(const std::shared_ptr<PELElement>& multiclip,
                                            const std::shared_ptr<PELFileElement>& mainFile);

} // namespace zanfcp::Convenience
