#pragma once

#include <map>
#include <string>
#include <vector>

namespace zanfcp::test {

/// Runs ffmpeg, quietly and over existing files; throws with its messages when it fails.
void runFfmpeg(const std::vector<std::string>& arguments);

/// What ffprobe says of a file: "streams.stream.0.codec_tag_string" to "avc1", "format.duration" to "1.000000".
/// Throws when it cannot read the file.
std::map<std::string, std::string> probe(const std::string& path);

} // namespace zanfcp::test
