#pragma once

#include "CachedReader.h"
#include "ExternalIo.h"
#include "MediaSource.h"

#include <memory>

/// A source whose every operation is a callback or an object of the caller, see external_io.
class CExternalIoSource : public CMediaSource {
public:
    CExternalIoSource() = default;
    /// Closes what is still open; the caller's object itself is left alive.
    ~CExternalIoSource() override;

    /// Takes over a copy of `io`, chooses the mode and opens `path`. What was open before is closed.
    /// \return 0 on success; -1 for a combination of members that is neither mode, without an open callback
    ///   in callback mode, or when opening fails
    int Init(const char* path, const external_io& io, int mode);

    /// Opens `path` with the members given to Init.
    /// \return 0 on success, 1 when open already, -1 on failure
    int Open(const char* path, int mode) override;
    /// \return what the caller's close answers; 0 when nothing was open
    int Close() override;
    /// \return the bytes read; 0 when closed; -1 also when the caller claims more than it was asked for
    std::int64_t Read(void* buffer, std::size_t count) override;
    /// \return the bytes written; 0 without a write callback or when closed
    std::int64_t Write(const void* buffer, std::size_t count) override;
    /// In callback mode a negative position stands for the end of the data.
    int Seek(std::int64_t position) override;
    std::int64_t GetPos() override;
    std::int64_t GetSize() override;
    /// The caller buffers as it likes. \return -1
    int SetBufferSize(std::uint32_t size) override;
    std::int64_t GetWritten() override { return written_; }

private:
    enum class EMode { none, callbacks, object };

    static EMode ModeOf(const external_io& io);
    /// Moves the kept position by what a callback says it did.
    std::int64_t Advance(std::int64_t done, std::size_t asked);

    external_io io_{};
    EMode mode_ = EMode::none;
    bool isOpen_ = false;
    CMediaSource* object_ = nullptr; // object mode only
    void* handle_ = nullptr;         // callback mode only
    std::int64_t position_ = -1;     // callback mode only
    std::int64_t written_ = 0;
};

/// A source supplied by the caller, read through a cache of 8,192 bytes.
class CExternalIoSource2 final : public CCachedReader<CExternalIoSource> {
public:
    /// \param path  borrowed; handed to the caller's open
    /// \param io    copied
    /// \param mode  handed to the caller's object, not interpreted
    /// \return the open source; null where CExternalIoSource::Init fails
    static std::unique_ptr<CExternalIoSource2> Create(const char* path, const external_io& io, int mode);

private:
    CExternalIoSource2() = default;
};
