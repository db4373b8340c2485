// The module's one lock: it guards the object-request lists and the per-document lists.
//
// Nobody waits for it longer than 1,000 ms, because the browser's main thread is among those who wait, and
// nobody holds it over a call into another process. What happens without it differs from list to list, so each
// use says it.
#pragma once

namespace zab {

enum class OnTimeout {
    skip,  // the work is left out
    goOn,  // the work is done without the lock
};

class SharedListLock {
  public:
    explicit SharedListLock(OnTimeout onTimeout) noexcept;
    ~SharedListLock();
    SharedListLock(const SharedListLock&) = delete;
    SharedListLock& operator=(const SharedListLock&) = delete;

    /// Whether the work may be done.
    explicit operator bool() const noexcept { return held_ || onTimeout_ == OnTimeout::goOn; }
    /// Whether the lock was obtained: false too while the mutex does not exist yet.
    [[nodiscard]] bool held() const noexcept { return held_; }

  private:
    OnTimeout onTimeout_;
    bool held_ = false;
};

/// Made with the first browser notification; closed when the browser shuts down.
void createSharedListMutex() noexcept;
void closeSharedListMutex() noexcept;

}  // namespace zab
