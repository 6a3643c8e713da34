#include "cli/HostConnection.h"

#include "cli/Console.h"
#include "cli/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <span>
#include <system_error>
#include <unistd.h>

namespace zanfcp::cli {
namespace {

struct Meaning {
    OSStatus code;
    const char* text;
};

/// What is found out here.
constexpr std::array kOwnFindings{
    Meaning{EventStatus::paramErr, "the path of the socket is too long, or the document too large to be sent"},
    Meaning{EventStatus::permErr, "the socket, or who listens on it, belongs to another user"},
    Meaning{EventStatus::connectionInvalid, "the connection to the host broke; look whether it still runs"},
    Meaning{EventStatus::errAETimeout, "the host did not answer in time; it may still do it (see --timeout)"},
    Meaning{EventStatus::errAEReplyNotValid, "what listens there does not answer as a project host does"},
};

/// What the host answers; its own words follow.
constexpr std::array kAnswers{
    Meaning{EventStatus::dskFulErr, "the host has no space left for it; nothing was changed"},
    Meaning{EventStatus::ioErr, "the host could not read or write the file"},
    Meaning{EventStatus::bdNamErr, "the host takes no such file name"},
    Meaning{EventStatus::fnOpnErr, "the project is not open"},
    Meaning{EventStatus::tmfoErr, "the host has too many projects open"},
    Meaning{EventStatus::fnfErr, "the host has no such file"},
    Meaning{EventStatus::dirNFErr, "the host has no such folder"},
    Meaning{EventStatus::fBsyErr, "the file is open as another project; close that first"},
    Meaning{EventStatus::dupFNErr, "the file exists already; --overwrite replaces it"},
    Meaning{EventStatus::paramErr, "the host does not take it"},
    Meaning{EventStatus::permErr, "not allowed: paths must lie in the host's projects folder, without symbolic links"},
    Meaning{EventStatus::errAENoSuchObject, "no project is open"},
};

const char* meaning(std::span<const Meaning> meanings, OSStatus code)
{
    const auto found = std::ranges::find(meanings, code, &Meaning::code);
    return found == meanings.end() ? "the host refused" : found->text;
}

std::string validSeconds(const std::string& text)
{
    double seconds = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    const bool valid = fault == std::errc() && end == text.data() + text.size() && seconds >= 0.001 && seconds <= 86400;
    return valid ? "" : "takes seconds, from 0.001 to 86400, not \"" + text + "\"";
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
        ->type_name("PATH")
        ->check(notEmpty());
}

void addConnectionOptions(CLI::App& app, HostConnection& connection)
{
    addSocketOption(app, connection.socket);
    app.add_option("--timeout", connection.timeoutSeconds, "how long to wait for the host, 60 seconds without it")
        ->type_name("SECONDS")
        ->check({validSeconds, ""});
}

bool sendEvent(ZANFCPEvent& event, const HostConnection& connection, Console& console)
{
    const OSStatus code = event.send();
    if (code == EventStatus::noErr) return true;
    const std::string number = " (" + std::to_string(code) + ")";
    if (code == EventStatus::procNotFound && !event.reply()) {
        console.error("nobody listens on " + connection.socket + "; start the host first: zanfcp host --projects DIR" +
                      number);
    } else if (!event.reply()) {
        console.error(meaning(kOwnFindings, code) + number);
    } else {
        const std::string text = meaning(kAnswers, code);
        const EventDescriptor* reason = event.reply()->find(EventCode::errorString);
        const bool more = reason != nullptr && reason->type == EventCode::utf8 && reason->bytes != text;
        console.error(text + number + (more ? ": " + printable(reason->bytes) : ""));
    }
    return false;
}

} // namespace zanfcp::cli
