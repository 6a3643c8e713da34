#pragma once

#include "AvcFormat.h"
#include "PictureOrder.h"
#include "Sei.h"

#include <cstdint>
#include <optional>
#include <span>

namespace TamrelMxf {

/// How the picture or pictures of one unit are coded.
enum class EAvcCoding : std::uint8_t {
    frame,
    mbaffFrame, ///< a frame whose macroblock pairs choose between frame and field coding
    fieldPair,  ///< both fields of a frame, each a picture of its own
    topField,   ///< a single field
    bottomField,
};

enum class EAvcPictureType : std::uint8_t { i, p, b };

/// What the headers of one unit tell: an access unit, or the edit unit of a file with a frame or two fields in it.
struct SAvcPicture {
    std::int64_t decodeIndex = 0; ///< place in decoding order, which is the stored order
    bool isDamaged = false;       ///< no slice header could be read; the rest is a guess: as the unit before

    EAvcPictureType type = EAvcPictureType::i; ///< of the frame or first field; SI counts as I, SP as P
    bool isTypeOfAllSlices = false;            ///< the stream says so, or every slice was looked at
    EAvcCoding coding = EAvcCoding::frame;
    bool isTopFirst = true; ///< of a frame or field pair: the top field is output first, or both at once
    std::optional<std::uint8_t> pictureStructure; ///< pic_struct, 0 to 8 (table D-1), when a message tells

    bool isIdr = false;       ///< nothing behind it, in either order, refers to anything before it
    bool isIntra = false;     ///< every slice that was looked at, of both fields, is intra
    bool isReference = false; ///< nal_ref_idc of any field is not 0
    std::optional<SAvcRecoveryPoint> recoveryPoint;
    /// Decoding may begin here and gives this picture right at once: IDR; or an intra picture with a recovery point of
    /// no frames, or in a stream that promises to have no other pictures.
    bool isKeyFrame = false;

    std::uint32_t frameNum = 0;
    bool hasFrameNumGap = false; ///< frames are missing in front of it; where the set allows gaps they may be meant to

    SPictureOrderCount order;       ///< both fields together
    bool startsSequence = false;    ///< IDR or memory management operation 5: counting begins anew
    std::int64_t sequence = 0;      ///< stretch of pictures whose counts compare; all of a lower one come before
    std::uint8_t reorderFrames = 0; ///< of its sequence parameter set
    std::uint8_t spsId = 0;
    std::uint8_t ppsId = 0;

    bool IsSingleField() const { return coding == EAvcCoding::topField || coding == EAvcCoding::bottomField; }
};

/// Looks at the headers of an AVC stream, unit by unit in stored order (ITU-T H.264). Presentation times follow
/// from its answers: CPresentationOrder while reading on, PresentationIndexes for a whole stream.
class CAvcAnalyser {
public:
    enum class EScan : std::uint8_t {
        /// The first slice of the frame, or of both fields. A unit that holds a frame costs what stands in front of
        /// that slice, whatever its size; one with fields the search for the second, which is a search for one byte.
        firstSlices,
        /// Every slice header of the unit: certain about the type where slices differ.
        allSlices,
    };

    explicit CAvcAnalyser(EScan scan = EScan::firstSlices) : scan_{scan} {}

    /// Gives parameter sets from outside the stream, see ReadAvcExtraData. Units after a configuration record are
    /// behind lengths, otherwise behind start codes.
    int SetExtraData(std::span<const std::uint8_t> bytes);

    /// Looks at the next unit: one access unit, or the two of a frame's fields. Pictures behind those are passed over.
    /// \param picture  set in every case, so that a damaged unit keeps its place in the order
    /// \return 0; isDamaged is set otherwise:
    ///   -1   its slice headers are broken
    ///   -4   its parameter sets have not come yet
    ///   -9   its slice headers are cut short
    ///   -11  it holds no slice of a primary picture
    int Analyse(std::span<const std::uint8_t> unit, SAvcPicture& picture);

    /// Goes on elsewhere: the next unit has this place in decoding order, and its counts do not compare with earlier
    /// ones. Parameter sets are kept. Call it for a seek to a key frame or behind a gap.
    void Restart(std::int64_t decodeIndex);

    /// Of the sequence parameter set used last, before the first picture of the first one that came.
    /// \return nothing before there is a sequence parameter set
    std::optional<SAvcFormat> Format() const;

    const CAvcParameterSets& ParameterSets() const { return sets_; }

private:
    struct SFound;
    int Look(std::span<const std::uint8_t> unit, SFound& found);
    /// \return true when nothing more of the unit is of interest
    bool TakeSlice(const SAvcSliceHeader& slice, SFound& found);
    void BeginPicture(const SAvcSliceHeader& slice, SFound& found);
    void AddField(const SAvcSliceHeader& slice, SFound& found);
    void CountFrameNum(const SAvcSliceHeader& slice, const SAvcSps& sps, SAvcPicture& picture);

    EScan scan_;
    unsigned lengthSize_ = 0;
    CAvcParameterSets sets_;
    CPictureOrderCounter counter_;
    std::optional<std::uint8_t> activeSps_;
    std::int64_t nextIndex_ = 0;
    std::int64_t sequence_ = 0;
    bool isFirstInSequence_ = true; ///< no picture came since the start or Restart()
    SPictureOrderCount lastOrder_;
    std::uint8_t lastReorderFrames_ = 0;
    std::uint32_t lastReferenceFrameNum_ = 0;
};

} // namespace TamrelMxf
