#include "mxf/io/BufferedFileSource.h"

#include <new>
#include <utility>

#include <sys/stat.h>
#include <sys/types.h>

static_assert(sizeof(off_t) == 8, "files above 2 GiB need 64-bit offsets");

CBufferedFileSource::~CBufferedFileSource() = default;

int CBufferedFileSource::Open(const char* path, int /*mode*/)
{
    if (file_) return 1;
    if (path == nullptr) return -1;
    file_.reset(std::fopen(path, "rb"));
    if (!file_) return -1;
    if (bufferSize_ != kDefaultBuffering) (void)ApplyBufferSize(true); // a stream without its buffer still reads
    return 0;
}

int CBufferedFileSource::Close()
{
    file_.reset();
    buffer_.reset();
    return 0;
}

std::int64_t CBufferedFileSource::Read(void* buffer, std::size_t count)
{
    if (!file_) return -1;
    std::clearerr(file_.get()); // the file may have grown since its end was met
    return static_cast<std::int64_t>(std::fread(buffer, 1, count, file_.get()));
}

std::int64_t CBufferedFileSource::Write(const void* /*buffer*/, std::size_t /*count*/)
{
    return -12345;
}

int CBufferedFileSource::Seek(std::int64_t position)
{
    return file_ ? fseeko(file_.get(), position, SEEK_SET) : -1;
}

std::int64_t CBufferedFileSource::GetPos()
{
    return file_ ? ftello(file_.get()) : -1;
}

std::int64_t CBufferedFileSource::GetSize()
{
    struct stat about {};
    if (!file_ || ::fstat(::fileno(file_.get()), &about) != 0) return -1;
    return about.st_size;
}

int CBufferedFileSource::SetBufferSize(std::uint32_t size)
{
    bufferSize_ = size;
    return file_ ? ApplyBufferSize(false) : 0;
}

int CBufferedFileSource::ApplyBufferSize(bool isFresh)
{
    std::unique_ptr<char[]> fresh;
    if (bufferSize_ != 0) {
        fresh.reset(new (std::nothrow) char[bufferSize_]);
        if (!fresh) return -1;
    }
    // Bytes that the old buffer read ahead are given up, so the place is noted and sought again.
    const off_t position = isFresh ? -1 : ftello(file_.get());
    if (std::setvbuf(file_.get(), fresh.get(), fresh ? _IOFBF : _IONBF, bufferSize_) != 0) return -1;
    buffer_ = std::move(fresh);
    return position < 0 ? 0 : fseeko(file_.get(), position, SEEK_SET);
}

std::unique_ptr<CBufferedFileSource2> CBufferedFileSource2::Create(const char* path, int mode)
{
    std::unique_ptr<CBufferedFileSource2> source{new CBufferedFileSource2};
    // The cache in front is buffer enough: nothing is read twice, nor kept of a file that is written anew meanwhile.
    (void)source->CBufferedFileSource::SetBufferSize(0);
    if (source->Open(path, mode) != 0) return nullptr;
    return source;
}
