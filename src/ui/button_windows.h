// Windows as the buttons need them, as plain functions over plain values. Nothing here waits for another
// thread.
#pragma once

#include <optional>

#include "page/platform.h"
#include "ui/visible_rect.h"

namespace zab {

/// Nothing when the window is gone.
std::optional<WindowFacts> windowFactsOf(WindowHandle browserWindow) noexcept;

bool isOpen(WindowHandle window) noexcept;

/// The browser window of this thread that the user works in; 0: in none.
WindowHandle activeWindow() noexcept;

/// Posts the button library's message that moves a button: 0x469, wParam left and top, lParam right and bottom,
/// each pair with the first in the low half.
void postMove(WindowHandle button, const PixelRect& rect) noexcept;
void postClose(WindowHandle window) noexcept;

}  // namespace zab
