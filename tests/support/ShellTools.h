#pragma once

#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <string>

namespace zanfcp::test {

/// Runs a command of the shell quietly. \return true when it ended well
inline bool succeeds(const std::string& command)
{
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

/// What ffprobe answers, up to the first comma; "failed" when it does not.
inline std::string askFfprobe(const TempFolder& folder, const std::string& question, const std::string& path)
{
    const std::string file = folder.file("answer");
    if (std::system(("ffprobe -v error -of csv=p=0 " + question + " " + path + " >" + file).c_str()) != 0)
        return "failed";
    const std::string text = readFile(file);
    return text.substr(0, text.find_first_of(",\n"));
}

} // namespace zanfcp::test
