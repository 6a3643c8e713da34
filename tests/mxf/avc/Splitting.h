#pragma once

#include "mxf/avc/AccessUnitSplitter.h"
#include "tests/mxf/avc/BitStream.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace zanfcp::test {

/// Where the units of a stream begin that is pushed `step` bytes at a time.
inline std::vector<std::uint64_t> unitStarts(const ByteRow& stream, TamrelMxf::CAccessUnitSplitter::EUnit unit,
                                             std::size_t step)
{
    TamrelMxf::CAccessUnitSplitter splitter{unit};
    std::vector<std::uint64_t> all;
    for (std::size_t at = 0; at < stream.size(); at += step) {
        const auto found = splitter.Push(std::span{stream}.subspan(at, std::min(step, stream.size() - at)));
        all.insert(all.end(), found.begin(), found.end());
    }
    const auto found = splitter.Finish();
    all.insert(all.end(), found.begin(), found.end());
    return all;
}

} // namespace zanfcp::test
