// Whole projects of large recordings: 16 cameras of 8 channels with more and more cuts, and 200 cameras. Each is built
// and written in a process of its own, which tells its peak memory. What counts is that time and memory grow with the
// text that is written and with nothing else: the last two columns stay what they are.

#include "bench/Measure.h"
#include "project/Options.h"
#include "project/ProjectRoot.h"
#include "tests/support/Recording.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace bench;

using namespace zanfcp;
using namespace zanfcp::test;

constexpr int kRounds = 5;
constexpr int kFramesPerCut = 100;

struct Show {
    int cameras;
    int channels;
    int cuts;
};

struct Figures {
    double build; // milliseconds
    double write;
    double peak; // bytes above what the process had before
    double text; // bytes
};

double peakBytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

PELFileElements recording(const Show& show)
{
    PELFileElements files;
    const NSInteger duration = NSInteger{show.cuts + 1} * kFramesPerCut;
    for (int i = 0; i < show.cameras; ++i)
        files.push_back(makeFile("CAM_" + std::to_string(i) + ".mov",
                                 cameraMovie("01:00:00:00", duration, static_cast<std::uint64_t>(show.channels))));
    PELFileElement::calculateOffsetsForFiles(files);
    PELFileElement::calculateMediaDelaysForFiles(files);
    return files;
}

std::string label(int frames)
{
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d:%02d", frames / 90000, frames / 1500 % 60, frames / 25 % 60,
                  frames % 25);
    return text;
}

PELDictionary optionsOf(const Show& show)
{
    PELArray cuts;
    for (int i = 0; i < show.cuts; ++i)
        cuts.push_back(PELDictionary{{PELCutType, PELCutTypeCut},
                                     {PELCutActiveAngleIndex, i % show.cameras},
                                     {PELCutStartTimecode, label(i * kFramesPerCut)},
                                     {PELCutEndTimecode, label((i + 1) * kFramesPerCut)}});
    return {{PELProjectAddSequence, true}, {PELCuts, std::move(cuts)}};
}

Figures measure(const Show& show)
{
    using Clock = std::chrono::steady_clock;
    const auto milliseconds = [](Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); };
    const PELDictionary options = optionsOf(show);
    const double before = peakBytes();
    const auto start = Clock::now();
    std::shared_ptr<PELRootElement> root;
    if (Convenience::rootElementForProject(&root, recording(show), options) != 0) fail("the show could not be built");
    const auto built = Clock::now();
    const std::string text = root->XMLDescription();
    const auto written = Clock::now();
    return {milliseconds(built - start), milliseconds(written - built), peakBytes() - before,
            static_cast<double>(text.size())};
}

Figures measureApart(const Show& show)
{
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) fail("pipe");
    const pid_t child = fork();
    if (child < 0) fail("fork");
    if (child == 0) {
        const Figures figures = measure(show);
        _exit(::write(pipe[1], &figures, sizeof figures) == sizeof figures ? 0 : 1);
    }
    ::close(pipe[1]);
    Figures figures{};
    const bool isRead = ::read(pipe[0], &figures, sizeof figures) == sizeof figures;
    ::close(pipe[0]);
    waitpid(child, nullptr, 0);
    if (!isRead) fail("a show could not be measured");
    return figures;
}

double median(const std::vector<Figures>& rounds, double Figures::*figure)
{
    std::vector<double> values;
    for (const Figures& round : rounds)
        values.push_back(round.*figure);
    return bench::median(std::move(values));
}

} // namespace

int main()
{
    std::printf("%-44s %9s %9s %9s %10s %10s %12s\n", "", "build ms", "write ms", "text MB", "peak MB", "ns/byte",
                "peak/text");
    for (const Show& show : {Show{16, 8, 500}, Show{16, 8, 1000}, Show{16, 8, 2000}, Show{200, 8, 10}}) {
        std::vector<Figures> rounds;
        for (int i = 0; i < kRounds; ++i)
            rounds.push_back(measureApart(show));
        const double build = median(rounds, &Figures::build);
        const double write = median(rounds, &Figures::write);
        const double peak = median(rounds, &Figures::peak);
        const double text = median(rounds, &Figures::text);
        const std::string name = std::to_string(show.cameras) + " cameras of " + std::to_string(show.channels) +
                                 " channels, " + std::to_string(show.cuts) + " cuts";
        std::printf("%-44s %9.1f %9.1f %9.1f %10.1f %10.2f %12.2f\n", name.c_str(), build, write, text / 1e6,
                    peak / 1e6, (build + write) * 1e6 / text, peak / text);
    }
}
