#pragma once

#include "../platform/FileURL.h"
#include "EventTransport.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zanfcp {

/// Hands documents and project files to the editing application, one event a method. The calling thread waits for the
/// reply. Every method that sends returns true, or data, exactly when the event arrived and was answered without an
/// error; nothing is logged. An empty URL stands for none.
class ZANFCPCommunicator {
public:
    /// \param transport  carries the events; must not be null
    /// \param opener     program, found through PATH, and its first arguments, for `openXMLFile`
    static ZANFCPCommunicator communicator(std::shared_ptr<EventTransport> transport,
                                           std::vector<std::string> opener = {"xdg-open"});

    /// The document of a project, of the current one without a URL; nothing on any failure.
    std::optional<std::string> XMLDataOfProjectAtURL(const FileURL& url) const;
    /// The document of the project in front.
    std::optional<std::string> currentXMLData() const;

    /// Imports a document into the project in front.
    bool sendXMLDataToCurrentProject(std::string_view data) const;
    bool sendXMLData(std::string_view data, const FileURL& projectURL) const;

    bool openProjectFile(const FileURL& url) const;
    /// \param url  empty for the current project
    bool closeProjectAtURL(const FileURL& url, bool save) const;
    bool closeCurrentProjectAndSave(bool save) const;
    /// False, and nothing is sent, without a URL.
    bool saveCurrentProjectToURL(const FileURL& url, bool overwrite) const;

    /// Starts the opener with the file's path as its last argument and returns at once. Nobody needs to wait for the
    /// opener: it is taken care of when it ends.
    /// \return true, also when the opener could not be started
    bool openXMLFile(const FileURL& url) const;

private:
    ZANFCPCommunicator(std::shared_ptr<EventTransport> transport, std::vector<std::string> opener);

    std::shared_ptr<EventTransport> transport_;
    std::vector<std::string> opener_;
};

} // namespace zanfcp
