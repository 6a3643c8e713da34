#include "xml/MajorElements.h"

#include "xml/CommonElements.h"
#include "xml/ElementKeys.h"
#include "xml/ElementText.h"
#include "xml/Parameter.h"

namespace zanfcp::MajorElements {
namespace {

std::shared_ptr<PELElement> folderElement(std::string_view key, std::string_view name)
{
    if (!Parameter::requireText(name, "name")) return nullptr;
    auto element = PELElement::elementWithKey(key);
    element->addChildWithKey(PELNameKey, std::string(name));
    element->addChild(childrenElement());
    return element;
}

std::shared_ptr<PELElement> timedElement(std::string_view key, std::string_view identifier, std::string_view name,
                                         NSInteger duration, const PELRate* rate)
{
    auto element = PELElement::elementWithKeyIdentifier(key, identifier);
    if (!name.empty()) element->addChildWithKey(PELNameKey, std::string(name));
    element->addChildWithKey(PELDurationKey, integerText(duration));
    if (rate != nullptr) element->addChild(CommonElements::rateElementWithRate(rate));
    return element;
}

} // namespace

std::shared_ptr<PELElement> importOptionsElementWithOptions(const PELDictionary& options)
{
    auto element = PELElement::elementWithKey(PELImportOptionsKey);
    for (const auto& [key, value] : options)
        element->addChildWithKey(key, value.isNumber() ? booleanText(value.boolValue()) : value.stringValue());
    return element;
}

std::shared_ptr<PELElement> projectElementWithName(std::string_view name)
{
    return folderElement(PELProjectKey, name);
}

std::shared_ptr<PELElement> binElementWithName(std::string_view name)
{
    return folderElement(PELBinKey, name);
}

std::shared_ptr<PELElement> childrenElement()
{
    return PELElement::elementWithKey(PELChildrenKey);
}

std::shared_ptr<PELElement> clipElementWithID(std::string_view identifier, std::string_view name, NSInteger duration,
                                              const PELRate* rate)
{
    return timedElement(PELClipKey, identifier, name, duration, rate);
}

std::shared_ptr<PELElement> sequenceElementWithID(std::string_view identifier, std::string_view name,
                                                  NSInteger duration, const PELRate* rate)
{
    return timedElement(PELSequenceKey, identifier, name, duration, rate);
}

} // namespace zanfcp::MajorElements
