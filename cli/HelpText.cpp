#include "cli/HelpText.h"

#include "cli/OptionTable.h"

namespace zanfcp::cli {
namespace {

std::string keyList(OptionTable table, std::size_t indent)
{
    constexpr std::size_t kColumn = 8;
    std::string text;
    for (const OptionSpec& spec : table) {
        const std::string blanks(indent, ' ');
        const std::string what = std::string(spec.help) + ": " + valueText(spec) + (spec.required ? "; required" : "");
        text += blanks + std::string(spec.key) + "\n" + blanks + std::string(kColumn - 2, ' ') +
                wrapped(what, indent + kColumn - 2) + "\n";
        if (spec.type == OptionType::dictionary || spec.type == OptionType::list)
            text += keyList(spec.table(), indent + 4);
    }
    return text;
}

} // namespace

std::string wrapped(std::string_view text, std::size_t indent, std::size_t width)
{
    std::string out;
    std::size_t column = indent;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (column > indent && column + 1 + word.size() > width) {
            out += "\n" + std::string(indent, ' ');
            column = indent;
        } else if (column > indent) {
            out += ' ';
            ++column;
        }
        out += word;
        column += word.size();
    }
    return out;
}

std::string helpFooter(const Command& command)
{
    std::string text = wrapped(command.details, 0) + "\n\nExamples:\n";
    for (const Example& example : command.examples)
        text += "  " + example.line + "\n      " + example.meaning + "\n";
    text += "\nExit codes: " + std::string(kExitCodes);
    text += (command.ownExitCode.empty() ? "" : ", " + command.ownExitCode) + "\n";
    if (command.app->get_name() == "build")
        text += "\nOptions of a project, for --set KEY=VALUE (OBJECT.KEY=VALUE inside an object) and as the keys of\n"
                "OPTIONS.json; CUTS.json and MARKERS.json hold the lists at the end. In brackets: without the key.\n" +
                keyList(projectOptions(), 2);
    text.pop_back();
    return text;
}

std::string optionSynopsis(const CLI::Option& option)
{
    std::string names;
    for (const std::string& name : option.get_snames())
        names += (names.empty() ? "-" : ", -") + name;
    for (const std::string& name : option.get_lnames())
        names += (names.empty() ? "--" : ", --") + name;
    const std::string value = option.get_items_expected_max() == 0 ? std::string() : option.get_type_name();
    return value.empty() ? names : names + " " + value;
}

} // namespace zanfcp::cli
