#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

/// What every benchmark needs.
namespace bench {

[[noreturn]] inline void fail(const std::string& why)
{
    std::fprintf(stderr, "%s\n", why.c_str());
    std::exit(1);
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template <class Work> double seconds(Work&& work)
{
    const auto start = std::chrono::steady_clock::now();
    std::forward<Work>(work)();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct ProgramRun {
    double seconds = 0;
    double peakMegabytes = 0;
};

/// Runs a program, found by the path, with nothing to read and its texts thrown away. Ends the benchmark when it fails.
ProgramRun runProgram(const std::vector<std::string>& command);

} // namespace bench
