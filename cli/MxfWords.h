#pragma once

#include "mxf/klv/PartitionPack.h"
#include "mxf/labels/UlDict.h"
#include "mxf/model/Codings.h"
#include "mxf/model/Links.h"
#include "mxf/model/StreamFormat.h"
#include "mxf/model/Timing.h"

#include <cstdint>
#include <string>
#include <string_view>

/// What the terms of MXF are called for a person.
namespace zanfcp::cli {

/// The registered labels. Made at the first call.
const TamrelMxf::CMxfUlDict& labelDictionary();
/// The name of a label: of an essence container or coding in full, else as registered. Empty for an unknown one.
std::string_view labelName(const TamrelMxf::SUl& label);

/// What a stream is coded with, in short: "MPEG-2 422P@HL", "AVC", "PCM". Empty when the file does not say.
std::string codecName(const TamrelMxf::SStreamFormat& format);
/// The same of the last picture stream in a file, with its four-character code: "AVC (avc1)". Empty when the file
/// cannot be read or has no picture.
std::string pictureCodecOfFile(const std::string& path);

/// A four-character code, first character in the top byte, as a text; empty for 0.
std::string codeText(std::uint32_t code);

std::string_view word(TamrelMxf::EPartitionKind kind);
/// "closed complete"; empty for a value that the standard does not define.
std::string_view word(TamrelMxf::EPartitionStatus status);
std::string_view word(TamrelMxf::EDataKind kind);
std::string_view word(TamrelMxf::EEssenceKind kind);
std::string_view word(TamrelMxf::EWrapping wrapping);
std::string_view word(TamrelMxf::EMuxingMode mode);
std::string_view word(TamrelMxf::SDuration::ESource source);
std::string_view word(TamrelMxf::SStartTimecode::ESource source);
std::string_view word(TamrelMxf::CMxfClip::EKind kind);
std::string_view word(TamrelMxf::CMxfTrack::EKind kind);
std::string_view word(TamrelMxf::CMxfPackage::EKind kind);

} // namespace zanfcp::cli
