#include "mxf/io/ExternalIoSource.h"

#include <algorithm>
#include <limits>

namespace {

/// Callbacks count in 32 bits.
std::size_t OneCall(std::size_t count)
{
    return std::min<std::size_t>(count, std::numeric_limits<std::int32_t>::max());
}

} // namespace

CExternalIoSource::~CExternalIoSource()
{
    (void)CExternalIoSource::Close();
}

CExternalIoSource::EMode CExternalIoSource::ModeOf(const external_io& io)
{
    const bool hasNone = !io.seek && !io.read && !io.close && !io.get_size;
    const bool hasAll = io.seek && io.read && io.close && io.get_size;
    if (hasAll) return EMode::callbacks;
    return hasNone && io.context ? EMode::object : EMode::none;
}

int CExternalIoSource::Init(const char* path, const external_io& io, int mode)
{
    (void)Close();
    io_ = io;
    mode_ = ModeOf(io);
    object_ = mode_ == EMode::object ? static_cast<CMediaSource*>(io.context) : nullptr;
    return Open(path, mode) == 0 ? 0 : -1;
}

int CExternalIoSource::Open(const char* path, int mode)
{
    if (isOpen_) return 1;
    switch (mode_) {
    case EMode::none: return -1;
    case EMode::callbacks:
        if (!io_.open || io_.open(io_.context, path, &handle_) != 0) return -1;
        position_ = 0;
        break;
    case EMode::object:
        if (object_->Open(path, mode) != 0) return -1;
        break;
    }
    written_ = 0;
    isOpen_ = true;
    return 0;
}

int CExternalIoSource::Close()
{
    if (!isOpen_) return 0;
    isOpen_ = false;
    position_ = -1;
    if (object_) return object_->Close();
    return io_.close(io_.context, &handle_);
}

std::int64_t CExternalIoSource::Read(void* buffer, std::size_t count)
{
    if (!isOpen_) return 0;
    if (object_) {
        const std::int64_t got = object_->Read(buffer, count);
        return got > 0 && static_cast<std::uint64_t>(got) > count ? -1 : got;
    }
    return Advance(io_.read(io_.context, handle_, buffer, OneCall(count)), count);
}

std::int64_t CExternalIoSource::Write(const void* buffer, std::size_t count)
{
    if (!isOpen_) return 0;
    std::int64_t done = 0;
    if (object_)
        done = object_->Write(buffer, count);
    else if (io_.write)
        done = Advance(io_.write(io_.context, handle_, buffer, OneCall(count)), count);
    if (done > 0) written_ += done;
    return done;
}

std::int64_t CExternalIoSource::Advance(std::int64_t done, std::size_t asked)
{
    if (done <= 0) return done; // an error code moves nothing
    if (static_cast<std::uint64_t>(done) > asked) {
        position_ = -1;
        return -1;
    }
    const std::int64_t most = std::numeric_limits<std::int64_t>::max();
    if (position_ >= 0) position_ = done > most - position_ ? -1 : position_ + done;
    return done;
}

int CExternalIoSource::Seek(std::int64_t position)
{
    if (!isOpen_) return -1;
    if (object_) return object_->Seek(position);
    const int status = io_.seek(io_.context, handle_, position);
    if (status == 0) position_ = position < 0 ? std::max<std::int64_t>(GetSize(), -1) : position;
    return status;
}

std::int64_t CExternalIoSource::GetPos()
{
    if (!isOpen_) return -1;
    return object_ ? object_->GetPos() : position_;
}

std::int64_t CExternalIoSource::GetSize()
{
    if (!isOpen_) return -1;
    return object_ ? object_->GetSize() : io_.get_size(io_.context, handle_);
}

int CExternalIoSource::SetBufferSize(std::uint32_t /*size*/)
{
    return -1;
}

std::unique_ptr<CExternalIoSource2> CExternalIoSource2::Create(const char* path, const external_io& io, int mode)
{
    std::unique_ptr<CExternalIoSource2> source{new CExternalIoSource2};
    if (source->Init(path, io, mode) != 0) return nullptr;
    return source;
}
