#pragma once

#include "HeaderModel.h"

#include <cstdint>
#include <string>
#include <vector>

namespace TamrelMxf {

/// One stream of essence: a track of a file package with all that speaks about it. The pointers go into the model and
/// live as long as it does.
struct SStreamLink {
    EDataKind kind = EDataKind::unknown;          ///< never timecode or descriptive
    const CMxfPackage* package = nullptr;         ///< the file package
    const CMxfTrack* track = nullptr;             ///< of that package
    const SDescriptor* descriptor = nullptr;      ///< of the track; null when the file has none for it
    const CMxfPackage* materialPackage = nullptr; ///< that plays the track; null when none does
    const CMxfTrack* materialTrack = nullptr;     ///< of that package
    const CMxfClip* materialClip = nullptr;       ///< the first one there that plays the track
    std::uint32_t bodySid = 0;                    ///< 0: the essence is not in this file
    std::uint32_t indexSid = 0;

    bool IsInFile() const { return bodySid != 0; }
};

/// The streams of all file packages, in the order of packages and tracks. Descriptors find their track by its ID; one
/// without a linked track, or with one that does not exist, goes to the first free track of its kind.
/// A track whose data definition says nothing is of the kind of its descriptor.
std::vector<SStreamLink> LinkStreams(const SHeaderModel& model);

/// How the essence lies in the file.
enum class EMuxingMode : std::uint32_t {
    unknown = 0,
    interleaved = 1,  ///< one container, its streams side by side in each content package
    singleStream = 2, ///< OP-Atom: one stream alone
    partitioned = 3,  ///< several containers (Body SIDs), each in partitions of its own
    external = 4,     ///< no essence here: it lies in other files
};

EMuxingMode DetectMuxingMode(const SHeaderModel& model, const SUl& operationalPattern);

/// An operational pattern label taken apart (SMPTE ST 377-1, ST 378, ST 390 and those after it).
struct SOperationalPattern {
    std::uint8_t itemComplexity = 0;    ///< 1 to 3, 10h for OP-Atom
    std::uint8_t packageComplexity = 0; ///< 1 to 3 for a to c; of OP-Atom 0 to 3
    bool hasExternalEssence = false;    ///< of OP1a to OP3c, as are the next two
    bool isStreamable = true;
    bool hasSeveralTracks = false;

    bool IsAtom() const { return itemComplexity == 0x10; }
    bool IsGeneralized() const
    {
        return itemComplexity >= 1 && itemComplexity <= 3 && packageComplexity >= 1 && packageComplexity <= 3;
    }
};
SOperationalPattern ParseOperationalPattern(const SUl& label);
/// "OP1a" to "OP3c", "OP-Atom", or "unknown" for every other label.
std::string OperationalPatternName(const SUl& label);

} // namespace TamrelMxf
