#include "xml/Parameter.h"

#include "platform/Log.h"

namespace zanfcp::Parameter {

bool requireText(std::string_view text, const char* name)
{
    if (text.empty()) ZAN_LOG_ERROR("Parameter must not be nil or have zero length: %s", name);
    return !text.empty();
}

bool requireObject(const void* object, const char* name)
{
    if (object == nullptr) ZAN_LOG_ERROR("Parameter must not be NULL: %s", name);
    return object != nullptr;
}

bool requireDefined(NSInteger value, const char* name)
{
    if (value == NSNotFound) ZAN_LOG_ERROR("Parameter must not be undefined: %s", name);
    return value != NSNotFound;
}

bool requireEither(bool hasFirst, const char* firstName, bool hasSecond, const char* secondName)
{
    if (hasFirst || hasSecond) return true;
    ZAN_LOG_ERROR("One of two parameters must not be nil or have zero length: %s, %s", firstName, secondName);
    return false;
}

bool requireEntries(std::size_t count, const char* name)
{
    if (count == 0) ZAN_LOG_ERROR("Parameter must not be nil or have a count of zero: %s", name);
    return count != 0;
}

} // namespace zanfcp::Parameter
