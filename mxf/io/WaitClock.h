#pragma once

#include <cstdint>

namespace TamrelMxf {

/// Time and sleep for everything that waits on a file, so that a test need not wait for real.
class CWaitClock {
public:
    virtual ~CWaitClock();

    /// Milliseconds since some fixed moment; never goes back.
    virtual std::int64_t Now() = 0;
    /// Returns after `milliseconds` at the earliest.
    virtual void Sleep(std::uint32_t milliseconds) = 0;

    /// The clock of the machine; it lives as long as the process.
    static CWaitClock& System();

protected:
    CWaitClock() = default;
    CWaitClock(const CWaitClock&) = delete;
    CWaitClock& operator=(const CWaitClock&) = delete;
};

/// The pause between two looks at a file that is still being written or is not there yet.
inline constexpr std::uint32_t kPollMilliseconds = 500;

} // namespace TamrelMxf
