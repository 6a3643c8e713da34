#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

/// A source of class TSource with a read cache in front of it. Small reads (below three quarters of the
/// cache) are served from memory where they can be; large ones go straight into the caller's buffer. A seek
/// only records the place, so nothing is ever read ahead of one.
template <class TSource> class CCachedReader : public TSource {
public:
    static constexpr std::uint32_t kDefaultCacheSize = 8192;

    CCachedReader() { (void)CCachedReader::SetBufferSize(kDefaultCacheSize); }

    int Open(const char* path, int mode) override
    {
        const int status = TSource::Open(path, mode);
        if (status == 0) Forget();
        return status;
    }

    int Close() override
    {
        Forget();
        return TSource::Close();
    }

    /// A read that ends exactly at the last cached byte is not served from the cache. A small read moves the
    /// position on by the whole `count`, even when fewer bytes were left.
    /// \return the bytes read; 0 when the source cannot be sought to the position; -1 when the position is
    ///   unknown; the source's own answer when it has nothing to give
    std::int64_t Read(void* buffer, std::size_t count) override
    {
        const std::int64_t position = GetPos();
        if (position < 0) return -1;
        position_ = position;
        return IsSmall(count) ? ReadThroughCache(buffer, count) : ReadDirectly(buffer, count);
    }

    /// Writes at the recorded position and empties the cache, which may hold what was there before.
    std::int64_t Write(const void* buffer, std::size_t count) override
    {
        cachedCount_ = 0;
        if (position_ >= 0 && TSource::Seek(position_) != 0) return -1;
        position_ = -1;
        return TSource::Write(buffer, count);
    }

    /// \return 0; -1 for a negative position, which changes nothing
    int Seek(std::int64_t position) override
    {
        if (position < 0) return -1;
        position_ = position;
        return 0;
    }

    std::int64_t GetPos() override { return position_ < 0 ? TSource::GetPos() : position_; }

    /// Sets the size of the cache in bytes, 0 for none, and empties it; the same size again changes nothing.
    /// \return 0; -1 when there is no memory, which leaves no cache
    int SetBufferSize(std::uint32_t size) override
    {
        if (size == cacheSize_) return 0;
        cache_.reset();
        cacheSize_ = 0;
        cachedCount_ = 0;
        if (size == 0) return 0;
        cache_.reset(new (std::nothrow) std::uint8_t[size]);
        if (!cache_) return -1;
        cacheSize_ = size;
        return 0;
    }

    std::int32_t GetBufferSize() override
    {
        return static_cast<std::int32_t>(std::min<std::uint32_t>(cacheSize_, std::numeric_limits<std::int32_t>::max()));
    }

private:
    void Forget()
    {
        position_ = -1;
        cachedCount_ = 0;
    }

    bool IsSmall(std::size_t count) const
    {
        return count < cacheSize_ && std::uint64_t{4} * count < std::uint64_t{3} * cacheSize_;
    }

    std::int64_t ReadThroughCache(void* buffer, std::size_t count)
    {
        const auto wanted = static_cast<std::int64_t>(count);
        if (position_ >= cachedFrom_ && wanted < cachedCount_ - (position_ - cachedFrom_)) {
            std::memcpy(buffer, cache_.get() + (position_ - cachedFrom_), count);
            position_ += wanted;
            return wanted;
        }
        cachedCount_ = 0;
        if (TSource::Seek(position_) != 0) return 0;
        const std::int64_t filled = TSource::Read(cache_.get(), cacheSize_);
        if (filled < 1) return filled;
        cachedFrom_ = position_;
        cachedCount_ = std::min<std::int64_t>(filled, cacheSize_);
        const std::int64_t copied = std::min(wanted, cachedCount_);
        std::memcpy(buffer, cache_.get(), static_cast<std::size_t>(copied));
        Advance(wanted);
        return copied;
    }

    std::int64_t ReadDirectly(void* buffer, std::size_t count)
    {
        cachedCount_ = 0;
        if (TSource::Seek(position_) != 0) return 0;
        const std::int64_t got = TSource::Read(buffer, count);
        if (got == static_cast<std::int64_t>(count))
            Advance(got);
        else
            position_ = -1;
        return got;
    }

    void Advance(std::int64_t count)
    {
        const std::int64_t most = std::numeric_limits<std::int64_t>::max();
        position_ = count > most - position_ ? most : position_ + count;
    }

    std::unique_ptr<std::uint8_t[]> cache_;
    std::uint32_t cacheSize_ = 0;
    std::int64_t cachedFrom_ = 0;  // the place of the first cached byte in the source
    std::int64_t position_ = -1;   // the place of the next read; -1: ask the source
    std::int64_t cachedCount_ = 0; // cached bytes that are valid
};
