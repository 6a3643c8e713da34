#pragma once

#include "PELElement.h"
#include "Validation.h"

#include <optional>
#include <string>

namespace zanfcp {

/// The top of a document: an element without a key, whose children are those of "xmeml" (version 5). It alone turns
/// into a whole document, with the declaration and the document type.
class PELRootElement : public PELElement, public PELElementFactories<PELRootElement> {
public:
    using PELElement::PELElement;
    /// No key, no value, no identifier.
    PELRootElement() = default;
    using PELElementFactories<PELRootElement>::elementWithKey;
    using PELElementFactories<PELRootElement>::elementWithKeyIdentifier;
    using PELElementFactories<PELRootElement>::elementWithKeyStringValue;
    using PELElementFactories<PELRootElement>::elementWithKeyChildren;

    /// The whole document as nodes of libxml2; null only, with one error line, where it is not installed.
    XMLDocument XMLRepresentation() const;
    /// The text of the whole document, with a line end after the declaration, the document type and the last element.
    bool writeXML(const XMLSink& sink, XMLFormat format = XMLFormat::pretty) const override;

    const char* className() const override { return "PELRootElement"; }

    /// Checks the document with xmllint against the document type definition. Valid is what the tool is silent about.
    /// Blocks until the tool has ended.
    /// \param error  filled in when the document is not valid or could not be checked, else left alone; may be null
    bool validateAndReturnError(ValidationError* error) const;

    /// The document type definition of all validations: the installed share/zanfcp/FCPXMLv5.dtd, found from the place
    /// of this library, unless replaced. Empty when there is none.
    static std::string dtdPath();
    /// Replaces it; nothing given brings back the installed one.
    static void setDTDPath(std::optional<std::string> path);
    /// The validator, "/usr/bin/xmllint" unless replaced. Never looked up in the PATH.
    static std::string xmllintPath();
    static void setXmllintPath(std::optional<std::string> path);

protected:
    std::shared_ptr<PELElement> makeSameClass(std::string_view key, PELElementValue value,
                                              std::string_view identifier) const override;
};

} // namespace zanfcp
