#pragma once

#include "../labels/Ul.h"
#include "../model/StreamFormat.h"

#include <cstdint>
#include <span>
#include <vector>

/// The sound element of D-10: eight channels of AES3 words side by side, whether they are in use or not (SMPTE ST 331,
/// ST 386).
namespace TamrelMxf::Aes3 {

bool IsEightChannelElement(const SUl& key);

/// Appends the samples of the channels that are in use: little-endian, interleaved, in 16 or 24 bits as the format of
/// the stream says. They are those that the element marks as valid or, where their number is not that of the format,
/// the first ones. A sample that is not there whole for all channels is left out.
void Unpack(std::span<const std::uint8_t> element, const SStreamFormat& format, std::vector<std::uint8_t>& samples);

} // namespace TamrelMxf::Aes3
