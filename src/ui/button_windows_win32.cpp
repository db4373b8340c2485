#include "binding/owner.h"
#include "binding/wide_win32.h"
#include "ui/button_windows.h"

namespace zab {
namespace {

constexpr UINT kMoveButton = 0x469;

/// The context of the whole screen.
struct ScreenContextTraits {
    using Raw = HDC;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw context) noexcept { ReleaseDC(nullptr, context); }
};

HWND handleOf(WindowHandle window) noexcept { return reinterpret_cast<HWND>(window); }

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
    if (!GetClientRect(handleOf(browserWindow), &client)) return std::nullopt;
    WindowFacts facts;
    facts.client = {static_cast<std::int32_t>(client.left), static_cast<std::int32_t>(client.top),
                    static_cast<std::int32_t>(client.right), static_cast<std::int32_t>(client.bottom)};
    facts.resolution = displayResolution();
    facts.scrollBarWidth = GetSystemMetrics(SM_CXVSCROLL);
    facts.scrollBarHeight = GetSystemMetrics(SM_CYHSCROLL);
    facts.cursor = cursorIn(handleOf(browserWindow));
    return facts;
}

bool isOpen(WindowHandle window) noexcept { return IsWindow(handleOf(window)) != FALSE; }

WindowHandle activeWindow() noexcept {
    return reinterpret_cast<WindowHandle>(GetAncestor(GetActiveWindow(), GA_ROOT));
}

void postMove(WindowHandle button, const PixelRect& rect) noexcept {
    if (!isOpen(button)) return;  // without a window the message would go to this thread
    PostMessageA(handleOf(button), kMoveButton, packed(rect.left, rect.top),
                 static_cast<LPARAM>(packed(rect.right, rect.bottom)));
}

void postClose(WindowHandle window) noexcept {
    if (isOpen(window)) PostMessageA(handleOf(window), WM_CLOSE, 0, 0);
}

}  // namespace zab
