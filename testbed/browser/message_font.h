// The font that the user has chosen for what programs say, in which browser and buttons write.
#pragma once

#include "binding/wide_win32.h"

namespace zab::testbed {

inline HFONT messageFont() {
    static const HFONT font = [] {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof(metrics);
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
        return CreateFontIndirectW(&metrics.lfMessageFont);
    }();
    return font;
}

}  // namespace zab::testbed
