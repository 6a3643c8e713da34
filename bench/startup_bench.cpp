// `zanfcp inspect` as a whole process: one small file beside other programs that tell about media files, and a thousand
// files in one call. Programs run in turn in each round; medians are shown.

#include "bench/Measure.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace bench;

constexpr int kRounds = 60;
constexpr int kFiles = 1000;

/// The shared libraries that the loader maps for a program.
std::set<std::string> librariesOf(const std::string& program)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> list{
        ::popen(("LD_TRACE_LOADED_OBJECTS=1 '" + program + "'").c_str(), "r"), ::pclose};
    std::set<std::string> libraries;
    char line[4096];
    while (list && std::fgets(line, sizeof line, list.get()) != nullptr) {
        std::istringstream words{line};
        std::string name;
        words >> name;
        if (!name.starts_with("linux-vdso")) libraries.insert(name);
    }
    if (libraries.empty()) fail("the loader lists no libraries");
    return libraries;
}

void oneFile()
{
    const auto libraries = librariesOf(ZANFCP_PROGRAM);
    if (libraries != librariesOf(FLOOR_PROGRAM)) fail("the empty program does not link what the command links");
    const std::string file = SAMPLE;
    const auto program = [](const char* name, std::vector<std::string> command) {
        return Contestant{name, [command = std::move(command)] { return 1000 * runProgram(command).seconds; }};
    };
    std::vector<Contestant> contestants{
        program("zanfcp inspect", {ZANFCP_PROGRAM, "inspect", file}),
        program("an empty program with its libraries", {FLOOR_PROGRAM}),
        program("ffprobe", {"ffprobe", "-v", "error", "-show_format", "-show_streams", file}),
        program("mediainfo", {"mediainfo", file}),
        program("exiftool", {"exiftool", file}),
    };
    race(contestants, kRounds);
    const auto time = [&](std::size_t i) { return contestants[i].median(); };
    std::printf("Whole processes on one small file: samples/CAM_A.mov, %zu bytes.\n\n%-38s %16s %10s\n",
                static_cast<std::size_t>(std::filesystem::file_size(file)), "", "its time / ours", "ms");
    for (const Contestant& contestant : contestants)
        std::printf("%-38s %16.2f %10.2f\n", contestant.name.c_str(), contestant.median() / time(0),
                    contestant.median());
    std::printf("shared libraries that the command loads, the loader among them: %zu\n", libraries.size());
    atMost("zanfcp inspect of one file, times an empty program with its libraries", 2, time(0) / time(1));
    atLeast("zanfcp inspect of one file, times as fast as ffprobe", 25, time(2) / time(0));
    atLeast("zanfcp inspect of one file, times as fast as mediainfo", 8, time(3) / time(0));
}

/// System calls of a command, all its threads, as strace counts them.
double systemCalls(const std::vector<std::string>& command, const std::string& report)
{
    std::vector<std::string> traced{"strace", "-f", "-c", "-o", report};
    traced.insert(traced.end(), command.begin(), command.end());
    runProgram(traced);
    std::ifstream in{report};
    for (std::string line; std::getline(in, line);) {
        if (!line.ends_with("total")) continue;
        std::istringstream fields{line}; // share, seconds, usecs/call, calls
        double calls = 0;
        for (int i = 0; i < 4; ++i)
            fields >> calls;
        return calls;
    }
    fail("strace counted nothing");
}

void manyFiles()
{
    std::vector<std::string> command{ZANFCP_PROGRAM, "inspect"};
    const std::vector<std::string> alone{ZANFCP_PROGRAM, "inspect", SAMPLE};
    for (int i = 0; i < kFiles; ++i) {
        const std::string copy = scratchFile("CAM_" + std::to_string(i) + ".mov");
        std::filesystem::copy_file(SAMPLE, copy);
        command.push_back(copy);
    }
    std::vector<Contestant> ways{{"", [&] { return runProgram(command).seconds; }},
                                 {"",
                                  [&] { // what the file system alone asks for: open, read, close
                                      return seconds([&] {
                                          for (std::size_t i = 2; i < command.size(); ++i) {
                                              char block[4096];
                                              const int file = ::open(command[i].c_str(), O_RDONLY);
                                              if (file < 0 || ::pread(file, block, sizeof block, 0) <= 0)
                                                  fail("could not read " + command[i]);
                                              ::close(file);
                                          }
                                      });
                                  }},
                                 {"", [&] { return runProgram(alone).seconds; }}};
    race(ways, 15);
    const std::string report = scratchFile("strace.txt");
    const double calls = (systemCalls(command, report) - systemCalls(alone, report)) / (kFiles - 1);
    const double all = ways[0].median(), reading = ways[1].median(), one = ways[2].median();
    std::printf(
        "\n%d files in one call: %.0f files a second, %.1f system calls a file; %.1f us a file beyond starting\n"
        "opening, reading one block and closing alone: %.0f files a second, %.1f us a file\n",
        kFiles, kFiles / all, calls, 1e6 * (all - one) / (kFiles - 1), kFiles / reading, 1e6 * reading / kFiles);
    atLeast("a thousand files in one call, of the rate of only opening, reading and closing", 0.5, reading / all);
}

} // namespace

int main()
{
    needRoom(0.1);
    oneFile();
    manyFiles();
}
