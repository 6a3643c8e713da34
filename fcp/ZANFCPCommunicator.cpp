#include "fcp/ZANFCPCommunicator.h"

#include "fcp/Opener.h"
#include "fcp/ZANFCPEvent.h"

#include <cassert>
#include <utility>

namespace zanfcp {
namespace {

constexpr double kXMLVersion = 5.0;

bool succeeds(ZANFCPEvent& event)
{
    return event.send() == EventStatus::noErr;
}

} // namespace

ZANFCPCommunicator::ZANFCPCommunicator(std::shared_ptr<EventTransport> transport, std::vector<std::string> opener)
    : transport_{std::move(transport)}, opener_{std::move(opener)}
{
    assert(transport_);
}

ZANFCPCommunicator ZANFCPCommunicator::communicator(std::shared_ptr<EventTransport> transport,
                                                    std::vector<std::string> opener)
{
    return {std::move(transport), std::move(opener)};
}

std::optional<std::string> ZANFCPCommunicator::XMLDataOfProjectAtURL(const FileURL& url) const
{
    auto event = ZANFCPEvent::eventWithType(EventCode::getProjectXML, *transport_);
    event.setXMLVersion(kXMLVersion);
    if (!url.empty()) event.setProjectURL(url);
    std::optional<std::string> data;
    if (succeeds(event)) (void)event.getResultXMLData(data);
    return data;
}

std::optional<std::string> ZANFCPCommunicator::currentXMLData() const
{
    return XMLDataOfProjectAtURL({});
}

bool ZANFCPCommunicator::sendXMLDataToCurrentProject(std::string_view data) const
{
    auto event = ZANFCPEvent::eventWithType(EventCode::importXML, *transport_);
    event.setXMLData(data);
    return succeeds(event);
}

bool ZANFCPCommunicator::sendXMLData(std::string_view data, const FileURL& projectURL) const
{
    auto event = ZANFCPEvent::eventWithType(EventCode::importXML, *transport_);
    event.setProjectURL(projectURL);
    event.setXMLData(data);
    return succeeds(event);
}

bool ZANFCPCommunicator::openProjectFile(const FileURL& url) const
{
    auto event = ZANFCPEvent::eventWithType(EventCode::openProject, *transport_);
    event.openFile(url, EventCode::projectFile);
    return succeeds(event);
}

bool ZANFCPCommunicator::closeProjectAtURL(const FileURL& url, bool save) const
{
    auto event = ZANFCPEvent::eventWithType(EventCode::closeProject, *transport_);
    event.closeProjectAtURL(url, save);
    return succeeds(event);
}

bool ZANFCPCommunicator::closeCurrentProjectAndSave(bool save) const
{
    return closeProjectAtURL({}, save);
}

bool ZANFCPCommunicator::saveCurrentProjectToURL(const FileURL& url, bool overwrite) const
{
    auto event = ZANFCPEvent::eventWithType(EventCode::saveProject, *transport_);
    event.saveProjectToURL(url, overwrite);
    return succeeds(event);
}

bool ZANFCPCommunicator::openXMLFile(const FileURL& url) const
{
    if (!url.empty()) startOpener(opener_, url.path());
    return true;
}

} // namespace zanfcp
