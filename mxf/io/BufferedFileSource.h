#pragma once

#include "CachedReader.h"
#include "MediaSource.h"

#include <cstdio>
#include <memory>

/// A file opened by path for reading, through the C standard I/O library.
class CBufferedFileSource : public CMediaSource {
public:
    CBufferedFileSource() = default;
    ~CBufferedFileSource() override;

    /// \return 0 on success, 1 when a file is open already (it stays open), -1 when the path cannot be opened
    int Open(const char* path, int mode) override;
    int Close() override;
    /// \return the bytes read, fewer at the end of the file or on an error; -1 without a file
    std::int64_t Read(void* buffer, std::size_t count) override;
    /// Not supported. \return -12345, always
    std::int64_t Write(const void* buffer, std::size_t count) override;
    /// \return 0 on success, -1 without a file or for a place that cannot be sought
    int Seek(std::int64_t position) override;
    std::int64_t GetPos() override;
    std::int64_t GetSize() override;
    /// Sets the buffer of the standard I/O stream, now when a file is open, otherwise at the next open.
    /// \param size  bytes; 0 reads without a buffer. An open that finds 1 leaves the library's own buffer alone.
    /// \return 0 on success; -1 when the stream keeps the buffer that it had
    int SetBufferSize(std::uint32_t size) override;
    std::int64_t GetWritten() override { return 0; }

private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    int ApplyBufferSize(bool isFresh);

    static constexpr std::uint32_t kDefaultBuffering = 1;

    std::unique_ptr<char[]> buffer_; // in use by the stream, so it is declared first and freed last
    std::unique_ptr<std::FILE, CloseFile> file_;
    std::uint32_t bufferSize_ = kDefaultBuffering;
};

/// A file opened by path, read through a cache of 8,192 bytes.
class CBufferedFileSource2 final : public CCachedReader<CBufferedFileSource> {
public:
    /// \param path  borrowed
    /// \param mode  not interpreted
    /// \return the open source; null when the path is null or cannot be opened
    static std::unique_ptr<CBufferedFileSource2> Create(const char* path, int mode);

private:
    CBufferedFileSource2() = default;
};
