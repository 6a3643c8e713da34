#include "xml/Validation.h"

#include "platform/ChildProcess.h"
#include "platform/FileURL.h"
#include "platform/Format.h"
#include "xml/XMLText.h"

#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <system_error>
#include <utility>

namespace zanfcp {
namespace {

namespace fs = std::filesystem;

constexpr NSInteger kNotFound = 1;
constexpr NSInteger kNotStarted = 127; ///< the status a shell gives for a program that it cannot start

bool fail(ValidationError* error, ValidationError reason)
{
    if (error != nullptr) *error = std::move(reason);
    return false;
}

/// The folder of the shared library that holds this code, or of the program where it is linked in.
fs::path ownFolder()
{
    static constexpr char kHere = 0; // any address of our own
    std::error_code none;
    Dl_info info{};
    void* object = nullptr;
    if (::dladdr1(&kHere, &info, &object, RTLD_DL_LINKMAP) != 0)
        if (const char* const name = static_cast<const link_map*>(object)->l_name; name[0] == '/')
            return fs::canonical(name, none).parent_path();
    return fs::canonical("/proc/self/exe", none).parent_path(); // the program itself has no name there
}

bool isFile(const fs::path& path)
{
    std::error_code none;
    return !path.empty() && fs::is_regular_file(path, none);
}

void keepText(std::map<std::string, std::string>& info, const char* key, const std::string& text)
{
    if (isUtf8(text)) info.emplace(key, text);
}

} // namespace

std::string installedDTD()
{
    // bin/, lib/ and lib/<architecture>/ lie beside share/. No other folder is left upwards: what lies above it may be
    // anybody's.
    const auto isLibraryFolder = [](const fs::path& path) { return path.filename().string().starts_with("lib"); };
    const fs::path own = ownFolder();
    fs::path prefix = own;
    if (own.filename() == "bin" || isLibraryFolder(own))
        prefix = own.parent_path();
    else if (isLibraryFolder(own.parent_path()))
        prefix = own.parent_path().parent_path();
    const fs::path place = prefix / "share" / "zanfcp" / "FCPXMLv5.dtd";
    return isFile(place) ? place.string() : std::string();
}

std::string definitionArgument(const std::string& dtd)
{
    const std::string text = FileURL::fileURLWithPath(dtd).absoluteString();
    return text.find('%') == std::string::npos ? dtd : text;
}

bool isVerdict(NSInteger exitStatus)
{
    constexpr NSInteger kBadDefinition = 2;
    constexpr NSInteger kOutOfMemory = 9;
    constexpr NSInteger kCannotBeLoaded = 126; // and 127; what is above is 128 and the number of a signal
    return exitStatus != kBadDefinition && exitStatus != kOutOfMemory && exitStatus < kCannotBeLoaded;
}

bool validateDocument(const std::string& xmllint, const std::string& dtd, std::string_view document,
                      ValidationError* error)
{
    if (!isFile(dtd))
        return fail(error, {.domain = std::string(kGeneralErrorDomain),
                            .code = kNotFound,
                            .localizedDescription = "The DTD to validate against was not found",
                            .userInfo = {}});

    const Result<ChildResult> run =
        runChildProcess(xmllint, {"--noout", "--dtdvalid", definitionArgument(dtd), "-"}, document);
    if (!run)
        return fail(error, {.domain = std::string(kXmllintErrorDomain),
                            .code = kNotStarted,
                            .localizedDescription = "The validator did not run: " + run.error().what,
                            .userInfo = {}});
    if (run->standardError.empty() && run->standardOutput.empty()) return true;

    ValidationError reason{.domain = std::string(kXmllintErrorDomain),
                           .code = run->exitStatus,
                           .localizedDescription =
                               format(isVerdict(run->exitStatus) ? "The document is not valid (xmllint %d)"
                                                                 : "The validator could not do its work (xmllint %d)",
                                      run->exitStatus),
                           .userInfo = {}};
    keepText(reason.userInfo, "stdErr", run->standardError);
    keepText(reason.userInfo, "stdOut", run->standardOutput);
    return fail(error, std::move(reason));
}

} // namespace zanfcp
