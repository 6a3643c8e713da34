#include "fcp/ZANFCPEvent.h"

#include <utility>

namespace zanfcp {

ZANFCPEvent::ZANFCPEvent(FourCC type, EventTransport& transport)
    : transport_{transport}, target_{EventDescriptor::applicationAddress(EventCode::finalCutPro)},
      event_{EventMessage::event(EventCode::finalCutPro, type, target_)}, parameterList_{EventCode::list, {}}
{}

void ZANFCPEvent::setProjectURL(const FileURL& url)
{
    if (status_ != EventStatus::noErr) return;
    status_ = event_.add(EventCode::projectFile, EventDescriptor::file(url.path()));
}

void ZANFCPEvent::setXMLData(std::string_view data)
{
    if (status_ != EventStatus::noErr) return;
    status_ = data.size() > EventLimits{}.parameterBytes // said before the copy is made
                  ? EventStatus::paramErr
                  : event_.add(EventCode::xmlData, EventDescriptor::utf8(data));
}

void ZANFCPEvent::openFile(const FileURL& url, FourCC type)
{
    (void)event_.add(type, EventDescriptor::file(url.path()));
}

void ZANFCPEvent::saveProjectToURL(const FileURL& url, bool overwrite)
{
    if (url.empty()) {
        status_ = EventStatus::missingURL;
        return;
    }
    (void)event_.add(EventCode::overwrite, EventDescriptor::boolean(overwrite));
    (void)event_.add(EventCode::saveToFile, EventDescriptor::file(url.path()));
}

void ZANFCPEvent::closeProjectAtURL(const FileURL& url, bool save)
{
    status_ = event_.add(EventCode::closeFlag, EventDescriptor::long64(save ? 0 : 1));
    if (!url.empty()) status_ = event_.add(EventCode::projectFile, EventDescriptor::file(url.path()));
}

void ZANFCPEvent::setXMLVersion(double version)
{
    (void)event_.add(EventCode::xmlVersion, EventDescriptor::float64(version));
}

OSStatus ZANFCPEvent::send()
{
    if (status_ != EventStatus::noErr) return status_;
    EventTransport::Outcome outcome = transport_.send(event_);
    status_ = outcome.status;
    if (status_ != EventStatus::noErr) return status_;
    reply_ = std::move(outcome.reply);
    const EventDescriptor* number = reply_->find(EventCode::errorNumber);
    if (number == nullptr) return EventStatus::noErr;
    return number->asLong32().value_or(EventStatus::errAECoercionFail);
}

bool ZANFCPEvent::getResultXMLData(std::optional<std::string>& data)
{
    if (status_ != EventStatus::noErr || data) return false;
    const EventDescriptor* found = reply_ ? reply_->find(EventCode::xmlData) : nullptr;
    if (found == nullptr)
        status_ = EventStatus::errAEDescNotFound;
    else if (found->type != EventCode::utf8)
        status_ = EventStatus::errAECoercionFail;
    else
        data = found->bytes;
    return status_ == EventStatus::noErr;
}

} // namespace zanfcp
