#pragma once

#include "media/PELMovieProperties.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zanfcp::cli {

/// One media file of the command line, and what was read from it.
struct InspectedFile {
    std::string path;              ///< as it was given
    FileURL url;                   ///< the same, absolute
    std::int32_t status = 0;       ///< 0, or -38 when it could not be read
    std::string problem;           ///< then why, for a person
    PELMovieProperties properties; ///< then all zero
    std::string codec;             ///< of the picture, with its code, as the file names it; empty without picture
};

/// Why a file cannot even be tried: it is not there, no regular file, or not readable. Empty when it can.
std::string obstacle(const std::string& path);

/// Reads one file. Only regular files are opened. Selects the rate of the file process-wide.
/// \param options  as for PELGetPropertiesOfMovieAtURL
InspectedFile inspectFile(const std::string& path, const PELDictionary& options);

/// One line of JSON without a line end: "schemaVersion", "path", "status", "codec", then the fields of the record by
/// their names. "videoCodec" of an MXF file is always of the XDCAM family; "codec" is what it really holds. Codes and
/// enumerations are texts; "vendorCode" is null where the file names none.
std::string inspectionJson(const InspectedFile& file);
/// Raised when a key of inspectionJson changes its name, its type or its meaning; new keys do not count.
inline constexpr int kInspectionSchema = 1;

/// What is odd about a file that could be read, one line each.
std::vector<std::string> fileWarnings(const InspectedFile& file);

/// The picture size as it is shown: "1920x1080"; empty without picture.
std::string sizeText(const PELMovieProperties& properties);
/// The start timecode as it is shown; "none" where there is none.
std::string startText(const PELMovieProperties& properties);
/// The length as a label; empty for 0.
std::string lengthText(const PELMovieProperties& properties);
/// The text of a zero-terminated field.
template <std::size_t N> std::string fieldText(const std::array<char, N>& field)
{
    return std::string(field.data(), std::find(field.begin(), field.end(), '\0'));
}

} // namespace zanfcp::cli
