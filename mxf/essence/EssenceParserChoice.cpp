#include "mxf/essence/EssenceKeys.h"
#include "mxf/essence/EssenceWalker.h"
#include "mxf/essence/MxfInterleavedParser.h"
#include "mxf/essence/MxfSingleStreamParser.h"
#include "mxf/essence/PresentInput.h"
#include "mxf/essence/TrackMatch.h"
#include "mxf/model/Links.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace TamrelMxf {
namespace {

/// What the first elements of a stream look like.
struct SLook {
    int elements = 0;       // 2 for more
    std::int64_t first = 0; // length of the first one
    bool isPlain = true;    // an element of D-10 sound holds more than samples
};

/// False for an element whose length leads to what is no key: one that grows, or is damaged.
bool IsFollowedByKey(CEssenceInput& input, const SEssenceKlv& klv)
{
    const auto next = input.Peek(klv.End(), SUl::kSize);
    if (next.size() == SUl::kSize) return SUl::From(next.data()).IsSmpte();
    return !input.IsComplete() || klv.End() <= input.Size();
}

/// Looks at the beginning of a container, until one of its streams has a second element.
/// \return true when that is all there is
bool LookAt(const SEssenceContext& context, std::span<const SEssenceTrack> tracks, std::vector<SLook>& looks)
{
    constexpr int kMostKlvs = 256;
    CPresentInput present{context.input};
    const SEssenceContext quiet{.input = present,
                                .dict = context.dict,
                                .partitions = context.partitions,
                                .index = context.index,
                                .start = context.start,
                                .logger = {}};
    CEssenceWalker walker{quiet, tracks.front().format.bodySid};
    CTrackMatch match{tracks};
    for (int i = 0; i < kMostKlvs; ++i) {
        const auto step = walker.Next();
        if (step != CEssenceWalker::EStep::found) return step == CEssenceWalker::EStep::end;
        const SEssenceKlv& klv = walker.Klv();
        const auto lane = klv.isSystem ? std::nullopt : match.Find(klv.key);
        // Beside other streams, one damaged length must not make all of them something else.
        if (lane && (tracks.size() == 1 || IsFollowedByKey(present, klv))) {
            SLook& look = looks[*lane];
            look.isPlain = klv.key.bytes[12] != 0x06;
            if (++look.elements == 2) return false;
            look.first = klv.length;
        }
        walker.Skip();
    }
    return false;
}

/// The rate of the content packages, where there are some.
double PackageRate(const SEssenceContext& context, std::span<const SEssenceTrack> tracks)
{
    const auto picture = std::ranges::find(tracks, EStreamType::picture, [](const auto& t) { return t.format.type; });
    if (picture != tracks.end()) return picture->format.editRate.ToDouble();
    if (context.index != nullptr) {
        const SRational rate = context.index->EditRate(tracks.front().format.indexSid);
        if (rate.IsPositive()) return rate.ToDouble();
    }
    return tracks.front().format.editRate.ToDouble();
}

/// True when the elements of a stream are not its edit units. Labels are not to be trusted alone: files with one stream
/// often carry that of frame wrapping over one element for everything.
bool IsCutElsewhere(const SEssenceTrack& track, const SLook& look, double packageRate, bool isAtom, bool isAll)
{
    const SStreamFormat& format = track.format;
    if (format.wrapping == EWrapping::custom) return true;
    const bool isClip = format.wrapping == EWrapping::clip;
    const bool isSamples = format.essenceKind == EEssenceKind::pcm || format.essenceKind == EEssenceKind::aLaw;
    if (format.type == EStreamType::sound && isSamples && look.isPlain && format.blockAlign > 0 && packageRate > 0) {
        if (look.elements == 0) return isClip || isAtom; // nothing is there yet
        if (look.first <= 0) return look.elements == 1;  // its length is still to be written
        const double samples = format.sampleRate / packageRate;
        return std::abs(static_cast<double>(look.first) / format.blockAlign - samples) > 1; // 1601 and 1602 take turns
    }
    if (look.elements > 1) return false;
    const bool isOne = track.duration == 1;
    return !isOne && (isClip || isAtom || (isAll && track.duration > 1));
}

} // namespace

std::unique_ptr<CEssenceParser> MakeEssenceParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks,
                                                  const SUl& operationalPattern)
{
    if (tracks.empty() || tracks.front().format.bodySid == 0) return nullptr;
    const bool isAtom = ParseOperationalPattern(operationalPattern).IsAtom();
    std::vector<SLook> looks(tracks.size());
    const bool isAll = LookAt(context, tracks, looks);
    const double rate = PackageRate(context, tracks);
    for (std::size_t i = 0; i < tracks.size(); ++i)
        if (IsCutElsewhere(tracks[i], looks[i], rate, isAtom, isAll))
            return std::make_unique<CMxfSingleStreamParser>(context, std::move(tracks));
    return std::make_unique<CMxfInterleavedParser>(context, std::move(tracks));
}

} // namespace TamrelMxf
