#include "mxf/avc/AccessUnitSplitter.h"
#include "mxf/avc/AvcAnalyser.h"
#include "mxf/avc/AvcConfiguration.h"
#include "mxf/avc/PresentationOrder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

namespace {

using namespace TamrelMxf;
using CBytes = std::span<const std::uint8_t>;

void check(bool holds)
{
    if (!holds) std::abort();
}

std::vector<std::uint64_t> split(CBytes stream, CAccessUnitSplitter::EUnit unit, std::size_t step)
{
    CAccessUnitSplitter splitter{unit};
    std::vector<std::uint64_t> all;
    for (std::size_t at = 0; at < stream.size(); at += step) {
        const auto found = splitter.Push(stream.subspan(at, std::min(step, stream.size() - at)));
        all.insert(all.end(), found.begin(), found.end());
    }
    const auto found = splitter.Finish();
    all.insert(all.end(), found.begin(), found.end());
    return all;
}

/// Every unit gets a place of its own, the same while reading on as with hindsight unless some came late.
void order(const std::vector<SAvcPicture>& pictures)
{
    CPresentationOrder online;
    std::vector<std::int64_t> placed;
    for (const SAvcPicture& picture : pictures) {
        online.Push(picture);
        while (const auto times = online.Pop())
            placed.push_back(times->pts);
    }
    online.Flush();
    while (const auto times = online.Pop())
        placed.push_back(times->pts);
    const std::vector<std::int64_t> shown = PresentationIndexes(pictures);
    const bool isClean = online.LateUnits() == 0 && std::ranges::none_of(pictures, &SAvcPicture::isDamaged);
    check(placed.size() == pictures.size() && (!isClean || placed == shown));
    std::ranges::sort(placed);
    for (std::size_t i = 0; i < placed.size(); ++i)
        check(placed[i] == static_cast<std::int64_t>(i));
}

void analyse(CBytes stream, CAvcAnalyser::EScan scan, const std::vector<std::uint64_t>& starts, CBytes extraData)
{
    CAvcAnalyser analyser{scan};
    (void)analyser.SetExtraData(extraData);
    std::vector<SAvcPicture> pictures(starts.size());
    for (std::size_t i = 0; i < starts.size(); ++i) {
        const std::uint64_t end = i + 1 < starts.size() ? starts[i + 1] : stream.size();
        const int status = analyser.Analyse(stream.subspan(starts[i], end - starts[i]), pictures[i]);
        check((status != 0) == pictures[i].isDamaged);
    }
    order(pictures);
    const auto format = analyser.Format();
    if (!format) return;
    check(format->displayX + format->displayWidth <= format->codedWidth);
    check(format->displayY + format->displayHeight <= format->codedHeight);
    for (const CBytes form : {CBytes{format->annexB}, CBytes{format->configuration}}) {
        CAvcParameterSets again;
        unsigned lengthSize = 0;
        check(ReadAvcExtraData(form, again, lengthSize) == 0);
    }
}

} // namespace

/// The first byte chooses how the stream is cut into pieces and where extra data ends that stands in front of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const CBytes stream{data + 1, size - 1};
    const CBytes extraData = stream.first(std::min<std::size_t>(data[0], stream.size()));
    for (const auto unit : {CAccessUnitSplitter::EUnit::picture, CAccessUnitSplitter::EUnit::frame}) {
        const auto starts = split(stream, unit, stream.size() + 1);
        check(starts == split(stream, unit, data[0] % 16 + 1U));
        check(std::ranges::is_sorted(starts));
        if (!starts.empty()) check(starts.front() == 0);
        for (const auto scan : {CAvcAnalyser::EScan::firstSlices, CAvcAnalyser::EScan::allSlices})
            analyse(stream, scan, starts, extraData);
    }
    return 0;
}
