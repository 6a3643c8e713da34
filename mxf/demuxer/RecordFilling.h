#pragma once

#include "../metadata/Identifiers.h"
#include "../model/HeaderModel.h"
#include "../model/StreamFormat.h"
#include "Records.h"

#include <cstdint>

/// From the header model to the records of the flat interface. Each record is filled whole.
namespace TamrelMxf {

/// \param withExtraData  the record points into `format`, which must live as long
void FillRecord(mxf_stream_format& record, const SStreamFormat& format, std::int64_t startOffset, bool withExtraData);
void FillRecord(mxf_identification& record, const SIdentification& identification);
void FillRecord(mxf_top_pack& record, const CMxfPackage& package);

/// The width of the stored picture, less what a coder that works on blocks of 16 pixels adds at its right: 2000 is
/// 1998.
std::uint32_t WidthWithoutPadding(const SStreamFormat& format);
/// The lines of the stored picture, less what a coder that works on blocks of 16 lines adds below: 1088 is 1080, 544
/// is 540. Other lines that are stored and not shown, such as the 32 above the picture of D-10, are the file's own.
std::uint32_t HeightWithoutPadding(const SStreamFormat& format);

} // namespace TamrelMxf
