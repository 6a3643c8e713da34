#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Timecodes.h"

#include <memory>

namespace zanfcp::cli {
namespace {

struct Arguments {
    std::string timecode;
    std::string rate;
    std::vector<std::string> added;
};

std::string rateList()
{
    std::string list;
    for (const std::string& name : rateNames())
        list += (list.empty() ? "" : ", ") + name;
    return list;
}

/// A label or a frame count, with "-" before it for one that is taken away.
Result<NSInteger> signedFrames(std::string_view text, PELRate rate)
{
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    auto frames = framesFromText(text, rate);
    if (frames && negative) *frames = -*frames;
    return frames;
}

ExitCode timecode(const Arguments& arguments, Console& console)
{
    const auto rate = rateNamed(arguments.rate);
    if (!rate) {
        console.error("--rate: \"" + arguments.rate + "\" is none of " + rateList());
        return kWrongUsage;
    }
    const auto start = framesFromText(arguments.timecode, *rate);
    if (!start) {
        console.error(start.error().what);
        return kFailed;
    }
    NSInteger frames = *start;
    for (const std::string& text : arguments.added) {
        const auto more = signedFrames(text, *rate);
        if (!more) {
            console.error("--add: " + more.error().what);
            return kFailed;
        }
        frames += *more; // each at most nine digits, so that no command line overflows this
    }
    const NSInteger day = framesPerDay(*rate);
    const NSInteger ofDay = (frames % day + day) % day;
    const NSInteger days = (frames - ofDay) / day;
    std::string line = labelFromFrames(ofDay, *rate) + "  " + std::to_string(ofDay);
    if (days != 0) line += (days > 0 ? "  +" : "  ") + std::to_string(days) + (days * days == 1 ? " day" : " days");
    console.print(line + "\n");
    return kDone;
}

} // namespace

Command addTimecode(CLI::App& parent)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = parent.add_subcommand("timecode", "Convert between timecode labels and frames, and add to them");
    app->add_option("TIMECODE", arguments->timecode, "a label HH:MM:SS:FF (HH:MM:SS;FF for drop-frame), or frames")
        ->required()
        ->type_name("");
    app->add_option("--rate", arguments->rate, "frames per second: " + rateList() + "; 29.97 and 59.94 are drop-frame")
        ->required()
        ->type_name("RATE");
    app->add_option("--add", arguments->added, "a label or frames to add, with - before it to take away; repeatable")
        ->type_name("LABEL|FRAMES")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args(false);
    return {
        .app = app,
        .details = "Prints the label and the frames since midnight. Digits alone are frames. What passes midnight is "
                   "counted in days behind them. Labels that drop-frame counting skips are refused.",
        .examples = {{"zanfcp timecode 01:00:00:00 --rate 25", "01:00:00:00  90000"},
                     {"zanfcp timecode 1800 --rate 29.97", "00:01:00;02  1800"},
                     {"zanfcp timecode 10:00:00:00 --rate 25 --add 00:01:30:00 --add -1", "10:01:29:24  902249"}},
        .run = [arguments](Console& console) { return timecode(*arguments, console); },
    };
}

} // namespace zanfcp::cli
