// A window of the browser, and the user before it. Under Windows real ones, with real input: needs a display.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "browser/top_window.h"

namespace zab::testbed {

struct Area {
    std::int32_t left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const Area&) const = default;
};

bool isWindow(NativeWindow window);
/// In the client area of its parent.
Area areaOf(NativeWindow window);
std::u16string captionOf(NativeWindow window);
std::int32_t scrollBarWidth();

/// Of a look at what somebody else does.
inline constexpr std::chrono::milliseconds kLook(10), kPatience(10'000);

/// Looks until there is something to see; gives that, or nothing when it does not come in time.
template <class Look>
auto waitsFor(Look look, std::chrono::milliseconds patience = kPatience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    auto found = look();
    while (!found && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(kLook);
        found = look();
    }
    return found;
}

/// Serves this thread's windows until `ended`, as a browser's main thread does while its user acts. False: it
/// did not in time.
bool serves(const std::function<bool()>& ended, std::chrono::milliseconds patience = kPatience);

/// Does `work` as somebody else beside this thread, which serves its windows until that has ended.
void beside(const std::function<void()>& work);

/// The same; gives its result.
template <class Work>
auto meanwhile(Work work) {
    decltype(work()) result{};
    beside([&] { result = work(); });
    return result;
}

/// Clicks on a button and gives the labels of the menu that opens; none when it does not.
std::vector<std::u16string> opensMenu(NativeWindow button);
/// Clicks on an item of the open menu, from 0.
bool choosesItem(std::size_t item);
/// Leaves the menu of a button by a click beside it.
void leavesMenu(NativeWindow button);
void closesButton(NativeWindow button);

}  // namespace zab::testbed
