// Where a page's button may lie: rectangles computed from plain values, as Windows would compute them.
//
// Pixels of the browser window's client area, unless said otherwise. Values of the extension are CSS pixels (96
// per inch) and grow with the display's resolution. Sums that 32 bits cannot hold end at the limit.
#pragma once

#include <cstdint>
#include <optional>

namespace zab {

struct PixelPoint {
    std::int32_t x = 0, y = 0;
};

/// As Windows has it: right and bottom lie outside.
struct PixelRect {
    std::int32_t left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const PixelRect&) const = default;

    [[nodiscard]] constexpr bool holds(PixelPoint point) const noexcept {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
};

/// An element as the extension tells it, in CSS pixels.
struct ElementBox {
    std::int32_t x = 0, y = 0, width = 0, height = 0;
};

/// Pixels per inch; those of a display that cannot be asked.
struct Resolution {
    std::int32_t horizontal = 96, vertical = 96;
};

/// What is known about a browser window at one moment.
struct WindowFacts {
    PixelRect client;
    Resolution resolution;
    std::int32_t scrollBarWidth = 0;   // of a vertical one
    std::int32_t scrollBarHeight = 0;  // of a horizontal one
    std::optional<PixelPoint> cursor;
};

/// Where a button may lie, and what it remembers of the cursor.
struct Placement {
    PixelRect visible;
    PixelRect cursor;            // around the last place of it inside the visible rectangle; empty: none yet
    bool inContentArea = false;  // the page lies in the browser's content element
    bool operator==(const Placement&) const = default;
};

/// value * numerator / denominator, rounded to the nearest, halves away from zero; -1 when the denominator is 0
/// or the result does not fit.
std::int32_t scaled(std::int32_t value, std::int32_t numerator, std::int32_t denominator) noexcept;

/// The 3 x 3 pixels around a point.
PixelRect aroundPoint(PixelPoint point) noexcept;

/// `content`: the box of the browser's content element, when the page lies in it. `before` keeps the cursor's
/// last place.
Placement placementOf(const WindowFacts& window, const std::optional<ElementBox>& content,
                      const Placement& before = {}) noexcept;

}  // namespace zab
