#pragma once

#include "../index/MxfIndexParser.h"
#include "../io/Snitcher.h"
#include "../klv/RandomIndexPack.h"
#include "../labels/UlDict.h"
#include "../model/StreamFormat.h"
#include "EssenceInput.h"
#include "EssenceRecords.h"
#include "PictureOrder.h"
#include "WalkedUnits.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace TamrelMxf {

/// One stream as a parser sees it.
struct SEssenceTrack {
    std::uint32_t stream = 0;   ///< as the interface counts
    SStreamFormat format = {};  ///< a copy: what the demuxer knows may be made again while a file grows
    std::int64_t offset = 0;    ///< edit units of essence in front of the first one that is played
    std::int64_t duration = -1; ///< edit units of essence in all, -1 when the header does not say
};

/// Where the walk through the partitions begins.
struct SEssenceStart {
    std::int64_t position = 0;    ///< of the header partition pack; or behind it, when the rest tells what it said
    std::uint32_t bodySid = 0;    ///< of the partition that `position` lies in; 0 in front of a pack
    std::uint64_t bodyOffset = 0; ///< of that partition
};

/// What the parsers of one demuxer share; borrowed, outlives them.
struct SEssenceContext {
    CEssenceInput& input;
    const CMxfUlDict& dict;
    CRandomIndexPack& partitions; ///< never asked to read packs when `input` is no file
    CMxfIndexParser* index;       ///< null without one
    SEssenceStart start;
    CLoggerT<CSnitcher> logger;
};

/// Takes the essence of one container (BodySID) apart and hands it to the receivers of its streams.
class CEssenceParser {
public:
    virtual ~CEssenceParser();
    CEssenceParser(const CEssenceParser&) = delete;
    CEssenceParser& operator=(const CEssenceParser&) = delete;

    /// \param receiver  borrowed until it is removed; the next samples of the stream go there
    /// \return 0; -2 for a null receiver; -3 when the parser has no such stream or it has a receiver already
    int AddStream(std::uint32_t stream, SMediaStream* receiver);
    /// \return 0; -3 when the parser has no such stream, or no receiver for it
    int RemoveStream(std::uint32_t stream);

    /// Delivers the next unit of essence: one edit unit of all streams that have a receiver.
    /// \return kDelivered, kRefused, kEnded or kNeedsData; -1 when reading failed
    virtual int Push() = 0;
    /// Goes on at another edit unit; all streams follow.
    /// \return 0; -3 when the stream or the position does not exist (the place is then as before); -1 when reading
    ///   failed
    virtual int Seek(mxf_dmuxer_seek& seek) = 0;
    /// \param editUnit  stored, of info.stream
    /// \return 0; -3 for a stream that is not of this parser; -11 when the edit unit is not known
    virtual int GetSampleInfo(std::int64_t editUnit, mxf_sample_info& info) = 0;

    /// Fills in the place in the file from the place in the container.
    /// \return 0; -11 when the container does not reach there
    virtual int FillSampleOffset(mxf_sample_info& info);

protected:
    /// \param countsPackages  the streams of the container share its units; false: each counts its own edit units
    CEssenceParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks, bool countsPackages);

    struct SLane {
        SEssenceTrack track;
        SMediaStream* receiver = nullptr;
        std::int64_t expected = 0; ///< the stored edit unit that follows what was delivered; -1 after a seek
        bool isReordered = false;  ///< its pictures depend on others
        bool hasOwnFrames = false; ///< its edit units do not begin where packages do
        std::unique_ptr<CPictureOrder> order = nullptr; ///< reads their order; null for codings that are not read
        std::int64_t ordered = -1;                      ///< the unit that `described` is of
        SPicturePlace described = {};
        std::optional<std::int64_t> delay = {}; ///< of decoding; fixed by the first sample
        CWalkedUnits walked = {};               ///< see WalkedOf
    };
    /// One sample before its times are known.
    struct SPiece {
        std::int64_t unit = 0;     ///< stored, of the container
        std::int64_t editUnit = 0; ///< stored, of the stream
        std::int64_t duration = 1; ///< edit units of the stream
        std::int64_t position = 0;
        std::span<const std::uint8_t> bytes = {};
        bool isDamaged = false;
        bool isLast = false;
    };
    /// When a picture is shown, and whether decoding can start there; on the scale of stored units of the container.
    struct STimes {
        std::int64_t displayed = 0;
        std::int64_t delay = 0;
        bool isKey = true;
    };

    const SEssenceContext& Context() const { return context_; }
    std::uint32_t BodySid() const { return lanes_.front().track.format.bodySid; }
    std::uint32_t IndexSid() const { return lanes_.front().track.format.indexSid; }
    std::vector<SLane>& Lanes() { return lanes_; }
    const std::vector<SLane>& Lanes() const { return lanes_; }
    SLane* FindLane(std::uint32_t stream);
    /// The edit rate that the units of the container count in: that of its index tables, else of its pictures.
    const SRational& Rate();
    /// From units of the container to edit units of a stream, and back.
    std::int64_t ToLane(const SLane& lane, std::int64_t unit);
    std::int64_t ToContainer(const SLane& lane, std::int64_t editUnit);

    std::optional<SIndexedUnit> FindIndexed(std::int64_t unit) const;
    /// FindIndexed where the table tells the order of the pictures as well. Not in the standard: some writers leave
    /// that out. Where the table never moves a picture although the stream does, the pictures themselves are asked.
    std::optional<SIndexedUnit> FindOrdered(const SLane& lane, std::int64_t unit);
    /// Finds out whether FindOrdered is to trust the table for MPEG. To be called in front of it while no sample is
    /// held, since it looks at the essence. \param unit  one that is asked for
    void LearnOrder(std::int64_t unit);
    /// \param bytes  of the sample; empty when only the index tables can tell
    STimes TimesOf(SLane& lane, std::int64_t unit, std::span<const std::uint8_t> bytes);
    /// The unit as a walk from the beginning of the container on meets it, noted in WalkedOf(lane): for what no index
    /// table covers. \return null where the essence ends before
    virtual const SWalkedUnit* Walk(SLane& lane, std::int64_t unit) = 0;
    /// The lane whose list the lanes without an order of their own share.
    SLane& LeadingLane();
    CWalkedUnits& WalkedOf(SLane& lane) { return (lane.isReordered ? lane : LeadingLane()).walked; }
    static void Note(SWalkedUnit& met, std::int64_t unit, const std::optional<SPicturePlace>& order);
    /// The stored edit unit that is shown at a position, both of the container; -1 when there is none.
    std::int64_t StoredAt(SLane& lane, std::int64_t displayed);
    /// The stored edit unit that decoding starts from.
    std::int64_t KeyFrameOf(SLane& lane, std::int64_t unit);
    /// Where a seek leads: the stored edit unit of the container, negative when there is none.
    std::int64_t TargetOf(SLane& lane, const mxf_dmuxer_seek& seek);

    /// Hands a sample to the receiver of the lane.
    /// \return false when it does not take it
    bool Deliver(SLane& lane, const SPiece& piece);
    /// Fills in what is known of a sample besides its place.
    void FillSampleInfo(mxf_sample_info& info, const SLane& lane, const SPiece& piece, const STimes& times);
    static void FillIndexed(mxf_sample_info& info, const SIndexedUnit& indexed);
    /// What comes next does not continue what was delivered.
    void Interrupt();

private:
    struct SPlayed {
        std::int64_t pts = 0, dts = 0;
    };
    SPlayed PlayedAt(const SLane& lane, const SPiece& piece, const STimes& times);

    const SEssenceContext& context_;
    std::vector<SLane> lanes_;
    bool countsPackages_;
    SRational rate_; // fixed by the first question
    std::optional<bool> isOrderIndexed_;
    std::optional<std::int64_t> learntAt_; // the unit that LearnOrder looked around
};

/// The parser for the essence of one BodySID, chosen from operational pattern, container labels, wrapping and, where
/// the header cannot be trusted, a look at the first elements.
/// \param tracks  all of one BodySID, not empty
/// \return null when the essence is not in this file
std::unique_ptr<CEssenceParser> MakeEssenceParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks,
                                                  const SUl& operationalPattern);

} // namespace TamrelMxf
