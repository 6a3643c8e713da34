// Whole projects of large recordings: 16 cameras of 8 channels with more and more cuts, and 200 cameras. What counts is
// that time and memory grow with the text that is written and with nothing else: what a byte costs stays what it is.
// Each is built and written inside a process of its own, and by the command from movies on the disk.

#include "bench/Measure.h"
#include "project/Options.h"
#include "project/ProjectRoot.h"
#include "tests/support/MovieBuilder.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace bench;

using namespace zanfcp;
using namespace zanfcp::test;

constexpr int kRounds = 3;
constexpr int kFramesPerCut = 100;

struct Show {
    int cameras;
    int channels;
    int cuts;

    std::string name() const
    {
        return std::to_string(cameras) + " cameras, " + std::to_string(channels) + " channels, " +
               std::to_string(cuts) + " cuts";
    }
    std::string stem() const { return std::to_string(cameras) + "-" + std::to_string(cuts); }
};

/// The recording of a show on the disk: small movies that tell of hours.
std::vector<std::string> writeMovies(const Show& show)
{
    const auto frames = static_cast<std::uint32_t>((show.cuts + 1) * kFramesPerCut);
    const std::uint32_t samples = frames * (48000 / 25);
    MovieTrack picture;
    picture.duration = frames * 1000;
    picture.times = {{frames, 1000}};
    picture.commonSize = 40;
    picture.sampleCount = frames;
    picture.chunks = {{1, frames, 1}};
    MovieTrack sound = soundTrack(soundEntry({.format = "in24", .version = 1, .channels = 1, .sampleSize = 24}));
    sound.duration = samples;
    sound.times = {{samples, 1}};
    sound.commonSize = 3;
    sound.sampleCount = samples;
    sound.chunks = {{1, samples, 1}};

    Movie movie{.duration = frames * (600 / 25), .tracks = {picture}, .frames = 90000};
    movie.tracks.insert(movie.tracks.end(), static_cast<std::size_t>(show.channels), sound);
    movie.tracks.push_back(timecodeTrack({.extensions = sourceReference("A001")}));
    const Bytes bytes = movieFile(movie);

    std::vector<std::string> paths;
    std::filesystem::create_directory(scratchFile(show.stem()));
    for (int i = 0; i < show.cameras; ++i) {
        paths.push_back(scratchFile(show.stem() + "/CAM_" + std::to_string(i) + ".mov"));
        std::ofstream out{paths.back(), std::ios::binary};
        out.write(bytes.str().data(), static_cast<std::streamsize>(bytes.size()));
        if (!out.flush()) fail("could not write " + paths.back());
    }
    return paths;
}

std::string label(int frames)
{
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d:%02d", frames / 90000, frames / 1500 % 60, frames / 25 % 60,
                  frames % 25);
    return text;
}

struct Cut {
    int angle;
    std::string start, end;
};

std::vector<Cut> cutsOf(const Show& show)
{
    std::vector<Cut> cuts;
    for (int i = 0; i < show.cuts; ++i)
        cuts.push_back({i % show.cameras, label(i * kFramesPerCut), label((i + 1) * kFramesPerCut)});
    return cuts;
}

std::string writeCuts(const Show& show)
{
    const std::string path = scratchFile(show.stem() + "/cuts.json");
    std::ofstream out{path};
    const char* separator = "[\n";
    for (const Cut& cut : cutsOf(show)) {
        out << std::exchange(separator, ",\n") << R"({"type": "cut", "activeAngleIndex": )" << cut.angle
            << R"(, "start": ")" << cut.start << R"(", "end": ")" << cut.end << "\"}";
    }
    out << "\n]\n";
    if (!out.flush()) fail("could not write " + path);
    return path;
}

PELDictionary optionsOf(const Show& show)
{
    PELArray cuts;
    for (const Cut& cut : cutsOf(show))
        cuts.push_back(PELDictionary{{PELCutType, PELCutTypeCut},
                                     {PELCutActiveAngleIndex, cut.angle},
                                     {PELCutStartTimecode, cut.start},
                                     {PELCutEndTimecode, cut.end}});
    return {{PELProjectAddSequence, true}, {PELCuts, std::move(cuts)}};
}

/// In milliseconds, and in bytes above what the process had before.
struct Steps {
    double build, write, text, free;
    double bytes; ///< of the text
    double peakOfWriting, peakOfText;
};

double peakBytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

Steps measure(const Show& show, const std::vector<std::string>& movies)
{
    std::vector<FileURL> urls;
    for (const std::string& movie : movies)
        urls.push_back(FileURL::fileURLWithPath(movie));
    const PELDictionary options = optionsOf(show);
    const PELFileElements files = PELFileElement::fileElementsWithURLs(urls, options);
    if (files.size() != movies.size()) fail("the movies of a show could not be read");
    Steps steps{};
    const double before = peakBytes();
    std::shared_ptr<PELRootElement> root;
    steps.build = 1e3 * seconds([&] {
                      if (Convenience::rootElementForProject(&root, files, options) != 0)
                          fail("the show could not be built");
                  });
    steps.write = 1e3 * seconds([&] {
                      root->writeXML([&steps](std::string_view block) {
                          steps.bytes += static_cast<double>(block.size());
                          return true;
                      });
                  });
    steps.peakOfWriting = peakBytes() - before;
    std::string text;
    steps.text = 1e3 * seconds([&] { text = root->XMLDescription(); });
    steps.peakOfText = peakBytes() - before;
    if (static_cast<double>(text.size()) != steps.bytes) fail("the text was written in two ways");
    text = {};
    steps.free = 1e3 * seconds([&] { root.reset(); });
    return steps;
}

Steps measureApart(const Show& show, const std::vector<std::string>& movies)
{
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) fail("pipe");
    const pid_t child = fork();
    if (child < 0) fail("fork");
    if (child == 0) {
        const Steps steps = measure(show, movies);
        _exit(::write(pipe[1], &steps, sizeof steps) == sizeof steps ? 0 : 1);
    }
    ::close(pipe[1]);
    Steps steps{};
    const bool isRead = ::read(pipe[0], &steps, sizeof steps) == sizeof steps;
    ::close(pipe[0]);
    waitpid(child, nullptr, 0);
    if (!isRead) fail("a show could not be measured");
    return steps;
}

/// As many bytes into a file, flushed to the disk as the command does.
void writePlain(const std::string& path, std::uintmax_t bytes)
{
    const std::string block(std::size_t{64} << 10, 'x');
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    bool isWritten = file >= 0;
    for (std::uintmax_t count = 0; isWritten && bytes > 0; bytes -= count) {
        count = std::min<std::uintmax_t>(bytes, block.size());
        isWritten = ::write(file, block.data(), count) == static_cast<ssize_t>(count);
    }
    if (!isWritten || ::fsync(file) != 0 || ::close(file) != 0) fail("could not write " + path);
}

struct Measured {
    Show show;
    std::vector<std::string> movies, command;
    std::vector<Steps> steps = {};
    std::vector<ProgramRun> runs = {};
    double documentBytes = 0;

    template <typename Record, typename Field>
    static double median(const std::vector<Record>& rounds, Field Record::*field)
    {
        std::vector<double> values;
        for (const Record& round : rounds)
            values.push_back(round.*field);
        return bench::median(std::move(values));
    }
    double step(double Steps::*field) const { return median(steps, field); }
    double run(double ProgramRun::*field) const { return median(runs, field); }

    double buildAndWrite() const { return 1e6 * (step(&Steps::build) + step(&Steps::write)) / step(&Steps::bytes); }
    double memory() const { return step(&Steps::peakOfWriting) / step(&Steps::bytes); }
    double commandTime() const { return 1e9 * run(&ProgramRun::cpuSeconds) / documentBytes; }
    double commandMemory() const { return 1048576 * run(&ProgramRun::peakMegabytes) / documentBytes; }
};

void printSteps(const std::vector<Measured>& all)
{
    std::printf(
        "In process, the movies read before: milliseconds. Written: to a sink that keeps nothing; text: the same "
        "in one piece.\nMemory counts from before building; that of the text holds the tree as well.\n\n");
    std::printf("%-36s %9s %11s %11s %8s %8s %8s %8s %8s\n", "", "ns a byte", "peak / text", "with text", "build",
                "write", "text", "free", "text MB");
    for (const Measured& each : all)
        std::printf("%-36s %9.2f %11.2f %11.2f %8.1f %8.1f %8.1f %8.1f %8.1f\n", each.show.name().c_str(),
                    each.buildAndWrite(), each.memory(), each.step(&Steps::peakOfText) / each.step(&Steps::bytes),
                    each.step(&Steps::build), each.step(&Steps::write), each.step(&Steps::text),
                    each.step(&Steps::free), each.step(&Steps::bytes) / 1e6);
}

void printRuns(const std::vector<Measured>& all, const std::vector<Contestant>& contestants)
{
    std::printf("\nzanfcp build -o, a whole process: ns of processor time a byte; seconds until the document is on the "
                "disk, beside\nwriting and flushing as many bytes that are at hand.\n\n");
    std::printf("%-36s %9s %11s %11s %8s %8s %8s %8s\n", "", "ns a byte", "peak / text", "x plain", "seconds",
                "plain s", "peak MB", "text MB");
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Measured& each = all[i];
        const double time = contestants[2 * i].median(), plain = contestants[2 * i + 1].median();
        std::printf("%-36s %9.2f %11.2f %11.2f %8.2f %8.2f %8.1f %8.1f\n", each.show.name().c_str(), each.commandTime(),
                    each.commandMemory(), time / plain, time, plain, each.run(&ProgramRun::peakMegabytes),
                    each.documentBytes / 1e6);
    }
}

} // namespace

int main()
{
    needRoom(1.0);
    std::vector<Measured> all;
    for (const Show& show : {Show{16, 8, 500}, Show{16, 8, 1000}, Show{16, 8, 2000}, Show{200, 8, 10}}) {
        Measured each{.show = show, .movies = writeMovies(show), .command = {ZANFCP_PROGRAM, "build", "-q"}};
        each.command.insert(each.command.end(), each.movies.begin(), each.movies.end());
        const std::string output = scratchFile("show.xml");
        each.command.insert(each.command.end(), {"--sequence", "--cuts", writeCuts(show), "-o", output});
        all.push_back(std::move(each));
    }

    std::vector<Contestant> contestants;
    for (Measured& each : all) {
        contestants.push_back({each.show.name(), [&each] {
                                   each.runs.push_back(runProgram(each.command));
                                   each.documentBytes =
                                       static_cast<double>(std::filesystem::file_size(each.command.back()));
                                   std::filesystem::remove(each.command.back());
                                   return each.runs.back().seconds;
                               }});
        contestants.push_back({"plain", [&each] {
                                   const std::string path = scratchFile("plain");
                                   const double time = seconds(
                                       [&] { writePlain(path, static_cast<std::uintmax_t>(each.documentBytes)); });
                                   std::filesystem::remove(path);
                                   return time;
                               }});
    }
    race(contestants, kRounds);
    for (int round = 0; round < kRounds; ++round)
        for (Measured& each : all)
            each.steps.push_back(measureApart(each.show, each.movies));

    printSteps(all);
    printRuns(all, contestants);
    const Measured& small = all[0];
    const Measured& large = all[2];
    const Measured& wide = all[3];
    struct Growth {
        const char* what;
        double (Measured::*figure)() const;
    };
    for (const Growth& growth : {Growth{"built and written in process, time a byte", &Measured::buildAndWrite},
                                 Growth{"built in process, memory a byte", &Measured::memory},
                                 Growth{"zanfcp build -o, processor time a byte", &Measured::commandTime},
                                 Growth{"zanfcp build -o, memory a byte", &Measured::commandMemory}}) {
        const double first = (small.*growth.figure)();
        atMost(std::string(growth.what) + ", 2,000 cuts over 500", 1.1, (large.*growth.figure)() / first);
        // Reading 200 movies is in no byte of the text.
        atMost(std::string(growth.what) + ", 200 cameras over 500 cuts of 16", 1.25, (wide.*growth.figure)() / first);
    }
}
