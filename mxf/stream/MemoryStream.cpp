#include "mxf/stream/MemoryStream.h"

#include "mxf/Status.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <utility>

namespace TamrelMxf {

SMemoryStream::~SMemoryStream() = default;

void SMemoryStream::Reset()
{
    write_ = base_.get();
    read_ = nullptr;
    held_ = 0;
}

int SMemoryStream::Notify(int event, void* data, int length)
{
    return notify == nullptr ? 1 : notify(context, event, data, length);
}

unsigned char* SMemoryStream::RequestFree(int count)
{
    if (count < 0) return nullptr;
    if (read_ != nullptr) {
        if (write_ <= read_) return nullptr;
        const std::ptrdiff_t atEnd = end_ - write_;
        if (atEnd >= count) return write_;
        if ((read_ - base_.get()) + atEnd >= count) {
            if (held_ == 0)
                Reset();
            else
                MoveToFront();
            return write_;
        }
    } else if (base_ && capacity_ >= static_cast<std::uint32_t>(count)) {
        return write_ = base_.get();
    }
    const std::uint64_t grown = Grown(count);
    if (grown >= maximum_ || Realloc(static_cast<std::uint32_t>(grown)) == 0) return nullptr;
    return write_;
}

bool SMemoryStream::HasRoom(int count) const
{
    return count >= 0 && std::cmp_less_equal(count, capacity_ - held_);
}

bool SMemoryStream::CanHaveRoom(int count) const
{
    return HasRoom(count) || (count >= 0 && Grown(count) < maximum_);
}

int SMemoryStream::ConfirmData(int count)
{
    if (count < 1) return kSuccess;
    const auto added = static_cast<std::uint32_t>(count);
    if (held_ > 0) {
        if (read_ > write_ || end_ - write_ < count) return kNoRoom;
    } else {
        if (capacity_ < added) return kNoRoom;
        read_ = write_ = base_.get();
    }
    write_ += count;
    held_ += added;
    total_ += count;
    return kSuccess;
}

int SMemoryStream::CopyData(unsigned char* data, int length)
{
    if (data == nullptr && length > 0) return kNullArgument;
    if (copy != nullptr && copy(context, data, length) == length) return length;
    unsigned char* const room = RequestFree(length);
    if (room == nullptr) return kNoRoom;
    if (length > 0) std::memcpy(room, data, static_cast<std::size_t>(length));
    const int status = ConfirmData(length);
    return status == kSuccess ? length : status;
}

int SMemoryStream::RequestData(unsigned char** data, int* length)
{
    if (data == nullptr || length == nullptr) return kNullArgument;
    const bool isEmpty = held_ == 0;
    *data = isEmpty ? nullptr : read_;
    *length = static_cast<int>(std::min<std::uint32_t>(held_, std::numeric_limits<int>::max()));
    return isEmpty ? 1 : 0;
}

int SMemoryStream::ReleaseData(int count)
{
    if (count < 0 || static_cast<std::uint32_t>(count) > held_) return kFailed;
    held_ -= static_cast<std::uint32_t>(count);
    if (held_ == 0) {
        Reset();
        return kSuccess;
    }
    read_ += count;
    const auto capacity = static_cast<std::ptrdiff_t>(capacity_);
    if ((end_ - write_) * 10 < capacity && (read_ - base_.get()) * 10 > capacity) MoveToFront();
    return kSuccess;
}

void SMemoryStream::Init(void* newContext, NotifyCallback newNotify, unsigned int initialSize, unsigned int maximum)
{
    context = newContext;
    notify = newNotify;
    const std::uint32_t capacity = std::max(initialSize, kLeastCapacity);
    if (capacity <= maximum) maximum_ = maximum;
    Allocate(capacity);
}

int SMemoryStream::Realloc(unsigned int size)
{
    if (size >= maximum_ || size < held_) return 0;
    auto buffer = std::make_unique_for_overwrite<unsigned char[]>(std::size_t{size} + kGuardBytes);
    if (held_ > 0) std::memcpy(buffer.get(), read_, held_);
    base_ = std::move(buffer);
    capacity_ = size;
    end_ = base_.get() + size;
    read_ = held_ > 0 ? base_.get() : nullptr;
    write_ = base_.get() + held_;
    return 1;
}

int SMemoryStream::AddByte(unsigned char byte)
{
    unsigned char* const room = RequestFree(1);
    if (room == nullptr) return kNoRoom;
    *room = byte;
    const int status = ConfirmData(1);
    return status == kSuccess ? 1 : status;
}

void SMemoryStream::Allocate(std::uint32_t capacity)
{
    base_ = std::make_unique_for_overwrite<unsigned char[]>(std::size_t{capacity} + kGuardBytes);
    capacity_ = capacity;
    end_ = base_.get() + capacity;
    SMemoryStream::Reset();
}

void SMemoryStream::Free()
{
    base_.reset();
    end_ = nullptr;
    capacity_ = 0;
    SMemoryStream::Reset();
}

void SMemoryStream::MoveToFront()
{
    std::memmove(base_.get(), read_, held_);
    read_ = base_.get();
    write_ = read_ + held_;
}

} // namespace TamrelMxf
