#pragma once

#include "../platform/Integers.h"

#include <map>
#include <string>
#include <string_view>

namespace zanfcp {

/// The domain of errors that come from no tool.
inline constexpr std::string_view kGeneralErrorDomain = "NSCocoaErrorDomain";
/// The domain of errors that the validator found, or that kept it from running.
inline constexpr std::string_view kXmllintErrorDomain = "xmllint";

/// Why a document is not valid, or could not be checked.
struct ValidationError {
    std::string domain;                          ///< kGeneralErrorDomain or kXmllintErrorDomain
    NSInteger code = 0;                          ///< 1 without a definition; else the exit status of the validator,
                                                 ///< 127 when it could not be started
    std::string localizedDescription;            ///< one sentence for a person
    std::map<std::string, std::string> userInfo; ///< "stdErr" and "stdOut": what the validator printed; without an
                                                 ///< entry for what is no UTF-8
};

/// The path of a document type definition as the validator takes it: as it is, or as a file URL where it has characters
/// that need escaping, because the validator reads it as a URL and does not find it then.
std::string definitionArgument(const std::string& dtd);

/// Whether this exit status of xmllint is about the document: it tells it from a definition that cannot be read, from
/// want of memory and from a tool that could not be loaded or was ended by a signal.
bool isVerdict(NSInteger exitStatus);

/// Runs the validator over the text of a document.
/// \param xmllint   path of the tool
/// \param dtd       path of the document type definition; the tool is not started when there is no such file
/// \param document  borrowed for the call
/// \param error     filled in on failure, else left alone; may be null
/// \return true when the tool printed nothing at all; its exit status does not matter then
bool validateDocument(const std::string& xmllint, const std::string& dtd, std::string_view document,
                      ValidationError* error);

/// The installed document type definition: in "share/zanfcp" of the prefix that this library or program is installed
/// under, or of the folder that it lies in. Empty when it is not there.
std::string installedDTD();

} // namespace zanfcp
