#include "mxf/io/WaitClock.h"

#include <chrono>
#include <thread>

namespace TamrelMxf {

namespace {

class CSystemClock final : public CWaitClock {
public:
    std::int64_t Now() override
    {
        using namespace std::chrono;
        return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    }
    void Sleep(std::uint32_t milliseconds) override
    {
        std::this_thread::sleep_for(std::chrono::milliseconds{milliseconds});
    }
};

} // namespace

CWaitClock::~CWaitClock() = default;

CWaitClock& CWaitClock::System()
{
    static CSystemClock clock;
    return clock;
}

} // namespace TamrelMxf
