#pragma once

#include "../platform/FileURL.h"
#include "EventTransport.h"

#include <optional>
#include <string>
#include <string_view>

namespace zanfcp {

/// One event addressed to the editing application, with its parameters and the reply. Built, sent once, read once.
/// The status keeps the first error for `setProjectURL`, `setXMLData`, `send` and `getResultXMLData`, which do nothing
/// after one; the other building steps overwrite or ignore it, as each says.
/// An empty URL stands for none.
class ZANFCPEvent {
public:
    /// \param type       the event's ID, one of EventCode
    /// \param transport  borrowed; must outlive the event
    static ZANFCPEvent eventWithType(FourCC type, EventTransport& transport) { return {type, transport}; }
    ZANFCPEvent(FourCC type, EventTransport& transport);

    /// The project that the event is about. Sets the status; -50 for an empty URL.
    void setProjectURL(const FileURL& url);
    /// The document, copied as it is. Sets the status; -50 above EventLimits.
    void setXMLData(std::string_view data);
    /// Adds the file under `type`. The status stays as it is, whatever comes of it.
    void openFile(const FileURL& url, FourCC type);
    /// Where to save, and whether a file there may be overwritten. The status becomes -1 without a URL and stays as it
    /// is with one.
    void saveProjectToURL(const FileURL& url, bool overwrite);
    /// Sets the status, even after an error.
    /// \param url  empty for the current project
    void closeProjectAtURL(const FileURL& url, bool save);
    /// Asks for this version of the XML Interchange Format. The status stays as it is.
    void setXMLVersion(double version);

    /// Sends the event and waits for the reply, unless there was an error before.
    /// \return the status; after a successful send the reply's 'errn', which does not become the status, or 0 when it
    ///         has none; -1700 for an 'errn' that is no four-byte integer
    OSStatus send();
    /// Takes the document out of the reply. The status becomes -1701 when there is none and -1700 for another type.
    /// \param data  where it goes; must be empty on entry and is left alone otherwise
    /// \return whether the document is there
    bool getResultXMLData(std::optional<std::string>& data);

    const EventDescriptor& target() const { return target_; }
    const EventMessage& event() const { return event_; }
    /// Nothing before a successful send.
    const std::optional<EventMessage>& reply() const { return reply_; }
    /// An empty list; part of the event's record, not used otherwise.
    const EventDescriptor& parameterList() const { return parameterList_; }
    OSStatus status() const { return status_; }

private:
    EventTransport& transport_;
    EventDescriptor target_;
    EventMessage event_;
    std::optional<EventMessage> reply_;
    EventDescriptor parameterList_;
    OSStatus status_ = EventStatus::noErr;
};

} // namespace zanfcp
