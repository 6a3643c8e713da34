// `zanfcp inspect` as a whole process: one small file beside other programs that tell about media files, and a thousand
// files in one call. Programs run in turn in each round; medians are shown.

#include "bench/Measure.h"
#include "tests/support/TempFolder.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace bench;

constexpr int kRounds = 60;
constexpr int kFiles = 1000;

struct Contestant {
    const char* name;
    std::vector<std::string> command;
    std::vector<double> milliseconds = {};
};

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
    std::vector<Contestant> contestants{
        {"zanfcp inspect", {ZANFCP_PROGRAM, "inspect", file}},
        {"an empty program with its libraries", {FLOOR_PROGRAM}},
        {"ffprobe", {"ffprobe", "-v", "error", "-show_format", "-show_streams", file}},
        {"mediainfo", {"mediainfo", file}},
        {"exiftool", {"exiftool", file}},
    };
    for (int round = 0; round <= kRounds; ++round)
        for (Contestant& contestant : contestants) {
            const double milliseconds = 1000 * runProgram(contestant.command).seconds;
            if (round > 0) contestant.milliseconds.push_back(milliseconds);
        }
    const double ours = median(contestants.front().milliseconds);
    std::printf("%-38s %10s %16s\n", "one file, a whole process", "ms", "its time / ours");
    for (const Contestant& contestant : contestants) {
        const double theirs = median(contestant.milliseconds);
        std::printf("%-38s %10.2f %16.2f\n", contestant.name, theirs, theirs / ours);
    }
    std::printf("shared libraries that the command loads, the loader among them: %zu\n", libraries.size());
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
    const zanfcp::test::TempFolder folder;
    std::vector<std::string> command{ZANFCP_PROGRAM, "inspect"};
    const std::vector<std::string> alone{ZANFCP_PROGRAM, "inspect", SAMPLE};
    for (int i = 0; i < kFiles; ++i) {
        const std::string copy = folder.file("CAM_" + std::to_string(i) + ".mov");
        std::filesystem::copy_file(SAMPLE, copy);
        command.push_back(copy);
    }
    runProgram(command);
    std::vector<double> all;
    std::vector<double> reading;
    for (int round = 0; round < 9; ++round) {
        all.push_back(1000 * runProgram(command).seconds);
        reading.push_back(1000 * seconds([&] { // what the file system alone asks for: open, read, close
                              for (std::size_t i = 2; i < command.size(); ++i) {
                                  char block[4096];
                                  const int file = ::open(command[i].c_str(), O_RDONLY);
                                  if (file < 0 || ::pread(file, block, sizeof block, 0) <= 0)
                                      fail("could not read " + command[i]);
                                  ::close(file);
                              }
                          }));
    }
    const std::string report = folder.file("strace.txt");
    const double calls = (systemCalls(command, report) - systemCalls(alone, report)) / (kFiles - 1);
    std::printf("\n%d files in one call: %.0f files a second, %.1f system calls a file\n", kFiles,
                kFiles / median(all) * 1000, calls);
    std::printf("opening, reading one block and closing alone: %.0f files a second\n", kFiles / median(reading) * 1000);
}

} // namespace

int main()
{
    oneFile();
    manyFiles();
}
