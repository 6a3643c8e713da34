#include "mxf/demuxer/AvcFacts.h"

#include "mxf/avc/AvcAnalyser.h"
#include "mxf/avc/AvcIntra.h"

#include <algorithm>

namespace TamrelMxf {
namespace {

/// The sets that class and format of an intra stream fix; empty for all other streams.
std::vector<std::uint8_t> FixedSets(const SStreamFormat& format)
{
    auto intra = AvcIntraFormatOfLabel(format.coding.bytes);
    if (!intra) return {};
    if (format.editRate.IsPositive())
        intra->frameRate = SAvcRatio::Reduced(static_cast<std::uint64_t>(format.editRate.num),
                                              static_cast<std::uint64_t>(format.editRate.den));
    const auto sets = MakeAvcIntraSets(*intra);
    return sets ? sets->ToAnnexB() : std::vector<std::uint8_t>{};
}

void Complete(SStreamFormat& format, const SAvcFormat& coded)
{
    format.profile = coded.profileIdc;
    format.level = coded.levelIdc;
    format.componentDepth = std::max(coded.lumaDepth, coded.chromaDepth);
    const bool isHalfWidth = coded.chroma == EAvcChroma::yuv420 || coded.chroma == EAvcChroma::yuv422;
    if (coded.chroma != EAvcChroma::monochrome) {
        format.horizontalSubsampling = isHalfWidth ? 2 : 1;
        format.verticalSubsampling = coded.chroma == EAvcChroma::yuv420 ? 2 : 1;
    }
    if (coded.isIntraOnly) format.maxGop = 1;
    format.reorderDepth = coded.reorderFrames;
    if (format.width == 0 || format.height == 0) {
        format.width = coded.codedWidth;
        format.height = format.frameHeight = coded.codedHeight;
    }
    // Some descriptors know the padded width alone.
    if (coded.displayX == 0 && format.width == coded.codedWidth) format.sampledWidth = coded.displayWidth;
    if (format.displayed.width == 0 || format.displayed.height == 0)
        format.displayed = {.x = static_cast<std::int32_t>(coded.displayX),
                            .y = static_cast<std::int32_t>(coded.displayY),
                            .width = coded.displayWidth,
                            .height = coded.displayHeight};
    if (format.extraData.empty()) format.extraData = coded.annexB;
}

} // namespace

void CompleteAvcFormat(SStreamFormat& format, std::span<const std::uint8_t> head)
{
    CAvcAnalyser analyser;
    if (!format.extraData.empty()) (void)analyser.SetExtraData(format.extraData);
    SAvcPicture picture;
    if (!head.empty()) (void)analyser.Analyse(head, picture); // cut pictures still show their sets
    auto coded = analyser.Format();
    if (!coded) {
        const std::vector<std::uint8_t> fixed = FixedSets(format);
        if (fixed.empty() || analyser.SetExtraData(fixed) != 0) return;
        coded = analyser.Format();
    }
    if (coded) Complete(format, *coded);
}

} // namespace TamrelMxf
