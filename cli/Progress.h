#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace zanfcp::cli {

class Console;

/// A bar that shows how far long work has come. It appears when the work turns out to be long, moves at most ten times
/// a second, and is gone when this is.
class Progress {
public:
    /// \param console  borrowed
    /// \param name     what is worked on
    /// \param total    of any unit; 0 when it is not known: bytes alone are shown then
    Progress(Console& console, std::string name, std::int64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// \param done   of the total
    /// \param bytes  written so far
    void update(std::int64_t done, std::uint64_t bytes);

private:
    using Clock = std::chrono::steady_clock;

    Console& console_;
    std::string name_;
    std::int64_t total_;
    Clock::time_point start_ = Clock::now();
    Clock::time_point next_;
};

/// "1.5 GB": a size in the decimal unit that suits it.
std::string bytesText(std::uint64_t bytes);

} // namespace zanfcp::cli
