#include "binding/owner.h"
#include "ui/button_windows.h"
#include "ui/window_handle_win32.h"

namespace zab {
namespace {

constexpr UINT kMoveButton = 0x469;

/// The context of the whole screen.
struct ScreenContextTraits {
    using Raw = HDC;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw context) noexcept { ReleaseDC(nullptr, context); }
};

Resolution displayResolution() noexcept {
    const Owner<ScreenContextTraits> screen(GetDC(nullptr));
    if (!screen) return {};
    return {GetDeviceCaps(screen.get(), LOGPIXELSX), GetDeviceCaps(screen.get(), LOGPIXELSY)};
}

std::optional<PixelPoint> cursorIn(HWND window) noexcept {
    POINT point{};
    if (!GetCursorPos(&point) || !ScreenToClient(window, &point)) return std::nullopt;
    return PixelPoint{static_cast<std::int32_t>(point.x), static_cast<std::int32_t>(point.y)};
}

std::uint64_t packed(std::int32_t low, std::int32_t high) noexcept {
    return static_cast<std::uint32_t>(low) | std::uint64_t{static_cast<std::uint32_t>(high)} << 32;
}

}  // namespace

std::optional<WindowFacts> windowFactsOf(WindowHandle browserWindow) noexcept {
    RECT client{};
    if (!GetClientRect(windowOf(browserWindow), &client)) return std::nullopt;
    WindowFacts facts;
    facts.client = {static_cast<std::int32_t>(client.left), static_cast<std::int32_t>(client.top),
                    static_cast<std::int32_t>(client.right), static_cast<std::int32_t>(client.bottom)};
    facts.resolution = displayResolution();
    facts.scrollBarWidth = GetSystemMetrics(SM_CXVSCROLL);
    facts.scrollBarHeight = GetSystemMetrics(SM_CYHSCROLL);
    facts.cursor = cursorIn(windowOf(browserWindow));
    return facts;
}

bool isOpen(WindowHandle window) noexcept { return IsWindow(windowOf(window)) != FALSE; }

WindowHandle activeWindow() noexcept { return handleOf(GetAncestor(GetActiveWindow(), GA_ROOT)); }

void postMove(WindowHandle button, const PixelRect& rect) noexcept {
    if (!isOpen(button)) return;  // without a window the message would go to this thread
    PostMessageA(windowOf(button), kMoveButton, packed(rect.left, rect.top),
                 static_cast<LPARAM>(packed(rect.right, rect.bottom)));
}

void postClose(WindowHandle window) noexcept {
    if (isOpen(window)) PostMessageA(windowOf(window), WM_CLOSE, 0, 0);
}

}  // namespace zab
