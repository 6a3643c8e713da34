#pragma once

#include <cstddef>
#include <cstdint>

/// Where the bytes of an MXF file come from: a file, callbacks or an object of the caller.
/// A source is used from one thread at a time and never logs; it answers with the codes below.
class CMediaSource {
public:
    virtual ~CMediaSource();

    /// \param path  borrowed, NUL-terminated
    /// \param mode  not interpreted by the sources of this library; the demuxer passes 0
    /// \return 0 on success
    virtual int Open(const char* path, int mode) = 0;
    virtual int Close() = 0;
    /// \return the bytes read from the current position on, fewer than `count` at the end of the data;
    ///   negative on error
    virtual std::int64_t Read(void* buffer, std::size_t count) = 0;
    /// \return the bytes written; negative on error
    virtual std::int64_t Write(const void* buffer, std::size_t count) = 0;
    /// \param position  in bytes from the start of the data
    /// \return 0 on success
    virtual int Seek(std::int64_t position) = 0;
    /// The current position in bytes, -1 when unknown.
    virtual std::int64_t GetPos() = 0;
    /// The size of the data in bytes, -1 when unknown. It may grow between two calls.
    virtual std::int64_t GetSize() = 0;
    /// \param size  bytes of the read buffer, 0 for none
    /// \return 0 on success
    virtual int SetBufferSize(std::uint32_t size) = 0;
    /// The bytes written through this source since it was opened.
    virtual std::int64_t GetWritten() = 0;
    /// The bytes of the read buffer; -1 for a source without one, as here.
    virtual std::int32_t GetBufferSize();

protected:
    CMediaSource() = default;
    CMediaSource(const CMediaSource&) = delete;
    CMediaSource& operator=(const CMediaSource&) = delete;
};
