#pragma once

#include "mxf/demuxer/Records.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

inline void require(bool holds)
{
    if (!holds) std::abort();
}

/// The bytes of one run, behind the callbacks of external_io.
struct MemoryFile {
    const std::uint8_t* data;
    std::size_t size;
    std::size_t place = 0;

    /// A configuration that reads from here; this must outlive what is opened with it.
    mxf_demuxer_config config()
    {
        mxf_demuxer_config made{};
        made.use_external_io = 1;
        made.io.open = [](void*, const char*, void** handle) -> std::int32_t { return *handle = nullptr, 0; };
        made.io.seek = [](void* context, void*, std::int64_t to) -> std::int32_t {
            MemoryFile& self = of(context);
            self.place = to < 0 ? self.size : std::min(self.size, static_cast<std::size_t>(to));
            return 0;
        };
        made.io.read = [](void* context, void*, void* buffer, std::size_t count) -> std::int32_t {
            MemoryFile& self = of(context);
            const std::size_t got = std::min({count, self.size - self.place, std::size_t{0x7FFFFFFF}});
            if (got > 0) std::memcpy(buffer, self.data + self.place, got);
            self.place += got;
            return static_cast<std::int32_t>(got);
        };
        made.io.close = [](void*, void**) -> std::int32_t { return 0; };
        made.io.get_size = [](void* context, void*) { return static_cast<std::int64_t>(of(context).size); };
        made.io.context = this;
        return made;
    }

private:
    static MemoryFile& of(void* context) { return *static_cast<MemoryFile*>(context); }
};
