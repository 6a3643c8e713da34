#include "cli/Progress.h"

#include "cli/Console.h"
#include "cli/Text.h"
#include "platform/Format.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

namespace zanfcp::cli {
namespace {

constexpr std::chrono::milliseconds kQuiet{500}; ///< work that is done by then shows no bar
constexpr std::chrono::milliseconds kBetween{100};
constexpr std::int64_t kBarColumns = 24;

} // namespace

std::string bytesText(std::uint64_t bytes)
{
    constexpr auto kUnits = std::to_array({"bytes", "kB", "MB", "GB", "TB", "PB", "EB"});
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    for (; value >= 999.95 && unit + 1 < kUnits.size(); ++unit)
        value /= 1000;
    return unit == 0 ? format("%.0f %s", value, kUnits[unit]) : format("%.1f %s", value, kUnits[unit]);
}

Progress::Progress(Console& console, std::string name, std::int64_t total)
    : console_{console}, name_{printable(std::filesystem::path{std::move(name)}.filename().string())}, total_{total},
      next_{start_ + kQuiet}
{}

Progress::~Progress()
{
    console_.endProgress();
}

void Progress::update(std::int64_t done, std::uint64_t bytes)
{
    if (!console_.showsProgress()) return;
    const Clock::time_point now = Clock::now();
    if (now < next_) return;
    next_ = now + kBetween;
    std::string line = name_ + "  ";
    if (total_ > 0) {
        const double part =
            static_cast<double>(std::clamp<std::int64_t>(done, 0, total_)) / static_cast<double>(total_);
        const auto columns = static_cast<std::size_t>(part * kBarColumns);
        line += "[" + std::string(columns, '#') + std::string(kBarColumns - columns, '.') + "] " +
                format("%3.0f %%  ", part * 100);
    }
    const double seconds = std::chrono::duration<double>(now - start_).count();
    line +=
        bytesText(bytes) + "  " + bytesText(static_cast<std::uint64_t>(static_cast<double>(bytes) / seconds)) + "/s";
    console_.progress(line);
}

} // namespace zanfcp::cli
