#pragma once

#include "../media/PELFileElement.h"
#include "../platform/PELValue.h"
#include "../xml/PELElement.h"

#include <memory>
#include <string_view>

namespace zanfcp::Convenience {

/// Frames from the first common timecode of the files to `sequenceStart`. Only the first file is asked: what counts is
/// its start timecode and its offset.
NSInteger sequenceOffsetForFiles(const PELFileElements& files, const PELTimecode& sequenceStart);

struct Cuts {
    const PELArray& cuts; ///< cut dictionaries (see Options.h) in the order of the timeline
    const PELFileElements& files;
    NSInteger multiclipMainFileIndex = 0;              ///< its rate is that of the dissolves
    NSInteger multiclipDuration = 0;                   ///< frames
    const PELElements& clips;                          ///< the master clips, one for each file in the same order
    NSInteger highestOffsetOfFiles = NSIntegerMax;     ///< frames; NSIntegerMax counts as 0
    NSInteger sequenceOffset = 0;                      ///< frames
    std::shared_ptr<PELElement> loggingInfo = nullptr; ///< may be null
};
/// One clip item for each cut and one transition for each dissolve, in order; records of any other type are skipped.
/// A clip item that cannot be made leaves a null in its place. Every cut is logged, at error level, with its frames.
/// The labels of the records are read at the frame rate selected process-wide.
PELElements cutsForCuts(const Cuts& cuts);

struct MulticlipCut {
    std::string_view identifier = {}; ///< of the multiclip in it; may be empty
    const PELFileElements& files;
    NSInteger activeAngleIndex = 0;                ///< of the file that is shown
    NSInteger multiclipDuration = 0;               ///< frames
    const PELElements& clips;                      ///< the master clips, one for each file in the same order
    NSInteger highestOffsetOfFiles = NSIntegerMax; ///< frames; NSIntegerMax counts as 0
    NSInteger start = 0;                           ///< frames on the sequence
    NSInteger end = 0;                             ///< frames on the sequence
    bool previousIsDissolve = false;
    bool nextIsDissolve = false;
    NSInteger sequenceOffset = 0;                      ///< frames
    std::shared_ptr<PELElement> loggingInfo = nullptr; ///< may be null
};
/// The "clipitem" that shows one angle of the multiclip. Null, with an error line, for an angle outside the list and
/// for a file that is absent or has no name.
std::shared_ptr<PELElement> multiclipCutWithID(const MulticlipCut& cut);
/// The same, whatever the identifier says, without one.
std::shared_ptr<PELElement> multiclipCutWithFiles(MulticlipCut cut);

/// The "transitionitem" of a cross dissolve. A null rate is logged and left out.
std::shared_ptr<PELElement> dissolveWithStart(NSInteger start, NSInteger end, const PELRate* rate);
/// Its "effect".
std::shared_ptr<PELElement> crossDissolveEffectElement();

struct SequenceAudio {
    std::shared_ptr<PELFileElement> file = nullptr;    ///< the sound file; without one there are no tracks
    NSInteger duration = 0;                            ///< frames
    NSInteger highestOffsetOfFiles = NSIntegerMax;     ///< not used: sound is placed by the file's own offset
    const PELRate* rate = nullptr;                     ///< that of the file when null
    NSInteger sequenceOffset = 0;                      ///< frames
    std::shared_ptr<PELElement> loggingInfo = nullptr; ///< may be null
};
/// "audio" of a sequence: format, outputs and one track for each audio channel of the file.
std::shared_ptr<PELElement> audioElementForSequenceWithTracksFromFile(const SequenceAudio& audio);
/// "outputs": one group of all audio channels of the file.
std::shared_ptr<PELElement> outputsElementForFile(const std::shared_ptr<PELFileElement>& file);

} // namespace zanfcp::Convenience
