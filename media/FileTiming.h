#pragma once

#include "../platform/Integers.h"
#include "PELFileElement.h"

#include <cstdint>
#include <memory>

/// What the builders share about files in time. Not installed: the public functions are in PELFileElement.h.
namespace zanfcp {

/// Frame numbers come out of files, so their sums may leave 64 bits; they wrap, as two's complement does.
constexpr NSInteger wrappingSum(NSInteger a, NSInteger b)
{
    return static_cast<NSInteger>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}
constexpr NSInteger wrappingDifference(NSInteger a, NSInteger b)
{
    return static_cast<NSInteger>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

/// The properties of `file`; all zero for an absent file. Valid as long as the file, and not changed meanwhile.
const PELMovieProperties& movieProperties(const std::shared_ptr<PELFileElement>& file);

/// The file at `index`; absent when the list has no such index.
std::shared_ptr<PELFileElement> fileAtIndex(const PELFileElements& files, NSInteger index);

/// Frames since midnight of the file's first frame; 0 for an absent file.
inline NSInteger startFrame(const std::shared_ptr<PELFileElement>& file)
{
    return static_cast<NSInteger>(movieProperties(file).timecode.frames);
}

} // namespace zanfcp
