#include "browser/hands.h"

#include <future>
#include <thread>

#include "binding/wide_win32.h"

namespace zab::testbed {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 10s;
constexpr auto kLook = 10ms;
constexpr UINT kMenuOfWindow = 0x01E1;  // MN_GETHMENU

HWND windowOf(NativeWindow handle) { return reinterpret_cast<HWND>(handle); }

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

void click(POINT point) {
    SetCursorPos(point.x, point.y);
    INPUT input[2]{};
    for (INPUT& one : input) one.type = INPUT_MOUSE;
    input[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    input[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(2, input, sizeof(INPUT));
}

POINT middleOf(const RECT& area) { return {(area.left + area.right) / 2, (area.top + area.bottom) / 2}; }

/// The popup menu of this process that is open; null: none.
HWND openMenu() {
    const HWND window = FindWindowA("#32768", nullptr);
    return window != nullptr && IsWindowVisible(window) ? window : nullptr;
}

HMENU menuOf(HWND window) { return reinterpret_cast<HMENU>(SendMessageA(window, kMenuOfWindow, 0, 0)); }

}  // namespace

bool isWindow(NativeWindow window) { return IsWindow(windowOf(window)) != FALSE; }

Area areaOf(NativeWindow window) {
    RECT area{};
    GetWindowRect(windowOf(window), &area);
    MapWindowPoints(nullptr, GetParent(windowOf(window)), reinterpret_cast<POINT*>(&area), 2);
    return {static_cast<std::int32_t>(area.left), static_cast<std::int32_t>(area.top),
            static_cast<std::int32_t>(area.right), static_cast<std::int32_t>(area.bottom)};
}

std::u16string captionOf(NativeWindow window) {
    wchar_t text[2048]{};
    GetWindowTextW(windowOf(window), text, 2048);
    return utf16(text);
}

bool serves(const std::function<bool()>& ended, std::chrono::milliseconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!ended()) {
        if (std::chrono::steady_clock::now() > end) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(kLook.count()), QS_ALLINPUT);
        MSG message{};
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }
    return true;
}

void beside(const std::function<void()>& work) {
    auto done = std::async(std::launch::async, work);
    serves([&] { return done.wait_for(0s) == std::future_status::ready; });
    done.get();
}

std::int32_t scrollBarWidth() { return GetSystemMetrics(SM_CXVSCROLL); }

void closesButton(NativeWindow button) { PostMessageA(windowOf(button), WM_CLOSE, 0, 0); }

std::vector<std::u16string> opensMenu(NativeWindow button) {
    HWND window = nullptr;
    // A click on what is not drawn yet goes astray, so a user clicks once more.
    for (int clicks = 0; window == nullptr && clicks < 5; ++clicks) {
        RECT area{};
        GetWindowRect(windowOf(button), &area);
        click(middleOf(area));
        window = waitsFor([] { return openMenu(); }, 2s);
    }
    std::vector<std::u16string> labels;
    const HMENU menu = window == nullptr ? nullptr : menuOf(window);
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[512]{};
        GetMenuStringW(menu, static_cast<UINT>(i), text, 512, MF_BYPOSITION);
        labels.emplace_back(utf16(text));
    }
    return labels;
}

bool choosesItem(std::size_t item) {
    for (int clicks = 0; clicks < 5; ++clicks) {
        const HWND window = openMenu();
        RECT area{};
        if (window == nullptr || !GetMenuItemRect(nullptr, menuOf(window), static_cast<UINT>(item), &area))
            return false;
        click(middleOf(area));
        if (waitsFor([] { return openMenu() == nullptr; }, 2s)) return true;
    }
    return false;
}

void leavesMenu(NativeWindow button) {
    RECT area{};
    GetWindowRect(GetParent(windowOf(button)), &area);
    click({area.left + 1, area.top + 1});
    waitsFor([] { return openMenu() == nullptr; });
}

}  // namespace zab::testbed
