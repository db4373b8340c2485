// A browser's day with faults in it, natively: nothing crashes, nothing leaks, no download is lost or made
// twice. `ZAB_NAVIGATIONS` makes it longer, `ZAB_SEED` another one.
#include <gtest/gtest.h>

#include <cstdlib>

#include "soak/day.h"

// Absent without sanitizers, as coverage builds it.
extern "C" int __lsan_do_recoverable_leak_check() __attribute__((weak));

namespace zab::testbed {
namespace {

std::uint32_t numberFrom(const char* variable, std::uint32_t otherwise) {
    const char* text = std::getenv(variable);
    return text == nullptr ? otherwise : static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10));
}

TEST(BrowsersDay, LosesNothingAndKeepsNothingWhateverFails) {
    constexpr double kFaultShare = 0.6;
    const std::uint32_t navigations = numberFrom("ZAB_NAVIGATIONS", 400);
    Day day(numberFrom("ZAB_SEED", 1), kFaultShare);
    while (day.navigations() < navigations) day.step();
    day.ends();
    EXPECT_EQ(day.wrongs(), std::vector<std::string>{});
    EXPECT_GT(day.faults(), navigations / 5) << "the others came too late";
    EXPECT_GT(day.transfers(), 0u);
    EXPECT_TRUE(__lsan_do_recoverable_leak_check == nullptr || __lsan_do_recoverable_leak_check() == 0);
    if (navigations > 1000)
        std::printf("%llu navigations, %llu transfers, %llu faults\n",
                    static_cast<unsigned long long>(day.navigations()),
                    static_cast<unsigned long long>(day.transfers()),
                    static_cast<unsigned long long>(day.faults()));
}

}  // namespace
}  // namespace zab::testbed
