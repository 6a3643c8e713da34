#pragma once

#include "tests/mxf/avc/BitStream.h"
#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

/// Streams of an independent encoder, and what an independent analyser says of them.
namespace zanfcp::test {

inline ByteRow bytesOf(const std::string& path)
{
    const std::string text = readFile(path);
    return {text.begin(), text.end()};
}

inline void run(const std::string& command)
{
    if (std::system(command.c_str()) != 0) throw std::runtime_error(command);
}

inline void runFfmpeg(const std::string& arguments)
{
    run("/usr/bin/ffmpeg -nostdin -v error -y " + arguments);
}

/// One map of keys and values for each frame, packet or stream that ffprobe shows, in its order.
inline std::vector<std::map<std::string, std::string>> probed(const TempFolder& folder, const std::string& what,
                                                              const std::string& path)
{
    const std::string answer = folder.file("answer");
    run("/usr/bin/ffprobe -v error -of compact=nk=0:p=0 -show_" + what + " " + path + " >" + answer);
    std::vector<std::map<std::string, std::string>> all;
    std::istringstream lines{readFile(answer)};
    for (std::string line; std::getline(lines, line);) {
        if (line.empty()) continue;
        std::istringstream fields{line};
        auto& values = all.emplace_back();
        for (std::string field; std::getline(fields, field, '|');)
            if (const std::size_t equals = field.find('='); equals != std::string::npos)
                values[field.substr(0, equals)] = field.substr(equals + 1);
    }
    return all;
}

} // namespace zanfcp::test
