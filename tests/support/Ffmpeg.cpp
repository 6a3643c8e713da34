#include "tests/support/Ffmpeg.h"

#include "platform/ChildProcess.h"

#include <sstream>
#include <stdexcept>

namespace zanfcp::test {
namespace {

std::string run(const std::string& program, std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"-hide_banner", "-v", "error"});
    const auto child = runChildProcess(program, arguments);
    if (!child) throw std::runtime_error(program + ": " + child.error().text());
    if (child->exitStatus != 0) throw std::runtime_error(program + ": " + child->standardError);
    return child->standardOutput;
}

} // namespace

void runFfmpeg(const std::vector<std::string>& arguments)
{
    std::vector<std::string> all{"-nostdin", "-y"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    run("/usr/bin/ffmpeg", all);
}

std::map<std::string, std::string> probe(const std::string& path)
{
    std::map<std::string, std::string> values;
    std::istringstream lines{run("/usr/bin/ffprobe", {"-show_streams", "-show_format", "-of", "flat", path})};
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find('=');
        std::string value = line.substr(equals + 1);
        if (value.size() >= 2 && value.front() == '"') value = value.substr(1, value.size() - 2);
        values[line.substr(0, equals)] = value;
    }
    return values;
}

} // namespace zanfcp::test
