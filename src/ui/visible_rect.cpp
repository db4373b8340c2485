#include "ui/visible_rect.h"

#include <algorithm>
#include <limits>

namespace zab {
namespace {

constexpr std::int32_t kCssPixelsPerInch = 96;
constexpr std::int32_t kInset = 2;

std::int32_t limited(std::int64_t value) noexcept {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

std::int32_t sum(std::int32_t a, std::int32_t b) noexcept { return limited(std::int64_t{a} + b); }

/// Each value is scaled by itself, so that a box of 100 pixels is as wide wherever it lies.
PixelRect pixelsOf(const ElementBox& box, Resolution resolution) noexcept {
    const auto across = [=](std::int32_t v) { return scaled(v, resolution.horizontal, kCssPixelsPerInch); };
    const auto down = [=](std::int32_t v) { return scaled(v, resolution.vertical, kCssPixelsPerInch); };
    const std::int32_t left = across(box.x), top = down(box.y);
    return {left, top, sum(left, across(box.width)), sum(top, down(box.height))};
}

}  // namespace

std::int32_t scaled(std::int32_t value, std::int32_t numerator, std::int32_t denominator) noexcept {
    if (denominator == 0) return -1;
    // The largest product, 2^62, leaves room for the half that is added.
    std::int64_t product = std::int64_t{value} * numerator;
    std::int64_t divisor = denominator;
    if (divisor < 0) {
        product = -product;
        divisor = -divisor;
    }
    const std::int64_t half = divisor / 2;
    const std::int64_t result = (product < 0 ? product - half : product + half) / divisor;
    return result == limited(result) ? static_cast<std::int32_t>(result) : -1;
}

PixelRect aroundPoint(PixelPoint point) noexcept {
    return {sum(point.x, -1), sum(point.y, -1), sum(point.x, 2), sum(point.y, 2)};
}

Placement placementOf(const WindowFacts& window, const std::optional<ElementBox>& content,
                      const Placement& before) noexcept {
    const PixelRect area = content ? pixelsOf(*content, window.resolution) : window.client;
    Placement placement{.visible = {sum(area.left, kInset), sum(area.top, kInset),
                                    limited(std::int64_t{area.right} - kInset - window.scrollBarWidth),
                                    limited(std::int64_t{area.bottom} - kInset - window.scrollBarHeight)},
                        .cursor = before.cursor,
                        .inContentArea = content.has_value()};
    if (window.cursor && placement.visible.holds(*window.cursor))
        placement.cursor = aroundPoint(*window.cursor);
    return placement;
}

}  // namespace zab
