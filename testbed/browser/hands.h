// A real window of the browser, and the user before it: clicks on what is on the screen, with real input. Needs
// a display.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <string>
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

/// Serves this thread's windows until `ended`, as a browser's main thread does while its user acts. False: it
/// did not in time.
bool serves(const std::function<bool()>& ended, std::chrono::milliseconds patience = std::chrono::seconds(10));

/// Serves this thread's windows while `work` runs on another one; gives its result.
template <class Work>
auto meanwhile(Work work) {
    auto result = std::async(std::launch::async, std::move(work));
    serves([&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
    return result.get();
}

/// Clicks on a button and gives the labels of the menu that opens; none when it does not.
std::vector<std::u16string> opensMenu(NativeWindow button);
/// Clicks on an item of the open menu, from 0.
bool choosesItem(std::size_t item);
/// Leaves the menu of a button by a click beside it.
void leavesMenu(NativeWindow button);

}  // namespace zab::testbed
