#pragma once

#include "../labels/Ul.h"
#include "../metadata/Identifiers.h"
#include "../metadata/SetTables.h"
#include "../metadata/Values.h"
#include "MetadataObject.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the file says about its essence. Every value is optional, as files leave out even what they must write; names,
/// units and codes are those of SMPTE ST 377-1 where nothing else is said.
namespace TamrelMxf {

/// One component of a pixel layout: 'R', 'G', 'B', 'A', 'Y', 'F' (fill) and so on, and its bits (253: half float).
struct SPixelComponent {
    char code = 0;
    std::uint8_t depth = 0;

    friend bool operator==(const SPixelComponent&, const SPixelComponent&) = default;
};

/// MPEG-2 video (SMPTE ST 381-1).
struct SMpegVideo {
    std::optional<bool> singleSequence = {};
    std::optional<bool> constantBPictureCount = {};
    std::optional<std::uint8_t> codedContentScanning = {}; ///< 0 unknown, 1 progressive, 2 interlaced, 3 mixed
    std::optional<bool> lowDelay = {};
    std::optional<bool> closedGop = {};
    std::optional<bool> identicalGop = {};
    std::optional<std::uint16_t> maxGop = {}; ///< pictures
    std::optional<std::uint16_t> maxBPictureCount = {};
    std::optional<std::uint32_t> bitRate = {};        ///< bit/s
    std::optional<std::uint8_t> profileAndLevel = {}; ///< as in the sequence extension (ISO/IEC 13818-2)
};

/// Picture geometry and coding. Heights of field pictures are those of one field.
struct SPictureDescriptor {
    std::optional<SUl> coding = {};
    std::optional<std::uint32_t> storedWidth = {}, storedHeight = {};
    std::optional<std::uint32_t> sampledWidth = {}, sampledHeight = {};
    std::optional<std::int32_t> sampledXOffset = {}, sampledYOffset = {};
    std::optional<std::uint32_t> displayWidth = {}, displayHeight = {};
    std::optional<std::int32_t> displayXOffset = {}, displayYOffset = {};
    std::optional<std::uint32_t> activeWidth = {}, activeHeight = {}, activeXOffset = {}, activeYOffset = {};
    /// 0 full frame, 1 separate fields, 2 one field, 3 mixed fields, 4 segmented frame
    std::optional<std::uint8_t> frameLayout = {};
    std::vector<std::int32_t> videoLineMap = {};
    std::optional<SRational> aspectRatio = {};       ///< of the picture, not of a pixel
    std::optional<std::uint8_t> fieldDominance = {}; ///< the field that comes first in time, 1 or 2
    std::optional<std::int32_t> storedF2Offset = {}, displayF2Offset = {};
    std::optional<std::uint8_t> signalStandard = {};
    std::optional<std::uint8_t> activeFormatDescriptor = {};
    std::optional<std::uint8_t> alphaTransparency = {};
    std::optional<SUl> transferCharacteristic = {}, colorPrimaries = {}, codingEquations = {};
    std::optional<std::uint32_t> imageAlignmentFactor = {}, imageStartOffset = {}, imageEndOffset = {}; ///< bytes
    std::optional<std::uint32_t> masteringMaximumLuminance = {}, masteringMinimumLuminance = {}; ///< 0.0001 cd/m2

    // Y CbCr
    std::optional<std::uint32_t> componentDepth = {}; ///< bits
    std::optional<std::uint32_t> horizontalSubsampling = {}, verticalSubsampling = {};
    std::optional<std::uint8_t> colorSiting = {};
    std::optional<std::uint32_t> blackRefLevel = {}, whiteRefLevel = {}, colorRange = {};
    std::optional<std::int16_t> paddingBits = {};
    std::optional<std::uint32_t> alphaSampleDepth = {};
    std::optional<bool> reversedByteOrder = {};

    // RGB(A) and raw
    std::vector<SPixelComponent> pixelLayout = {};
    std::optional<std::uint32_t> componentMaxRef = {}, componentMinRef = {};
    std::optional<std::uint32_t> alphaMaxRef = {}, alphaMinRef = {};
    std::optional<std::uint8_t> scanningDirection = {};

    std::optional<SMpegVideo> mpeg = {};
    std::vector<std::uint8_t> initializationData = {}; ///< sequence header of VC-1
};

/// Sound sampling and coding (SMPTE ST 377-1, ST 382).
struct SSoundDescriptor {
    std::optional<SRational> samplingRate = {}; ///< Hz
    std::optional<bool> locked = {};            ///< to the picture
    std::optional<std::int8_t> refLevel = {};   ///< dBm
    std::optional<std::uint8_t> electroSpatialFormulation = {};
    std::optional<std::uint32_t> channelCount = {};
    std::optional<std::uint32_t> quantizationBits = {};
    std::optional<std::int8_t> dialNorm = {};
    std::optional<SUl> coding = {};
    std::optional<std::int8_t> referenceAudioAlignmentLevel = {};
    std::optional<SRational> referenceImageEditRate = {};

    // wave and AES3
    std::optional<std::uint16_t> blockAlign = {}; ///< bytes of one sample of all channels
    std::optional<std::uint8_t> sequenceOffset = {};
    std::optional<std::uint32_t> averageBytesPerSecond = {};
    std::optional<SUl> channelAssignment = {};

    // AES3
    bool isAes3 = false;
    std::optional<std::uint8_t> emphasis = {};
    std::optional<std::uint16_t> blockStartOffset = {};
    std::optional<std::uint8_t> auxBitsMode = {};
    std::vector<std::uint8_t> channelStatusMode = {};  ///< one per channel
    std::vector<std::uint8_t> fixedChannelStatus = {}; ///< 24 bytes per channel
    std::vector<std::uint8_t> userDataMode = {};
    std::optional<std::uint32_t> linkedTimecodeTrackId = {};
    std::optional<std::uint8_t> dataStreamNumber = {}; ///< SMPTE ST 337
};

/// Data essence: ancillary packets, VBI lines, timed text and others, told apart by the class of the set.
struct SDataDescriptor {
    enum class EKind : std::uint8_t { other, ancillary, vbi, timedText };

    EKind kind = EKind::other;
    std::optional<SUl> coding = {};

    // timed text (SMPTE ST 429-5)
    std::optional<SUUID> resourceId = {};
    std::string encoding = {}; ///< of the characters, such as "UTF-8"
    std::string namespaceUri = {};
    std::string languageTags = {}; ///< RFC 5646, separated by commas
};

/// A tape, a film reel, an imported file: where the essence came from before it came into a file.
struct SPhysicalDescriptor {
    enum class EKind : std::uint8_t { other, tape, film, imported, recording, auxiliary };

    EKind kind = EKind::other;
    std::optional<std::uint8_t> formFactor = {}, videoSignal = {}, format = {}; ///< tape
    std::optional<std::uint32_t> minutes = {};                                  ///< tape
    std::string manufacturer = {}, stock = {}, batchNumber = {};                ///< tape and film
    std::optional<std::uint32_t> frameRate = {};                                ///< film, frames a second
    std::optional<SRational> aspectRatio = {};                                  ///< film
    std::string mimeType = {};                                                  ///< auxiliary
};

/// A place where essence or more about it is to be found.
struct SLocator {
    enum class EKind : std::uint8_t { network, text };

    EKind kind = EKind::text;
    std::string text = {}; ///< a URL, or the name of a place for people
};

/// AVC and HEVC streams (SMPTE ST 381-3, ST 381-5).
struct SCodedVideo {
    std::optional<std::uint8_t> profile = {}, level = {}, tier = {}; ///< profile_idc, level_idc, general_tier_flag
    std::optional<std::uint16_t> profileConstraint = {};
    std::optional<std::uint8_t> codedContentKind = {};
    std::optional<bool> constantBPictures = {}, closedGop = {}, identicalGop = {};
    std::optional<std::uint16_t> maxGop = {}, maxBPictureCount = {};       ///< pictures
    std::optional<std::uint32_t> maximumBitRate = {}, averageBitRate = {}; ///< bit/s
    std::optional<std::uint8_t> decodingDelay = {}, maxRefFrames = {};
    std::optional<std::uint8_t> sequenceParameterSetFlag = {}, pictureParameterSetFlag = {};
};

/// The main header of a JPEG 2000 code stream (SMPTE ST 422, ISO/IEC 15444-1 A.5).
struct SJpeg2000 {
    std::optional<std::uint16_t> rsiz = {}, csiz = {};
    std::optional<std::uint32_t> xsiz = {}, ysiz = {}, xosiz = {}, yosiz = {}, xtsiz = {}, ytsiz = {}, xtosiz = {},
                                 ytosiz = {};
    /// Ssiz, XRsiz and YRsiz of each component.
    std::vector<std::array<std::uint8_t, 3>> components = {};
    std::vector<std::uint8_t> codingStyleDefault = {},
                              quantizationDefault = {}; ///< the marker segments, without marker
    std::vector<SPixelComponent> layout = {};
};

/// An audio label (SMPTE ST 377-4): what a channel or a group of channels carries.
struct SMcaLabel {
    enum class EKind : std::uint8_t { other, channel, soundfieldGroup, groupOfSoundfieldGroups };

    EKind kind = EKind::other;
    std::optional<SUl> dictionaryId = {};        ///< what it is, such as left or 5.1
    std::optional<SUUID> linkId = {};            ///< its name for the labels that point at it
    std::string tagSymbol = {}, tagName = {};    ///< "chL", "Left"
    std::optional<std::uint32_t> channelId = {}; ///< counts from 1
    std::string spokenLanguage = {};             ///< RFC 5646
    std::string title = {}, titleVersion = {}, titleSubVersion = {}, episode = {}, audioContentKind = {},
                audioElementKind = {};
    std::optional<SUUID> soundfieldGroupLinkId = {};        ///< of a channel
    std::vector<SUUID> groupOfSoundfieldGroupsLinkIds = {}; ///< of a soundfield group
};

/// A font or picture that timed text uses (SMPTE ST 429-5).
struct STimedTextResource {
    std::optional<SUUID> resourceId = {};
    std::string mimeType = {};
    std::optional<std::uint32_t> bodySid = {}; ///< of the generic stream that holds it
};

/// More about the essence of the descriptor that it hangs on. At most one of the records is there; sets of all other
/// classes are kept as `object`.
struct SSubDescriptor {
    const SSetDef* definition = nullptr; ///< null for an unknown class
    SUUID instanceUid;
    std::optional<SCodedVideo> codedVideo = {};
    std::optional<SJpeg2000> jpeg2000 = {};
    std::optional<SMcaLabel> mca = {};
    std::optional<STimedTextResource> resource = {};
    std::optional<SMetadataObject> object = {};
};

/// A descriptor of any class. `picture`, `sound`, `data` and `physical` are there by its class; none of them is for a
/// MultipleDescriptor, which has `parts` instead.
struct SDescriptor {
    SUl key;
    const SSetDef* definition = nullptr; ///< null for an unknown class
    SUUID instanceUid;
    bool isMultiple = false;

    std::optional<std::uint32_t> linkedTrackId = {};
    std::optional<SRational> sampleRate = {}; ///< the unit of `containerDuration`
    std::optional<std::int64_t> containerDuration = {};
    std::optional<SUl> essenceContainer = {};
    std::optional<SUl> codec = {};

    std::optional<SPictureDescriptor> picture = {};
    std::optional<SSoundDescriptor> sound = {};
    std::optional<SDataDescriptor> data = {};
    std::optional<SPhysicalDescriptor> physical = {};

    std::vector<SLocator> locators = {};
    std::vector<SSubDescriptor> subDescriptors = {};
    std::vector<SDescriptor> parts = {};

    /// True for a descriptor of essence in a file, false for a tape, a film and the like.
    bool IsFile() const { return !physical.has_value(); }
};

} // namespace TamrelMxf
