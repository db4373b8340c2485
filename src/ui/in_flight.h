// Records on their way to a window: whoever posts one gives it to this table and posts its address, whoever
// receives an address takes the record out.
//
// An address that the table does not hold for that window and message is a stranger's, and is never followed.
// A lock of its own, held for a few comparisons: whoever adds bounds how many there are.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "page/platform.h"

namespace zab {

template <class Record>
class InFlight {
  public:
    /// The record's address, for the message; 0: there is none.
    std::uintptr_t add(WindowHandle window, std::uint32_t message, std::unique_ptr<Record> record) {
        const std::lock_guard lock(mutex_);
        if (record == nullptr) return 0;
        const auto address = reinterpret_cast<std::uintptr_t>(record.get());
        flights_.push_back({window, message, std::move(record)});
        return address;
    }

    /// The caller owns the result; null when there is no such record.
    std::unique_ptr<Record> take(WindowHandle window, std::uint32_t message, std::uintptr_t address) {
        const std::lock_guard lock(mutex_);
        const auto found = std::ranges::find_if(flights_, [=](const Flight& flight) {
            return flight.window == window && flight.message == message &&
                   reinterpret_cast<std::uintptr_t>(flight.record.get()) == address;
        });
        if (found == flights_.end()) return nullptr;
        auto record = std::move(found->record);
        flights_.erase(found);
        return record;
    }

    /// All of a window, in order of their adding.
    std::vector<std::unique_ptr<Record>> takeAll(WindowHandle window) {
        const std::lock_guard lock(mutex_);
        std::vector<std::unique_ptr<Record>> records;
        for (Flight& flight : flights_)
            if (flight.window == window) records.push_back(std::move(flight.record));
        std::erase_if(flights_, [](const Flight& flight) { return flight.record == nullptr; });
        return records;
    }

    void clear() {
        const std::lock_guard lock(mutex_);
        flights_.clear();
    }

  private:
    struct Flight {
        WindowHandle window;
        std::uint32_t message;
        std::unique_ptr<Record> record;
    };

    std::mutex mutex_;
    std::vector<Flight> flights_;
};

}  // namespace zab
