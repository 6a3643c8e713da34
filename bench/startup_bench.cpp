// `zanfcp inspect` as a whole process: one small file beside other programs that tell about media files, and a thousand
// files in one call. Programs run in turn in each round; medians are shown.

#include "tests/support/TempFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kRounds = 60;
constexpr int kFiles = 1000;

struct Contestant {
    const char* name;
    std::vector<std::string> command;
    std::vector<double> milliseconds = {};
};

[[noreturn]] void fail(const std::string& why)
{
    std::fprintf(stderr, "%s\n", why.c_str());
    std::exit(1);
}

/// Runs a program with nothing to read and its texts thrown away; milliseconds until it has ended.
double run(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    for (const std::string& each : command)
        arguments.push_back(const_cast<char*>(each.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int descriptor : {0, 1, 2})
        posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", O_RDWR, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[0], &files, nullptr, arguments.data(), environ) != 0)
        fail("could not run " + command.front());
    int status = 0;
    waitpid(child, &status, 0);
    const auto end = std::chrono::steady_clock::now();
    posix_spawn_file_actions_destroy(&files);
    if (status != 0) fail(command.front() + " failed");
    return std::chrono::duration<double, std::milli>(end - start).count();
}

double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

void oneFile()
{
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
            const double milliseconds = run(contestant.command);
            if (round > 0) contestant.milliseconds.push_back(milliseconds);
        }
    const double ours = median(contestants.front().milliseconds);
    std::printf("%-38s %10s %16s\n", "one file, a whole process", "ms", "its time / ours");
    for (const Contestant& contestant : contestants) {
        const double theirs = median(contestant.milliseconds);
        std::printf("%-38s %10.2f %16.2f\n", contestant.name, theirs, theirs / ours);
    }
}

/// System calls of a command, all its threads, as strace counts them.
double systemCalls(const std::vector<std::string>& command, const std::string& report)
{
    std::vector<std::string> traced{"strace", "-f", "-c", "-o", report};
    traced.insert(traced.end(), command.begin(), command.end());
    run(traced);
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
    run(command);
    std::vector<double> all;
    std::vector<double> reading;
    for (int round = 0; round < 9; ++round) {
        all.push_back(run(command));
        const auto start = std::chrono::steady_clock::now();
        for (std::size_t i = 2; i < command.size(); ++i) { // what the file system alone asks for: open, read, close
            char block[4096];
            const int file = ::open(command[i].c_str(), O_RDONLY);
            if (file < 0 || ::pread(file, block, sizeof block, 0) <= 0) fail("could not read " + command[i]);
            ::close(file);
        }
        reading.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
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
