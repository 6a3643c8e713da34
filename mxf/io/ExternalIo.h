#pragma once

#include <cstddef>
#include <cstdint>

/// Reading and writing done by the caller. In callback mode seek, read, close and get_size are set, and every
/// callback receives `context` first; `open` must be set too. In object mode those four are null, and
/// `context` points to a CMediaSource that does the work. Any other combination is refused.
///
/// The record stands behind five 32-bit fields in the configuration of the demuxer without a gap, so its
/// members are aligned to 4 bytes only.
#pragma pack(push, 4)
struct external_io {
    /// Opens `path` and stores what the other callbacks need in `*handle`. Returns 0 on success.
    std::int32_t (*open)(void* context, const char* path, void** handle);
    void* unused; ///< never read
    /// Moves to `position`, or to the end of the data when it is negative. Returns 0 on success.
    std::int32_t (*seek)(void* context, void* handle, std::int64_t position);
    /// Returns the number of bytes read, fewer than `count` at the end, negative on error.
    std::int32_t (*read)(void* context, void* handle, void* buffer, std::size_t count);
    std::int32_t (*close)(void* context, void** handle);
    std::int64_t (*get_size)(void* context, void* handle); ///< bytes, -1 when unknown
    /// Returns the number of bytes written, negative on error. May be null.
    std::int32_t (*write)(void* context, void* handle, const void* buffer, std::size_t count);
    void* context; ///< handed to the callbacks; in object mode the CMediaSource itself, borrowed
};
#pragma pack(pop)

static_assert(sizeof(external_io) == 8 * sizeof(void*));
