#include "mxf/stream/StreamDelivery.h"

#include "mxf/Status.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/Klv.h"

#include <cstddef>

namespace TamrelMxf {

void SStreamDelivery::ImportIndex(std::span<const std::uint8_t> bytes)
{
    CKlv klv;
    while (klv.View(bytes) == kSuccess && klv.TotalSize() > 0) {
        if (klv.Key().MatchesAnyVersion(Keys::kIndexTableSegment)) (void)index.ImportSegment(klv);
        bytes = bytes.subspan(static_cast<std::size_t>(klv.TotalSize()));
    }
}

} // namespace TamrelMxf
