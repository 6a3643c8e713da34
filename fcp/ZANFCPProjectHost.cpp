#include "fcp/ZANFCPProjectHost.h"

#include "fcp/EventServer.h"
#include "fcp/ProjectStore.h"
#include "platform/LibXml2.h"
#include "platform/Log.h"

#include <algorithm>
#include <deque>
#include <unordered_set>
#include <utility>

namespace zanfcp {
namespace {

constexpr std::size_t kRememberedEvents = 4096;
constexpr double kXMLVersion = 5.0;

Refusal missing(FourCC keyword)
{
    return {EventStatus::errAEWrongNumberArgs, "the parameter " + keyword.text() + " is missing"};
}

Refusal wrong(FourCC keyword)
{
    return {EventStatus::paramErr, "the parameter " + keyword.text() + " is of a wrong type, size or value"};
}

/// The path of a file parameter; nothing when the event has none.
Granted<std::optional<std::string>> path(const EventMessage& event, FourCC keyword)
{
    const EventDescriptor* found = event.find(keyword);
    if (found == nullptr) return std::optional<std::string>();
    if (found->type != EventCode::fileURL || found->bytes.empty()) return wrong(keyword);
    return std::optional(found->bytes);
}

/// Paths and parser messages hold what clients wrote: control characters would make other lines of one, and names of
/// files may be no UTF-8, which the reply says it holds.
std::string oneLine(std::string text)
{
    std::ranges::replace_if(
        text, [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    const auto xml = libXml2();
    if (!xml || (*xml)->xmlCheckUTF8(reinterpret_cast<const xmlChar*>(text.c_str())) == 0)
        std::ranges::replace_if(
            text, [](unsigned char c) { return c >= 0x80; }, '?');
    return text;
}

/// Tells events apart that were seen before: bytes that were recorded and sent again would import a document twice.
class SeenEvents {
public:
    /// Whether this ID is new. Remembers it, and forgets the oldest.
    bool isNew(std::uint64_t returnID)
    {
        if (!ids_.insert(returnID).second) return false;
        order_.push_back(returnID);
        if (order_.size() > kRememberedEvents) {
            ids_.erase(order_.front());
            order_.pop_front();
        }
        return true;
    }

private:
    std::unordered_set<std::uint64_t> ids_;
    std::deque<std::uint64_t> order_;
};

} // namespace

/// Reads events and has the store do what they say.
class ZANFCPProjectHost::Desk {
public:
    explicit Desk(ProjectStore store) : store_{std::move(store)} {}

    std::vector<EventMessage::Parameter> answer(const EventMessage& event)
    {
        EventMessage reply = EventMessage::reply(event.returnID);
        if (const Refused refused = handle(event, reply)) {
            const std::string reason = oneLine(refused->reason);
            ZAN_LOG_ERROR("ZANFCPProjectHost: Refused %s: %s (%d)", event.eventID.text().c_str(), reason.c_str(),
                          static_cast<int>(refused->code));
            (void)reply.add(EventCode::errorNumber, EventDescriptor::long32(refused->code));
            (void)reply.add(EventCode::errorString, {EventCode::utf8, reason});
        }
        return std::move(reply.parameters);
    }

    std::unique_ptr<EventServer> server;

private:
    Refused handle(const EventMessage& event, EventMessage& reply)
    {
        if (event.target != EventDescriptor::applicationAddress(EventCode::finalCutPro))
            return Refusal{EventStatus::errAEUnknownAddressType, "it is addressed to somebody else"};
        if (event.eventClass != EventCode::finalCutPro)
            return Refusal{EventStatus::errAEEventNotHandled, "its class is unknown"};
        if (!seen_.isNew(event.returnID)) return Refusal{EventStatus::paramErr, "it was received before"};
        auto project = path(event, EventCode::projectFile);
        if (!project) return project.refusal();
        if (event.eventID == EventCode::getProjectXML) return give(event, *project, reply);
        if (event.eventID == EventCode::importXML) return import(event, *project);
        if (event.eventID == EventCode::openProject)
            return *project ? store_.openProject(**project) : missing(EventCode::projectFile);
        if (event.eventID == EventCode::closeProject) return close(event, *project);
        if (event.eventID == EventCode::saveProject) return save(event);
        return Refusal{EventStatus::errAEEventNotHandled, "the event is unknown"};
    }

    Refused give(const EventMessage& event, const std::optional<std::string>& project, EventMessage& reply)
    {
        if (const EventDescriptor* version = event.find(EventCode::xmlVersion))
            if (version->asFloat64() != kXMLVersion) return wrong(EventCode::xmlVersion);
        auto text = store_.document(project);
        if (!text) return text.refusal();
        if (reply.add(EventCode::xmlData, {EventCode::utf8, std::move(*text)}) != EventStatus::noErr)
            return Refusal{EventStatus::paramErr, "the document is too large to be sent"};
        return std::nullopt;
    }

    Refused import(const EventMessage& event, const std::optional<std::string>& project)
    {
        const EventDescriptor* document = event.find(EventCode::xmlData);
        if (document == nullptr) return missing(EventCode::xmlData);
        if (document->type != EventCode::utf8) return wrong(EventCode::xmlData);
        return store_.importDocument(document->bytes, project);
    }

    Refused close(const EventMessage& event, const std::optional<std::string>& project)
    {
        const EventDescriptor* flag = event.find(EventCode::closeFlag);
        if (flag == nullptr) return missing(EventCode::closeFlag);
        const auto value = flag->asLong64();
        if (value != 0 && value != 1) return wrong(EventCode::closeFlag);
        return store_.close(project, value == 0);
    }

    Refused save(const EventMessage& event)
    {
        auto file = path(event, EventCode::saveToFile);
        if (!file) return file.refusal();
        const EventDescriptor* flag = event.find(EventCode::overwrite);
        if (flag == nullptr && *file) return missing(EventCode::overwrite);
        const auto overwrite = flag == nullptr ? std::optional(false) : flag->asBoolean();
        if (!overwrite) return wrong(EventCode::overwrite);
        return store_.save(*file, *overwrite);
    }

    ProjectStore store_;
    SeenEvents seen_;
};

ZANFCPProjectHost::ZANFCPProjectHost(std::unique_ptr<Desk> desk) : desk_{std::move(desk)} {}
ZANFCPProjectHost::~ZANFCPProjectHost() = default;

Result<std::unique_ptr<ZANFCPProjectHost>> ZANFCPProjectHost::open(const Settings& settings)
{
    if (const auto xml = libXml2(); !xml) return xml.error(); // every answer needs it
    Result<ProjectStore> store = ProjectStore::open(settings.projectsFolder);
    if (!store) return store.error();
    auto desk = std::make_unique<Desk>(*std::move(store));
    auto server = EventServer::open(
        {.socketPath = settings.socketPath, .clients = settings.clients, .idle = settings.idle, .user = settings.user},
        [at = desk.get()](const EventMessage& event) { return at->answer(event); });
    if (!server) return server.error();
    desk->server = *std::move(server);
    return std::unique_ptr<ZANFCPProjectHost>(new ZANFCPProjectHost(std::move(desk)));
}

Status ZANFCPProjectHost::run()
{
    return desk_->server->run();
}

void ZANFCPProjectHost::stop() noexcept
{
    desk_->server->stop();
}

} // namespace zanfcp
