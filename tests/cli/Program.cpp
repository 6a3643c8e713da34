#include "tests/cli/Program.h"

#include "platform/ChildProcess.h"
#include "tests/support/MovieBuilder.h"

#include <gtest/gtest.h>

namespace zanfcp::test {
namespace {

Outcome run(const std::string& program, const std::vector<std::string>& arguments)
{
    auto result = runChildProcess(program, arguments);
    if (!result) {
        ADD_FAILURE() << program << ": " << result.error().text();
        return {};
    }
    return {.status = result->exitStatus,
            .out = std::move(result->standardOutput),
            .err = std::move(result->standardError)};
}

} // namespace

Outcome zanfcp(const std::vector<std::string>& arguments)
{
    return run(ZANFCP_PROGRAM, arguments);
}

Outcome shell(const std::string& line, std::string_view interpreter)
{
    return run(std::string(interpreter), {"-c", "ZANFCP='" ZANFCP_PROGRAM "'\n" + line});
}

std::string sample(std::string_view name)
{
    return std::string(ZANFCP_SAMPLES "/") + std::string(name);
}

std::vector<std::string> sampleFiles()
{
    return {sample("CAM_A.mov"), sample("CAM_B.mov"), sample("CAM_C.mov"), sample("SOUND.mov")};
}

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& more)
{
    first.insert(first.end(), more.begin(), more.end());
    return first;
}

std::string writeCamera(const TempFolder& folder, std::string_view name, const Camera& camera)
{
    const std::uint32_t unit = camera.ntsc ? 1001 : 1000;
    const std::uint32_t timescale = camera.timebase * 1000U;
    Movie movie{.timescale = timescale, .duration = camera.frames * unit, .tracks = {}, .frames = camera.start};
    if (camera.hasVideo)
        movie.tracks.push_back({.timescale = timescale,
                                .duration = camera.frames * unit,
                                .times = {{camera.frames, unit}},
                                .commonSize = 40,
                                .sizes = {},
                                .chunks = {{1, camera.frames, 1}}});
    if (camera.hasSound) movie.tracks.push_back(soundTrack());
    if (camera.hasTimecode)
        movie.tracks.push_back(timecodeTrack({.flags = camera.ntsc ? 1U : 0U,
                                              .timescale = timescale,
                                              .frameDuration = unit,
                                              .frameQuanta = camera.timebase}));
    return folder.write(name, movieFile(movie).str());
}

std::vector<std::string> namesIn(const TempFolder& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        names.push_back(entry.path().filename().string());
    return names;
}

} // namespace zanfcp::test
