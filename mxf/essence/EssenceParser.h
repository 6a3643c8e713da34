#pragma once

#include "../index/MxfIndexParser.h"
#include "../io/Snitcher.h"
#include "../klv/RandomIndexPack.h"
#include "../labels/UlDict.h"
#include "../model/StreamFormat.h"
#include "EssenceInput.h"
#include "EssenceRecords.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace TamrelMxf {

/// What a step of a parser came to.
inline constexpr int kDelivered = 0; ///< at least one sample was handed over
inline constexpr int kRefused = 1;   ///< a receiver would not take its sample: it is offered again
inline constexpr int kEnded = 2;     ///< nothing is left
inline constexpr int kNeedsData = 3; ///< the next sample is not there yet

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

protected:
    CEssenceParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks);

    struct SLane {
        SEssenceTrack track;
        SMediaStream* receiver = nullptr;
    };
    const SEssenceContext& Context() const { return context_; }
    std::vector<SLane>& Lanes() { return lanes_; }
    SLane* FindLane(std::uint32_t stream);

private:
    const SEssenceContext& context_;
    std::vector<SLane> lanes_;
};

/// The parser for the essence of one BodySID, chosen from operational pattern, container labels, wrapping and, where
/// the header cannot be trusted, a look at the first elements.
/// \param tracks  all of one BodySID, not empty
/// \return null when the essence is not in this file
std::unique_ptr<CEssenceParser> MakeEssenceParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks,
                                                  const SUl& operationalPattern);

} // namespace TamrelMxf
