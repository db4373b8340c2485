// A record that one thread replaces while others read it.
//
// Each record is immutable. A reader announces itself, takes the pointer and leaves: two atomic additions, no
// lock, no wait. The writer swaps the pointer and frees an old record only when it then sees nobody reading:
// who comes later already finds the new one. An old record that somebody may still hold waits for the next
// swap, so that at most those swapped during one reading are ever kept.
//
// A shared pointer would need a lock inside to be swapped, and a copy kept per thread a destructor at thread
// end, which must not run in a module that may be gone by then.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace zab {

template <class Record>
class Published {
  public:
    /// A look at the current record, valid while this object lives. Keep it short: it keeps old records alive.
    class Reading {
      public:
        explicit Reading(const Published& owner) noexcept : owner_(owner) {
            owner_.readers_.fetch_add(1);
            record_ = owner_.current_.load();
        }
        ~Reading() { owner_.readers_.fetch_sub(1); }
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;

        const Record& operator*() const noexcept { return *record_; }
        const Record* operator->() const noexcept { return record_; }

      private:
        const Published& owner_;
        const Record* record_;
    };

    Published() = default;
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    [[nodiscard]] Reading read() const noexcept { return Reading(*this); }

    void publish(std::unique_ptr<const Record> record) {
        const std::lock_guard lock(writing_);
        kept_.push_back(std::move(record));
        current_.store(kept_.back().get());
        if (readers_.load() == 0) kept_.erase(kept_.begin(), kept_.end() - 1);
    }

    /// Records that exist now: the current one and those that a reader may still hold.
    [[nodiscard]] std::size_t kept() const {
        const std::lock_guard lock(writing_);
        return kept_.size();
    }

  private:
    static inline const Record kEmpty{};

    mutable std::mutex writing_;
    std::vector<std::unique_ptr<const Record>> kept_;  // the last one is current
    std::atomic<const Record*> current_{&kEmpty};
    mutable std::atomic<std::size_t> readers_{0};
};

}  // namespace zab
