#pragma once

#include <atomic>
#include <mutex>
#include <thread>

namespace TamrelMxf {

/// A lock that its owner may take again, and that knows its owner. Fits std::unique_lock.
class COutputLock {
public:
    void lock()
    {
        mutex_.lock();
        Enter();
    }
    bool try_lock()
    {
        if (!mutex_.try_lock()) return false;
        Enter();
        return true;
    }
    /// Only for the owner.
    void unlock()
    {
        if (--depth_ == 0) owner_.store({});
        mutex_.unlock();
    }
    bool IsMine() const { return owner_.load() == std::this_thread::get_id(); }

private:
    void Enter()
    {
        owner_.store(std::this_thread::get_id());
        ++depth_;
    }

    std::recursive_mutex mutex_;
    std::atomic<std::thread::id> owner_{};
    int depth_ = 0; // guarded by mutex_
};

} // namespace TamrelMxf
