#include "cli/HostConnection.h"

#include "cli/Console.h"
#include "cli/Text.h"

#include <array>
#include <cstdlib>
#include <unistd.h>

namespace zanfcp::cli {
namespace {

struct Meaning {
    OSStatus code;
    const char* text;
};

constexpr std::array kMeanings{
    Meaning{EventStatus::connectionInvalid, "the connection to the host broke; look whether it still runs"},
    Meaning{EventStatus::errAETimeout, "the host did not answer in time; it may still do it (see --timeout)"},
    Meaning{EventStatus::errAEReplyNotValid, "what listens there does not answer as a project host does"},
    Meaning{EventStatus::dskFulErr, "the host has no space left for it; nothing was changed"},
    Meaning{EventStatus::ioErr, "the host could not read or write the file"},
    Meaning{EventStatus::bdNamErr, "the host takes no such file name"},
    Meaning{EventStatus::fnOpnErr, "the project is not open"},
    Meaning{EventStatus::tmfoErr, "the host has too many projects open"},
    Meaning{EventStatus::fnfErr, "the host has no such file"},
    Meaning{EventStatus::dirNFErr, "the host has no such folder"},
    Meaning{EventStatus::fBsyErr, "the file is open as another project; close that first"},
    Meaning{EventStatus::dupFNErr, "the file exists already; --overwrite replaces it"},
    Meaning{EventStatus::paramErr, "this is no xmeml document of version 5 in UTF-8, or the path names no file"},
    Meaning{EventStatus::permErr, "not allowed: paths must lie in the host's projects folder, without symbolic links, "
                                  "and the host must be the same user's"},
    Meaning{EventStatus::errAENoSuchObject, "no project is open"},
};

std::string meaning(OSStatus code, const std::string& socket)
{
    if (code == EventStatus::procNotFound)
        return "nobody listens on " + socket + "; start the host first: zanfcp host --projects DIR";
    for (const Meaning& each : kMeanings)
        if (each.code == code) return each.text;
    return "the host refused";
}

} // namespace

UnixSocketChannel HostConnection::channel() const
{
    return UnixSocketChannel{socket, std::chrono::milliseconds(static_cast<std::int64_t>(timeoutSeconds * 1000))};
}

std::string defaultSocketPath()
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && runtime[0] == '/') return std::string(runtime) + "/zanfcp/host.socket";
    return "/tmp/zanfcp-" + std::to_string(::geteuid()) + "/host.socket";
}

void addSocketOption(CLI::App& app, std::string& socket)
{
    app.add_option("--socket", socket, "where the host listens; in the user's runtime directory without it")
        ->type_name("PATH");
}

void addConnectionOptions(CLI::App& app, HostConnection& connection)
{
    addSocketOption(app, connection.socket);
    app.add_option("--timeout", connection.timeoutSeconds, "how long to wait for the host, 60 seconds without it")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.001, 86400.0));
}

bool sendEvent(ZANFCPEvent& event, const HostConnection& connection, Console& console)
{
    const OSStatus code = event.send();
    if (code == EventStatus::noErr) return true;
    std::string text = meaning(code, connection.socket) + " (" + std::to_string(code) + ")";
    const EventDescriptor* reason = event.reply() ? event.reply()->find(EventCode::errorString) : nullptr;
    if (reason != nullptr && reason->type == EventCode::utf8) text += ": " + printable(reason->bytes);
    console.error(text);
    return false;
}

} // namespace zanfcp::cli
