#include "mxf/avc/AvcFormat.h"

#include "mxf/avc/AvcConfiguration.h"

namespace TamrelMxf {

SAvcFormat ToAvcFormat(const SAvcSps& sps, const CAvcParameterSets& sets)
{
    const SAvcVui vui = sps.vui.value_or(SAvcVui{});
    SAvcFormat format{
        .profileIdc = sps.profileIdc,
        .constraintFlags = sps.constraintFlags,
        .levelIdc = sps.levelIdc,
        .profileName = sps.ProfileName(),
        .isIntraOnly = sps.IsIntraOnly(),
        .isInterlaced = !sps.isFrameOnly,
        .chroma = sps.chroma,
        .lumaDepth = sps.lumaDepth,
        .chromaDepth = sps.chromaDepth,
        .codedWidth = sps.CodedWidth(),
        .codedHeight = sps.CodedHeight(),
        .displayX = sps.cropLeft,
        .displayY = sps.cropTop,
        .displayWidth = sps.Width(),
        .displayHeight = sps.Height(),
        .sampleAspect = vui.sampleAspect,
        .pictureAspect = std::nullopt,
        .frameRate = sps.FrameRate(),
        .isFixedFrameRate = vui.isFixedFrameRate,
        .videoFormat = vui.videoFormat,
        .isFullRange = vui.isFullRange,
        .colourPrimaries = vui.colourPrimaries,
        .transferCharacteristics = vui.transferCharacteristics,
        .matrixCoefficients = vui.matrixCoefficients,
        .reorderFrames = static_cast<std::uint8_t>(sps.ReorderFrames()),
        .decFrameBuffering = static_cast<std::uint8_t>(sps.DecFrameBuffering()),
        .annexB = ToAnnexB(sets),
        .configuration = ToAvcConfiguration(sets),
    };
    if (vui.sampleAspect)
        format.pictureAspect = SAvcRatio::Reduced(std::uint64_t{vui.sampleAspect->num} * sps.Width(),
                                                  std::uint64_t{vui.sampleAspect->den} * sps.Height());
    return format;
}

} // namespace TamrelMxf
