#include "mxf/essence/MxfInterleavedParser.h"

#include <utility>

namespace TamrelMxf {

std::unique_ptr<CEssenceParser> MakeEssenceParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks,
                                                  const SUl& /*operationalPattern*/)
{
    if (tracks.empty() || tracks.front().format.bodySid == 0) return nullptr;
    return std::make_unique<CMxfInterleavedParser>(context, std::move(tracks));
}

} // namespace TamrelMxf
