#pragma once

#include "platform/Integers.h"
#include "platform/Result.h"
#include "timecode/PELRate.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zanfcp::cli {

// Timecodes as people write them. All functions that take a rate select it process-wide.

/// The rate that a person means by "23.976", "25", "29.97df" and so on; nothing for any other text.
std::optional<PELRate> rateNamed(std::string_view name);
/// The names that rateNamed knows.
std::vector<std::string> rateNames();
/// How a rate is shown: "23.98", "29.97 DF", "25"; "unknown" for a timebase of 0.
std::string rateText(PELRate rate);
/// Whether labels are counted at this timebase; any other is counted as 25.
bool isTimecodeRate(PELRate rate);

/// Frames since midnight that a label or a bare frame count denotes. Stricter than the reading of a timecode string:
/// only "HH:MM:SS:FF" and, at drop-frame rates, "HH:MM:SS;FF" with two digits each are labels, and the label must
/// exist at the rate.
/// \return the frames, or an Error (malformed) that says what is wrong with the label
Result<NSInteger> framesFromText(std::string_view text, PELRate rate);

/// Whether `text` has the form of a label or of a frame count, at whatever rate.
bool looksLikeTimecode(std::string_view text);

/// The label of a frame of the day, with ";" at drop-frame rates. Frames beyond a day, and negative ones, wrap.
std::string labelFromFrames(NSInteger frames, PELRate rate);

/// The label of a frame of the day at any whole number of frames a second, without selecting a rate: for files whose
/// counting is not one of the rates above. Drop-frame counts 2 labels less a minute for every 30 frames a second (SMPTE
/// ST 12-1) and is only known at multiples of 30. Frames beyond a day, and negative ones, wrap; empty for base 0.
std::string labelAtBase(std::int64_t frames, std::uint16_t base, bool dropFrame);

/// Frames in one day of labels.
NSInteger framesPerDay(PELRate rate);

} // namespace zanfcp::cli
