#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/ReadFile.h"
#include "cli/Text.h"
#include "cli/ValidatorMessages.h"
#include "platform/ChildProcess.h"
#include "xml/PELRootElement.h"

#include <memory>

namespace zanfcp::cli {
namespace {

constexpr std::size_t kMaxDocumentBytes = std::size_t{1} << 30;

struct Verdict {
    enum Kind { valid, notValid, unknown } kind = valid;
    std::string faults; ///< lines to show; none for a valid document
};

/// Runs the tool over one document. Silence and success together are the only sign of a valid one.
Verdict verdictOn(const std::string& path, const std::string& document)
{
    const std::string tool = PELRootElement::xmllintPath();
    const std::string definition = definitionArgument(PELRootElement::dtdPath());
    const auto run = runChildProcess(tool, {"--nonet", "--noout", "--dtdvalid", definition, "-"}, document);
    const std::string name = printable(path);
    if (!run) return {Verdict::unknown, name + ": the validator did not run: " + run.error().what + "\n"};
    const std::string messages = validatorMessages(run->standardError + run->standardOutput, path);
    if (messages.empty() && run->exitStatus == 0) return {};
    const std::string end = name + ": the validator ended with " + std::to_string(run->exitStatus) + "\n";
    if (!isVerdict(run->exitStatus)) return {Verdict::unknown, messages + end};
    return {Verdict::notValid, messages.empty() ? end : messages};
}

ExitCode validate(const std::vector<std::string>& files, Console& console)
{
    if (PELRootElement::dtdPath().empty()) {
        console.error("the DTD to validate against was not found");
        return kNotChecked;
    }
    bool allValid = true;
    bool allChecked = true;
    for (const std::string& path : files) {
        const auto document = readWholeFile(path, kMaxDocumentBytes);
        if (!document) {
            console.error(path + ": " + document.error().what);
            allValid = false;
            continue;
        }
        constexpr const char* kWords[] = {": valid\n", ": not valid\n", ": not checked\n"};
        const Verdict verdict = verdictOn(path, *document);
        console.print(printable(path) + kWords[verdict.kind]);
        if (!verdict.faults.empty()) console.errorLines(verdict.faults);
        allValid = allValid && verdict.kind == Verdict::valid;
        allChecked = allChecked && verdict.kind != Verdict::unknown;
    }
    return !allChecked ? kNotChecked : allValid ? kDone : kFailed;
}

} // namespace

Command addValidate(CLI::App& parent)
{
    auto files = std::make_shared<std::vector<std::string>>();
    CLI::App* app = parent.add_subcommand("validate", "Check project documents against the document type definition");
    app->add_option("FILE", *files, "project documents (.xml)")->required()->type_name("")->check(notEmpty());
    return {
        .app = app,
        .details = "Runs xmllint with the definition of version 5 of the format, which comes with this program. One "
                   "line for each file says whether it is valid; what xmllint has to say goes to standard error. A "
                   "file is \"not checked\" where xmllint cannot be run or cannot do its work. Nothing is fetched from "
                   "the network.",
        .examples = {{"zanfcp validate show.xml", "check one document"}},
        .fileTypes = {"xml"},
        .ownExitCode = "3 not checked",
        .run = [files](Console& console) { return validate(*files, console); },
    };
}

} // namespace zanfcp::cli
