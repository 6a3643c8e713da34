#pragma once

#include "../labels/Ul.h"
#include "../metadata/Identifiers.h"
#include "../metadata/ObjectList.h"
#include "../metadata/Values.h"
#include "Descriptors.h"
#include "MetadataObject.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The timelines of a file: packages, their tracks, and what stands on them (SMPTE ST 377-1). Positions and durations
/// count edit units of the track that holds them; a stored -1 ("unknown") reads as absent.
namespace TamrelMxf {

/// What a track or component carries, by its data definition label.
enum class EDataKind : std::uint8_t {
    unknown,
    timecode,
    descriptive,
    picture,
    sound,
    data,
    auxiliary,
    parsedText,
};

/// The kind behind a data definition: a label of the register, or one of the UUIDs that stood for it before.
EDataKind DataKindOf(const SUl& dataDefinition);

/// A name and a value that someone attached to a package or component.
struct STaggedValue {
    std::string name;
    std::string value; ///< as text; empty for types that are not read
};

/// Something with a duration on a track: a clip of another package, timecode, a gap, a marker.
class CMxfClip {
public:
    enum class EKind : std::uint8_t {
        missing, ///< not read yet; never so in a finished model
        sourceClip,
        timecode,
        filler,
        descriptive, ///< a descriptive segment, with a framework
        event,       ///< a comment marker or another event
        choice,      ///< an essence group, a selector, a scope, an effect: `alternatives` has what it holds
        transition,
        other,
    };

    SUUID instanceUid;
    EKind kind = EKind::missing;
    const SSetDef* definition = nullptr;
    std::optional<SUl> dataDefinition;
    EDataKind dataKind = EDataKind::unknown;
    std::optional<std::int64_t> duration;

    // sourceClip
    std::optional<SUmid> sourcePackage; ///< all zero: the end of the chain
    std::optional<std::uint32_t> sourceTrackId;
    std::optional<std::int64_t> startPosition; ///< on the source track, in edit units of this clip's own track

    // timecode
    std::optional<std::int64_t> startTimecode; ///< frames since 00:00:00:00
    std::optional<std::uint16_t> timecodeBase; ///< rounded frames a second
    std::optional<bool> dropFrame;

    // event and descriptive
    std::optional<std::int64_t> eventStart;
    std::string comment;
    std::vector<std::uint32_t> trackIds;        ///< the tracks it speaks about; empty: all
    std::unique_ptr<SMetadataObject> framework; ///< of a descriptive segment

    std::vector<CMxfClip> alternatives;
    std::vector<STaggedValue> comments;
};

/// The clips of a sequence, by the references of its Structural Components.
using CClipList = CObjectList<CMxfClip, 0x1001>;

/// What stands on a track. A component that stands there without a sequence is a sequence of one.
class CMxfSequence {
public:
    SUUID instanceUid;
    bool isPresent = false; ///< false when the set that the reference names is not in the file
    bool isBare = false;    ///< a component without a sequence around it
    std::optional<SUl> dataDefinition;
    EDataKind dataKind = EDataKind::unknown;
    std::optional<std::int64_t> duration;
    CClipList clips;

    /// The stated duration or, without one, the sum of the durations of the clips; nothing when one is not known.
    /// Transitions overlap what stands beside them.
    std::optional<std::int64_t> TotalDuration() const;
};

class CMxfTrack {
public:
    enum class EKind : std::uint8_t { missing, timeline, event, fixed };

    SUUID instanceUid;
    EKind kind = EKind::missing; ///< `fixed`: a static track, without time; never missing in a finished model
    std::optional<std::uint32_t> id;
    std::optional<std::uint32_t> number; ///< of a file package: bytes 13 to 16 of the essence element key
    std::string name;
    std::optional<SRational> editRate; ///< positive
    std::optional<std::int64_t> origin;
    std::optional<std::int64_t> markIn, markOut, userPosition;
    std::optional<std::int64_t> packageMarkIn, packageMarkOut;
    CMxfSequence sequence;

    /// The kind of the sequence or, where it does not say, of its first clip that does.
    EDataKind DataKind() const;
    /// The first clip of this kind, or null.
    const CMxfClip* FirstClip(CMxfClip::EKind kind) const;
};

/// The marks of a package. All are positions on the time base reference track.
struct SPackageMarker {
    SUUID identifier; ///< Instance UID of the marker's set
    std::optional<std::uint32_t> timebaseTrackId;
    std::optional<std::int64_t> markIn, markOut;
    std::optional<SUmid> package; ///< that refers to it; absent when none does
};

class CMxfPackage {
public:
    enum class EKind : std::uint8_t { material, source, other };

    SUUID instanceUid;
    EKind kind = EKind::other;
    const SSetDef* definition = nullptr;
    SUmid uid;
    std::string name;
    std::optional<STimestamp> created, modified;
    std::optional<SUl> usage;
    CObjectList<CMxfTrack, 0x4403> tracks;
    std::optional<SDescriptor> descriptor; ///< of a source package
    std::vector<STaggedValue> comments, attributes;
    std::optional<SPackageMarker> marker;

    // marks that the package set itself carries under dynamic tags
    std::optional<std::int64_t> markIn, markOut, materialEndRelativeTime;
    std::optional<std::uint32_t> timebaseReferenceTrackId;

    /// The track with this ID, or null.
    const CMxfTrack* FindTrack(std::uint32_t id) const;
    /// True for a source package whose essence is in a file, this one or another.
    bool IsFilePackage() const { return kind == EKind::source && descriptor && descriptor->IsFile(); }
};

} // namespace TamrelMxf
