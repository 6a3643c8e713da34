#pragma once

#include "mxf/io/WaitClock.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace zanfcp::test {

/// Time that passes only by sleeping; `onSleep` plays the program that writes the file meanwhile.
class FakeClock final : public TamrelMxf::CWaitClock {
public:
    std::int64_t Now() override { return now; }
    void Sleep(std::uint32_t milliseconds) override
    {
        sleeps.push_back(milliseconds);
        now += milliseconds;
        if (onSleep) onSleep();
    }

    std::int64_t now = 123'456;
    std::vector<std::uint32_t> sleeps;
    std::function<void()> onSleep;
};

} // namespace zanfcp::test
