#include "media/FileTiming.h"

#include <algorithm>
#include <utility>

namespace zanfcp {
namespace {

/// Start + duration - 1; -1 for an absent file.
NSInteger lastFrame(const std::shared_ptr<PELFileElement>& file)
{
    return wrappingDifference(wrappingSum(startFrame(file), movieProperties(file).duration), 1);
}

/// The start timecode of the first file that no other beats; `beats` is strict, so ties keep the earlier file.
template <typename Beats> PELTimecode chooseStart(const PELFileElements& files, Beats beats)
{
    std::shared_ptr<PELFileElement> best = fileAtIndex(files, 0);
    for (const auto& file : files)
        if (beats(startFrame(file), startFrame(best))) best = file;
    return movieProperties(best).timecode;
}

/// The last frame that no other beats. An empty list answers like an absent file.
template <typename Beats> NSInteger chooseLastFrame(const PELFileElements& files, Beats beats)
{
    NSInteger best = lastFrame(fileAtIndex(files, 0));
    for (const auto& file : files)
        if (const NSInteger last = lastFrame(file); beats(last, best)) best = last;
    return best;
}

NSInteger framesFromTo(NSInteger first, NSInteger last)
{
    return wrappingSum(wrappingDifference(last, first), 1);
}

} // namespace

const PELMovieProperties& movieProperties(const std::shared_ptr<PELFileElement>& file)
{
    static const PELMovieProperties none;
    return file ? file->movieProperties() : none;
}

std::shared_ptr<PELFileElement> fileAtIndex(const PELFileElements& files, NSInteger index)
{
    return index >= 0 && std::cmp_less(index, files.size()) ? files[static_cast<std::size_t>(index)] : nullptr;
}

PELTimecode PELGetFirstCommonTimecodeOfFileElements(const PELFileElements& files)
{
    return chooseStart(files, std::ranges::greater{});
}

NSInteger PELGetLastCommonFrameOfFileElements(const PELFileElements& files)
{
    return chooseLastFrame(files, std::ranges::less{});
}

PELTimecode PELGetFirstTimecodeOfFiles(const PELFileElements& files)
{
    return chooseStart(files, std::ranges::less{});
}

NSInteger PELGetLastTimecodeAsFramesOfFiles(const PELFileElements& files)
{
    return chooseLastFrame(files, std::ranges::greater{});
}

NSInteger PELGetMulticlipDurationOfFileElements(const PELFileElements& files)
{
    return framesFromTo(static_cast<NSInteger>(PELGetFirstTimecodeOfFiles(files).frames),
                        PELGetLastTimecodeAsFramesOfFiles(files));
}

NSInteger PELGetSequenceDurationForFileElements(const PELFileElements& files)
{
    return framesFromTo(static_cast<NSInteger>(PELGetFirstCommonTimecodeOfFileElements(files).frames),
                        PELGetLastCommonFrameOfFileElements(files));
}

NSInteger PELGetIndexOfFileWithMostSoundTracks(const PELFileElements& files)
{
    if (files.empty()) return -1;
    const auto most = std::ranges::max_element(
        files, {}, [](const auto& file) { return movieProperties(file).audioTrackCount; }); // the first of equals
    return most - files.begin();
}

} // namespace zanfcp
