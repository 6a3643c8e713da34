#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What every benchmark needs.
namespace bench {

/// Ends the benchmark; what it has made in the scratch folder goes away.
[[noreturn]] void fail(const std::string& why);

/// Of an odd number of values the one in the middle, of an even number the upper one of the two.
double median(std::vector<double> values);

template <class Work> double seconds(Work&& work)
{
    const auto start = std::chrono::steady_clock::now();
    std::forward<Work>(work)();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// One of several ways that are compared.
struct Contestant {
    std::string name;
    std::function<double()> run; ///< does the work once; returns its figure, mostly the time it took
    std::vector<double> figures = {};

    double median() const { return bench::median(figures); }
};

/// Runs all of them in turn, round by round, every other round in the opposite order, so that each meets what each of
/// its neighbours leaves behind. What the first round shows is thrown away: it warms caches.
void race(std::vector<Contestant>& contestants, int rounds);

/// A promise: printed with what was measured below all tables when the program ends. The lines begin with "met" or
/// "missed", and `./run bench` repeats them at its end.
void atLeast(std::string_view what, double wanted, double measured);
void atMost(std::string_view what, double wanted, double measured);

/// The path of a file of this name in a folder that goes away when the benchmark ends, also by fail().
std::string scratchFile(std::string_view name);
/// Fails when the scratch folder has less room than this.
void needRoom(double gigabytes);
/// A path as one word of a line of shell.
std::string quoted(const std::string& path);
/// Runs a line of shell with nothing to read. Fails when it fails.
void shell(const std::string& line);

struct ProgramRun {
    double seconds = 0;
    double cpuSeconds = 0; ///< its own and the kernel's for it
    double peakMegabytes = 0;
};

/// Runs a program, found by the path, with nothing to read and its texts thrown away. Ends the benchmark when it fails.
/// The peak counts at the least what this process holds itself when the program is started.
ProgramRun runProgram(const std::vector<std::string>& command);

} // namespace bench
