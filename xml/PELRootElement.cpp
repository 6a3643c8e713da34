#include "xml/PELRootElement.h"

#include <mutex>
#include <utility>

namespace zanfcp {
namespace {

struct Settings {
    std::mutex mutex;
    std::optional<std::string> dtd;
    std::optional<std::string> xmllint;
};

Settings& settings()
{
    static Settings instance;
    return instance;
}

} // namespace

XMLDocument PELRootElement::XMLRepresentation() const
{
    return makeXMLDocument(*this);
}

bool PELRootElement::writeXML(const XMLSink& sink, XMLFormat format) const
{
    return writeXMLDocument(*this, format, sink);
}

bool PELRootElement::validateAndReturnError(ValidationError* error) const
{
    return validateDocument(xmllintPath(), dtdPath(), XMLString(), error);
}

std::string PELRootElement::dtdPath()
{
    static const std::string installed = installedDTD();
    const std::scoped_lock lock{settings().mutex};
    return settings().dtd.value_or(installed);
}

void PELRootElement::setDTDPath(std::optional<std::string> path)
{
    const std::scoped_lock lock{settings().mutex};
    settings().dtd = std::move(path);
}

std::string PELRootElement::xmllintPath()
{
    const std::scoped_lock lock{settings().mutex};
    return settings().xmllint.value_or("/usr/bin/xmllint");
}

void PELRootElement::setXmllintPath(std::optional<std::string> path)
{
    const std::scoped_lock lock{settings().mutex};
    settings().xmllint = std::move(path);
}

std::shared_ptr<PELElement> PELRootElement::makeSameClass(std::string_view key, PELElementValue value,
                                                          std::string_view identifier) const
{
    return makeElement<PELRootElement>(key, std::move(value), identifier);
}

} // namespace zanfcp
