// The desk that stands in for Windows when the whole module runs natively: settings as values, a download
// manager that keeps what it is told, windows as numbers.
//
// One desk in a process, shared by the bed (which lays things out and reads them back) and by the module's edge
// (edge_*.cpp, in place of the files that call Windows). One thread.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "binding/runtime.h"
#include "browser/desktop.h"
#include "browser/told.h"
#include "page/platform.h"
#include "ui/button_library.h"
#include "ui/panel_messages.h"

namespace zab::testbed {

/// A window of the desk.
struct DeskWindow {
    WindowHandle parent = 0;
    PixelRect rect{};
    bool answers = false;  // by the module's procedure: a controller; a page's when it has a parent
    // Of a button.
    std::u16string caption{};
    WindowHandle controller = 0;
    std::uint64_t documentId = 0;
    std::u16string pageUrl{};
    std::vector<std::u16string> labels{}, links{};
    bool visible = false;
};

/// The download manager that has a button library beside it.
inline constexpr const char* kCompanions = "C:\\Companions\\zabrion.exe";

/// How wide a scroll bar is at the desk, in pixels.
inline constexpr std::int32_t kScrollBar = 17;

struct Desk {
    // What lies there before the module looks.

    /// The browser's; an entry that it lacks is null.
    XpcomRuntime runtime{};
    std::int32_t browserVersion = 0;
    /// Below the download manager's key: "Extensions", "SpecialKeys\\CtrlF". Empty: the key itself is missing.
    std::map<std::string, std::variant<std::uint32_t, std::string>> settings;
    /// Plain contents of the data file.
    std::string dataFile;
    /// By virtual-key code; above 127: down.
    std::array<std::uint8_t, 256> keyboard{};
    ScreenPoint cursor{};
    WindowHandle activeWindow = 0;
    bool debuggerWatches = true;
    bool memoryMayFail = false;  // asking for it is a step ("malloc")
    bool listsLocked = false;    // somebody else holds the lock over the lists and keeps it
    bool managerRegistered = true;
    bool noCallsNow = false;  // a connection that fails is one that may be had later

    // What the module did.

    std::vector<Told> told;
    std::vector<ShownBox> boxes;  // message boxes that nobody has answered yet
    std::map<WindowHandle, DeskWindow> windows;
    std::function<void(std::string_view)> debuggerText = [](std::string_view) {};
    std::int32_t lockHeld = 0;
    std::deque<std::function<void()>> posted;  // to the message loop of the browser's thread

    /// The module's window procedure: a message (panel_messages.h), and WM_COPYDATA with a media request.
    std::function<std::intptr_t(WindowHandle, std::uint32_t message, std::uintptr_t lParam)> answer;
    std::function<std::intptr_t(WindowHandle, const std::string& payload)> requested;
    /// Whether the module keeps the record of a request.
    std::function<bool(std::string_view url)> remembers;

    /// One call of what Windows would do: whether it fails. Named for what is asked ("setting Extensions").
    std::function<bool(const std::string& step)> fails = [](const std::string&) { return false; };

    template <class Value>
    [[nodiscard]] std::optional<Value> setting(const std::string& path) const {
        const auto found = settings.find(path);
        const auto* value = found == settings.end() ? nullptr : std::get_if<Value>(&found->second);
        return value != nullptr ? std::optional(*value) : std::nullopt;
    }

    WindowHandle opensWindow(DeskWindow window) {
        windows.emplace(++lastWindow, std::move(window));
        return lastWindow;
    }
    WindowHandle lastWindow = 0x1000;

    // Sent at once, as from another program or the button library; 0: it is no controller.

    std::intptr_t sends(WindowHandle window, std::uint32_t message, std::uintptr_t lParam) const {
        return isController(window) ? answer(window, message, lParam) : 0;
    }
    std::intptr_t copies(WindowHandle window, const std::string& payload) const {
        return isController(window) ? requested(window, payload) : 0;
    }
    [[nodiscard]] bool isController(WindowHandle window) const {
        return windows.contains(window) && windows.at(window).answers;
    }
    /// A window ends, and its children before it.
    void destroys(WindowHandle window) {
        if (!windows.contains(window)) return;
        std::vector<WindowHandle> children;
        for (const auto& [handle, child] : windows)
            if (child.parent == window) children.push_back(handle);
        for (const WindowHandle child : children) destroys(child);
        sends(window, panel_messages::kDestroyed, 0);
        windows.erase(window);
    }

    /// The browser's thread serves its messages until there are none.
    void servesMessages() {
        for (; !posted.empty(); posted.pop_front()) posted.front()();
    }
};

/// Named alike on both sides; the module is handed the bed's.
Desk& desk() noexcept;

/// Exported by the module as it is built for the desk: sits down at it and binds the runtime.
using ZabDesk_Sit_t = void(Desk* desk);

/// Bytes that the process has of the heap. 0 without the sanitizer, which counts them.
std::size_t heapBytes();

}  // namespace zab::testbed
