#pragma once

#include "tests/support/TempFolder.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zanfcp::test {

/// What one run of a program left behind.
struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs the program with these arguments; fails the test when it cannot be started.
Outcome zanfcp(const std::vector<std::string>& arguments);
/// Runs a line of the shell, in which $ZANFCP is the program. For redirections, and for other programs.
Outcome shell(const std::string& line, std::string_view interpreter = "/bin/sh");

/// The path of a file of the sample recording.
std::string sample(std::string_view name);
/// Its three cameras and its sound recorder.
std::vector<std::string> sampleFiles();
/// `first` with `more` behind it.
std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& more);

/// A movie of 1920x1080 with a timecode track.
struct Camera {
    std::uint32_t start = 90000; ///< frames since midnight
    std::uint32_t frames = 100;  ///< length
    std::uint8_t timebase = 25;  ///< labels a second
    bool ntsc = false;           ///< 1000/1001 of it, drop-frame
    bool hasTimecode = true;
    bool hasVideo = true;
    bool hasSound = false;
};
/// Writes one and returns its path.
std::string writeCamera(const TempFolder& folder, std::string_view name, const Camera& camera);

/// The names of all that lies in a folder.
std::vector<std::string> namesIn(const TempFolder& folder);

} // namespace zanfcp::test
