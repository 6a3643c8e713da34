#include "bench/Measure.h"

#include "tests/support/TempFolder.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {
namespace {

const zanfcp::test::TempFolder& scratch()
{
    static const zanfcp::test::TempFolder folder; // static: removed on every way out
    return folder;
}

/// Three digits at the least, and no more behind the point than they need.
std::string text(double number)
{
    const int decimals = std::abs(number) >= 100 ? 0 : std::abs(number) >= 10 ? 1 : 2;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, number);
    return buffer;
}

/// What was promised so far. Printed in one piece below the tables when the program ends.
class Promises {
public:
    Promises() = default;
    ~Promises()
    {
        if (!lines_.empty()) std::printf("\n%s", lines_.c_str());
    }
    Promises(const Promises&) = delete;
    Promises& operator=(const Promises&) = delete;

    void add(std::string_view what, const char* bound, double wanted, double measured, bool isMet)
    {
        char limit[64];
        std::snprintf(limit, sizeof limit, "%s %g", bound, wanted);
        char line[256];
        std::snprintf(line, sizeof line, "%-7s %-82.*s %-15s %10s\n", isMet ? "met" : "missed",
                      static_cast<int>(what.size()), what.data(), limit, text(measured).c_str());
        lines_ += line;
    }

private:
    std::string lines_;
};

Promises& promises()
{
    static Promises instance;
    return instance;
}

double secondsOf(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

} // namespace

void fail(const std::string& why)
{
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n", why.c_str());
    std::exit(1);
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void race(std::vector<Contestant>& contestants, int rounds)
{
    for (Contestant& contestant : contestants)
        (void)contestant.run();
    std::vector<Contestant*> order;
    for (Contestant& contestant : contestants)
        order.push_back(&contestant);
    for (int round = 0; round < rounds; ++round) {
        std::reverse(order.begin(), order.end());
        for (Contestant* contestant : order)
            contestant->figures.push_back(contestant->run());
    }
}

void atLeast(std::string_view what, double wanted, double measured)
{
    promises().add(what, "at least", wanted, measured, measured >= wanted);
}

void atMost(std::string_view what, double wanted, double measured)
{
    promises().add(what, "at most", wanted, measured, measured <= wanted);
}

std::string scratchFile(std::string_view name)
{
    return scratch().file(name);
}

void needRoom(double gigabytes)
{
    const auto available = static_cast<double>(std::filesystem::space(scratch().path()).available) / 1e9;
    if (available >= gigabytes) return;
    fail("needs " + text(gigabytes) + " GB, and " + scratch().path().parent_path().string() + " has " +
         text(available) + " GB; set TMPDIR to a folder with more room");
}

std::string quoted(const std::string& path)
{
    std::string word = "'";
    for (const char c : path)
        c == '\'' ? word.append("'\\''") : word.append(1, c);
    return word += '\'';
}

void shell(const std::string& line)
{
    if (std::system((line + " </dev/null").c_str()) != 0) fail("failed: " + line);
}

ProgramRun runProgram(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    for (const std::string& each : command)
        arguments.push_back(const_cast<char*>(each.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int descriptor : {0, 1, 2})
        posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", O_RDWR, 0);
    ProgramRun run;
    int status = 0;
    rusage usage{};
    run.seconds = seconds([&] {
        pid_t child = 0;
        if (posix_spawnp(&child, arguments[0], &files, nullptr, arguments.data(), environ) != 0)
            fail("could not run " + command.front());
        wait4(child, &status, 0, &usage);
    });
    posix_spawn_file_actions_destroy(&files);
    if (status != 0) fail(command.front() + " failed");
    run.cpuSeconds = secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
    run.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024;
    return run;
}

} // namespace bench
