// What pages, buttons and entry points ask of Windows, as plain functions over plain values.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zab {

/// A window handle as a number; 0: none.
using WindowHandle = std::uintptr_t;

struct ScreenPoint {
    std::int32_t x = 0, y = 0;
    bool operator==(const ScreenPoint&) const = default;
};

void writeDebuggerText(const std::string& text) noexcept;
void writeDebuggerText(const std::u16string& text) noexcept;
/// Whether somebody watches this process: text that nobody reads need not be composed.
bool debuggerWatches() noexcept;

std::optional<ScreenPoint> cursorPosition() noexcept;

/// Asks a window to close and waits for its answer, at most 1,000 ms; nothing happens when it is gone already.
void closeWindow(WindowHandle window) noexcept;

/// Runs `work` soon from the message loop of the browser's main thread, which calls this; false: it will not
/// run. What it throws is swallowed.
bool runSoon(std::function<void()> work);

/// Keeps the module in memory to the end of the process, whoever unloads it; false: the system refuses.
[[nodiscard]] bool stayLoaded() noexcept;

/// Tells processes that the browser starts from now on that the integration works here.
void announceIntegration() noexcept;

}  // namespace zab
