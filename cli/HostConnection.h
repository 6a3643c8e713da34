#pragma once

#include "cli/Commands.h"
#include "fcp/UnixSocketChannel.h"
#include "fcp/ZANFCPEvent.h"

#include <string>

namespace zanfcp::cli {

/// The socket in the user's runtime directory; in a folder of the user's own below the temporary one without that.
std::string defaultSocketPath();

/// Where the host listens, and how long to wait for it.
struct HostConnection {
    std::string socket = defaultSocketPath();
    double timeoutSeconds = 60.0;

    UnixSocketChannel channel() const;
};

void addSocketOption(CLI::App& app, std::string& socket);
/// Adds --socket and --timeout.
void addConnectionOptions(CLI::App& app, HostConnection& connection);

/// Sends the event. False, with a message that says what to do, when it fails.
bool sendEvent(ZANFCPEvent& event, const HostConnection& connection, Console& console);

} // namespace zanfcp::cli
