#include "binding/wide_win32.h"
#include "page/platform.h"

namespace zab {

void writeDebuggerText(const std::string& text) noexcept { OutputDebugStringA(text.c_str()); }
void writeDebuggerText(const std::u16string& text) noexcept { OutputDebugStringW(wide(text)); }
bool debuggerWatches() noexcept { return IsDebuggerPresent() != FALSE; }

std::optional<ScreenPoint> cursorPosition() noexcept {
    POINT point{};
    if (!GetCursorPos(&point)) return std::nullopt;
    return ScreenPoint{static_cast<std::int32_t>(point.x), static_cast<std::int32_t>(point.y)};
}

void closeWindow(WindowHandle window) noexcept {
    const auto handle = reinterpret_cast<HWND>(window);
    if (handle != nullptr && IsWindow(handle)) SendMessageA(handle, WM_CLOSE, 0, 0);
}

void announceIntegration() noexcept { SetEnvironmentVariableA("ZAB_BROWSER_INTEGRATION", "on"); }

}  // namespace zab
