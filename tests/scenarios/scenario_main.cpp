// Runs the scenarios. One that hangs ends the program with an exit code of its own and says where.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>

#include "binding/wide_win32.h"

namespace {

constexpr std::chrono::seconds kPatience{120};  // for one scenario; most take milliseconds
constexpr int kHung = 97;

class Watchdog : public testing::EmptyTestEventListener {
  public:
    Watchdog() {
        std::thread([this] { watch(); }).detach();
    }
    void OnTestStart(const testing::TestInfo& test) override {
        suite_ = test.test_suite_name();
        name_ = test.name();
        started_ = now();
    }
    void OnTestEnd(const testing::TestInfo&) override { started_ = 0; }

  private:
    static long long now() {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
                   std::chrono::steady_clock::now().time_since_epoch())
            .count();
    }
    void watch() {
        for (;; std::this_thread::sleep_for(std::chrono::milliseconds(500))) {
            const auto started = started_.load();
            if (started == 0 || now() - started < std::chrono::milliseconds(kPatience).count()) continue;
            std::printf("[  HUNG    ] %s.%s\n", suite_.load(), name_.load());
            std::fflush(stdout);
            TerminateProcess(GetCurrentProcess(), kHung);
        }
    }

    std::atomic<long long> started_{0};
    std::atomic<const char*> suite_{""}, name_{""};
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new Watchdog);
    return RUN_ALL_TESTS();
}
