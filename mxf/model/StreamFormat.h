#pragma once

#include "../labels/Ul.h"
#include "../metadata/Values.h"
#include "Codings.h"
#include "Links.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace TamrelMxf {

enum class EStreamType : std::uint32_t { picture = 1, sound = 2, data = 3, other = 4 };

/// The family of a coding. The number of MPEG-1 and MPEG-2 picture is fixed.
enum class EEssenceKind : std::uint8_t {
    unknown = 0,
    uncompressed = 1,
    mpegPicture = 2,
    dv = 3,
    avc = 4,
    hevc = 5,
    vc3 = 6,
    jpeg2000 = 7,
    proRes = 8,
    mpeg4Part2 = 9,
    vc1 = 10,
    vc2 = 11,
    vc5 = 12,
    jpegXs = 13,
    ffv1 = 14,
    d11 = 15,
    raw = 16,
    aces = 17,
    tiff = 18,
    pcm = 32,
    aLaw = 33,
    mpegAudio = 34,
    aac = 35,
    codedInAes3 = 36, ///< SMPTE ST 337
    ac3 = 37,         ///< ATSC A/52, as a stream of its own
    ancillary = 64,
    vbi = 65,
    timedText = 66,
    otherData = 67,
};

struct SRectangle {
    std::int32_t x = 0, y = 0;
    std::uint32_t width = 0, height = 0;

    friend bool operator==(const SRectangle&, const SRectangle&) = default;
};

/// All that the header metadata says about one stream, in the terms of a player. 0 stands for what the file leaves out.
struct SStreamFormat {
    EStreamType type = EStreamType::other;
    std::uint32_t trackId = 0;
    std::uint32_t trackNumber = 0;
    std::uint32_t materialTrackId = 0; ///< 0 when no material package plays the stream
    std::uint32_t bodySid = 0;
    std::uint32_t indexSid = 0;
    SUl essenceContainer;
    SUl coding;
    EWrapping wrapping = EWrapping::unknown;
    EEssenceKind essenceKind = EEssenceKind::unknown;
    std::string_view codecName; ///< constant data
    std::uint32_t codec = 0;    ///< a four-character code, first character in the top byte
    SRational editRate;
    std::uint32_t frameRateCode = 0; ///< rate x 100, rounded: 2398, 2500, 2997
    double frameRate = 0;
    std::uint32_t bitRate = 0;           ///< bit/s
    std::vector<std::uint8_t> extraData; ///< sequence headers and the like, as the descriptor carries them

    // picture
    std::uint32_t width = 0, height = 0; ///< as stored: of field pictures the height of one field
    std::uint32_t frameHeight = 0;       ///< of both fields
    std::uint32_t sampledWidth = 0;      ///< without what a coder adds; as stored where the file does not say
    SRectangle displayed;                ///< inside the stored picture, in its lines
    SRational aspectRatio;               ///< of the displayed picture
    bool isInterlaced = false;
    std::uint8_t fieldDominance = 0; ///< the field that comes first, 1 or 2; 0 for progressive pictures
    /// Of MPEG: 1 MPEG-1, 2 MPEG-2, 4 MPEG-4 part 2. Of AVC and HEVC: profile_idc.
    std::uint8_t profile = 0;
    /// Of MPEG-2: 1 MP@ML, 2 422P@ML, 3 MP@HL, 4 422P@HL, 5 MP@H-14, 6 HP@ML, 7 HP@HL, 8 HP@H-14.
    std::uint8_t family = 0;
    std::uint8_t level = 0;           ///< level_idc of AVC and HEVC
    std::uint32_t componentDepth = 0; ///< bits
    std::uint32_t horizontalSubsampling = 0, verticalSubsampling = 0;
    std::uint16_t maxGop = 0; ///< pictures; 1 for intra-only
    std::uint16_t maxBPictureCount = 0;
    bool isClosedGop = false, isIdenticalGop = false;
    /// How many pictures may be stored in front of one that is shown before them; -1 while only the essence knows.
    std::int32_t reorderDepth = -1;

    // sound
    double sampleRate = 0; ///< Hz
    std::uint32_t bitsPerSample = 0;
    std::uint32_t channelCount = 0;
    std::uint32_t blockAlign = 0; ///< bytes of one sample of all channels
};

/// The format of a stream of LinkStreams.
SStreamFormat DescribeStream(const SStreamLink& link);

/// How many elements an edit unit of frame- or field-wrapped essence has: two where each holds a field and the track
/// counts frames, else one. No interlaced picture has more than 30 frames a second, so a track that counts faster
/// counts fields.
int ElementsInEditUnit(const SStreamFormat& format);

/// True for sound that is coded in frames whose duration is not that of a picture, such as the 24 ms of MPEG layer II.
bool HasOwnFrames(const SStreamFormat& format);

} // namespace TamrelMxf
