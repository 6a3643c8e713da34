#pragma once

#include "../platform/FourCC.h"

#include <cstdint>

namespace zanfcp {

/// Result of an event operation: 0, or the number of an error. Negative numbers are those of the classic platform.
using OSStatus = std::int32_t;

/// Signature, events, keywords and types of the conversation with the editing application.
namespace EventCode {
inline constexpr FourCC finalCutPro{"KeyG"}; ///< application signature, and the class of all its events

inline constexpr FourCC getProjectXML{"eXML"};
inline constexpr FourCC importXML{"iXML"};
inline constexpr FourCC openProject{"ofcP"};
inline constexpr FourCC closeProject{"cfcP"};
inline constexpr FourCC saveProject{"sfcP"};

inline constexpr FourCC projectFile{"fcpP"}; ///< fileURL
inline constexpr FourCC xmlData{"xmlD"};     ///< utf8
inline constexpr FourCC xmlVersion{"xmlV"};  ///< float64
inline constexpr FourCC saveToFile{"fcpU"};  ///< fileURL
inline constexpr FourCC overwrite{"fsOF"};   ///< boolean
inline constexpr FourCC closeFlag{"fcCF"};   ///< long, eight bytes: 0 save, 1 do not
inline constexpr FourCC errorNumber{"errn"}; ///< long, four bytes; in replies
inline constexpr FourCC errorString{"errs"}; ///< utf8, one line for a person; in replies with an errorNumber

inline constexpr FourCC null{"null"};                 ///< no bytes
inline constexpr FourCC applicationSignature{"sign"}; ///< the four bytes of a signature, most significant first
inline constexpr FourCC fileURL{"furl"};              ///< POSIX path in UTF-8, without a final NUL
inline constexpr FourCC utf8{"utf8"};
inline constexpr FourCC float64{"doub"};     ///< machine's byte order
inline constexpr FourCC boolean{"bool"};     ///< one byte, 0 or 1
inline constexpr FourCC longInteger{"long"}; ///< machine's byte order
inline constexpr FourCC list{"list"};

inline constexpr FourCC replyClass{"aevt"};
inline constexpr FourCC replyID{"ansr"};
} // namespace EventCode

/// The result codes that are sent or returned here, under their usual names.
namespace EventStatus {
inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus missingURL = -1;                 ///< save without a file
inline constexpr OSStatus dskFulErr = -34;                 ///< no space left
inline constexpr OSStatus ioErr = -36;                     ///< the operating system refused
inline constexpr OSStatus bdNamErr = -37;                  ///< a name that no project may have
inline constexpr OSStatus fnOpnErr = -38;                  ///< the project is not open
inline constexpr OSStatus tmfoErr = -42;                   ///< too many open projects
inline constexpr OSStatus fnfErr = -43;                    ///< no such file
inline constexpr OSStatus fBsyErr = -47;                   ///< the file belongs to another open project
inline constexpr OSStatus dupFNErr = -48;                  ///< exists already
inline constexpr OSStatus paramErr = -50;                  ///< a wrong parameter, such as a document that is no xmeml
inline constexpr OSStatus permErr = -54;                   ///< not allowed, such as a path that leads out
inline constexpr OSStatus dirNFErr = -120;                 ///< no such folder
inline constexpr OSStatus procNotFound = -600;             ///< nobody listens
inline constexpr OSStatus connectionInvalid = -609;        ///< the connection broke
inline constexpr OSStatus errAECoercionFail = -1700;       ///< a parameter of another type or size
inline constexpr OSStatus errAEDescNotFound = -1701;       ///< no such parameter
inline constexpr OSStatus errAECorruptData = -1702;        ///< bytes that are no message
inline constexpr OSStatus errAENewerVersion = -1706;       ///< a message of another version
inline constexpr OSStatus errAEEventNotHandled = -1708;    ///< an unknown event
inline constexpr OSStatus errAEReplyNotValid = -1709;      ///< a reply to something else, or no reply at all
inline constexpr OSStatus errAETimeout = -1712;            ///< no reply in time
inline constexpr OSStatus errAEUnknownAddressType = -1716; ///< addressed to somebody else
inline constexpr OSStatus errAEWrongNumberArgs = -1721;    ///< a parameter is missing
inline constexpr OSStatus errAENoSuchObject = -1728;       ///< there is no current project
} // namespace EventStatus

} // namespace zanfcp
