// What two threads share, used by several at once: `./zab check` runs these under ThreadSanitizer.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "page/passwords.h"
#include "settings/published.h"
#include "ui/in_flight.h"

namespace zab {
namespace {

/// Each work in a thread of its own; returns when all have ended.
template <class... Works>
void atOnce(Works... works) {
    std::array<std::thread, sizeof...(Works)> threads{std::thread(works)...};
    for (auto& thread : threads) thread.join();
}

struct Marked {
    ~Marked() { value = 0; }
    std::uint64_t value = 7;
};

TEST(Threads, ReadersNeverSeeASettingsRecordThatIsGone) {
    Published<Marked> published;
    std::atomic<int> reading{2}, foreign{0};
    const auto reads = [&] {
        for (int i = 0; i < 20000; ++i)
            if (published.read()->value != 7) ++foreign;
        --reading;
    };
    const auto publishes = [&] {
        while (reading > 0) published.publish(std::make_unique<Marked>());
    };
    atOnce(reads, reads, publishes);
    EXPECT_EQ(foreign, 0) << "each freed record is marked, and a sanitizer sees the read itself";
    published.publish(std::make_unique<Marked>());
    EXPECT_EQ(published.kept(), 1u) << "with nobody reading, only the current record is left";
}

TEST(Threads, ARecordInFlightIsTakenOnceAndByItsWindow) {
    constexpr int kRecords = 2000;
    InFlight<Marked> flights;
    std::array<std::atomic<std::uintptr_t>, kRecords> posted{};
    std::atomic<int> taken{0};
    const auto posts = [&] {
        for (auto& address : posted) {
            while (address == 0) address = flights.add(1, 0x467, std::make_unique<Marked>());
        }
    };
    const auto takes = [&] {
        for (auto& address : posted) {
            while (address == 0) std::this_thread::yield();
            EXPECT_EQ(flights.take(2, 0x467, address), nullptr) << "another window's";
            if (const auto record = flights.take(1, 0x467, address)) taken += record->value == 7;
        }
    };
    const auto endsAnotherWindow = [&] {
        while (taken < kRecords) EXPECT_TRUE(flights.takeAll(2).empty());
    };
    atOnce(posts, takes, takes, endsAnotherWindow);
    EXPECT_EQ(taken, kRecords);
    EXPECT_TRUE(flights.takeAll(1).empty());
}

TEST(Threads, ALoginIsReadWhole) {
    CLSPasswordsArray logins;
    std::atomic<int> torn{0};
    const auto learns = [&] {
        for (int i = 0; i < 1000; ++i) {
            const std::string same(40, static_cast<char>('a' + i % 26));
            logins.remember("http://site" + std::to_string(i % 7) + ".example/", {same, same});
        }
    };
    const auto asks = [&] {
        for (int i = 0; i < 1000; ++i) {
            const auto login = logins.find("http://site" + std::to_string(i % 7) + ".example/a.zip");
            if (login && login->user != login->password) ++torn;
        }
    };
    atOnce(learns, learns, asks, asks);
    EXPECT_EQ(torn, 0);
}

}  // namespace
}  // namespace zab
