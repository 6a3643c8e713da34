#pragma once

#include "ParameterSets.h"

#include <cstdint>
#include <span>
#include <vector>

/// Parameter sets outside the stream: as a byte stream (ITU-T H.264, Annex B), or as an AVC decoder configuration
/// record (ISO/IEC 14496-15, 5.3.3.1).
namespace TamrelMxf {

/// Reads parameter sets of either form; a record begins with its version 1, a byte stream with zeros.
/// \param lengthSize  set to the bytes of each length in the samples, 1, 2 or 4, or to 0 for a byte stream
/// \return 0; -1 neither form, a record of another version, or a set is broken; -9 cut short; -11 no set inside.
///   Sets in front of a fault are kept.
int ReadAvcExtraData(std::span<const std::uint8_t> bytes, CAvcParameterSets& sets, unsigned& lengthSize);

/// All parameter sets, sequences first, each behind 00 00 00 01.
std::vector<std::uint8_t> ToAnnexB(const CAvcParameterSets& sets);

/// The record for samples with 4-byte lengths; profile, level and format are those of the sequence parameter set
/// with the lowest id. At most 31 sequence and 255 picture parameter sets fit; further ones are left out.
/// \return empty when there is no sequence parameter set
std::vector<std::uint8_t> ToAvcConfiguration(const CAvcParameterSets& sets);

} // namespace TamrelMxf
