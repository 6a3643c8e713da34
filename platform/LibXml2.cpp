#include "platform/LibXml2.h"

#include <dlfcn.h>
#include <string>

#ifndef ZANFCP_LIBXML2
#error "the build says which libxml2 its headers belong to"
#endif

namespace zanfcp {
namespace {

struct Loaded {
    LibXml2 functions = {};
    std::string fault = {}; ///< why it could not be loaded; empty when it was
};

Loaded load()
{
    Loaded loaded;
    void* const library = ::dlopen(ZANFCP_LIBXML2, RTLD_NOW | RTLD_LOCAL);
    const auto find = [&](const char* name) {
        void* const function = library == nullptr ? nullptr : ::dlsym(library, name);
        if (function == nullptr && loaded.fault.empty()) {
            const char* const reason = ::dlerror();
            loaded.fault = std::string("libxml2 could not be loaded: ") + (reason == nullptr ? name : reason);
        }
        return function;
    };
#define ZANFCP_FIND(name) loaded.functions.name = reinterpret_cast<decltype(&::name)>(find(#name));
    ZANFCP_LIBXML2_FUNCTIONS(ZANFCP_FIND)
#undef ZANFCP_FIND
    if (loaded.fault.empty()) loaded.functions.xmlInitParser(); // before there can be two threads in it
    return loaded;
}

} // namespace

Result<const LibXml2*> libXml2()
{
    static const Loaded loaded = load();
    if (!loaded.fault.empty()) return Error{.fault = Fault::notFound, .what = loaded.fault};
    return &loaded.functions;
}

} // namespace zanfcp
