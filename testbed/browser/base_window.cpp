#include "browser/base_window.h"

#include <sstream>

#include "browser/browser.h"

namespace zab::testbed {
namespace {

// What layouts have in common.
const std::string
    kBegin = "initWindow create destroy setPosition ",
    kPlace =
        "getPosition setSize getSize setPositionAndSize getPositionAndSize repaint getParentWidget "
        "setParentWidget getParentNativeWindow setParentNativeWindow ",
    kState = "getVisibility setVisibility getEnabled setEnabled ", kHandle = "getNativeHandle ",
    kWidget = "getMainWidget ", kPixels = "getUnscaledDevicePixelsPerCSSPixel ",
    kEnd = "setFocus getTitle setTitle";

// clang-format off
const WindowLayout kLayouts[] = {
    {"A", {0x046BC8A0, 0x8015, 0x11D3, {0xAF, 0x70, 0x00, 0xA0, 0x24, 0xFF, 0xC0, 0x8C}},
     kBegin + kPlace + kState + "getBlurSuppression setBlurSuppression " + kWidget + kEnd, false},
    {"B", {0x7144AC8B, 0x6702, 0x4A4B, {0xA7, 0x3D, 0xD1, 0xD4, 0xE9, 0x71, 0x7E, 0x46}},
     kBegin + kPlace + kState + kWidget + kEnd, true},
    {"B17", {0x7144AC8B, 0x6702, 0x4A4B, {0xA7, 0x3D, 0xD1, 0xD4, 0xE9, 0x71, 0x7E, 0x46}},
     kBegin + kPlace + kHandle + kState + kWidget + kEnd, true},
    {"C", {0x9DA319F3, 0xEEE6, 0x4504, {0x81, 0xA5, 0x6A, 0x19, 0xCF, 0x62, 0x15, 0xBF}},
     kBegin + kPlace + kHandle + kState + kWidget + kPixels + kEnd, true},
    {"D", {0x758A7A9C, 0x03D7, 0x4DCE, {0x95, 0x8F, 0x78, 0x85, 0xAE, 0xA2, 0xDC, 0x75}},
     kBegin + kPlace + kHandle + kState + kWidget + kPixels + kEnd, true},
    {"E", {0xCA635529, 0xA977, 0x4552, {0x9B, 0x8A, 0x66, 0x18, 0x7E, 0x54, 0xD8, 0x82}},
     kBegin + "setPositionDesktopPix " + kPlace + kHandle + kState + kWidget + kPixels +
     "getDevicePixelsPerDesktopPixel " + kEnd, true},
};
// clang-format on

std::string operationAt(const WindowLayout& layout, std::uint32_t slot) {
    std::istringstream names(layout.operations);
    std::string name;
    for (std::uint32_t at = 3; names >> name; ++at)
        if (at == slot) return name;
    return "slot " + std::to_string(slot);  // behind the table's end
}

/// How many numbers a getter writes.
std::uint32_t numbersOf(const std::string& operation) {
    if (operation == "getPositionAndSize") return 4;
    return operation == "getPosition" || operation == "getSize" ? 2 : 0;
}

nsresult called(const Call& call) {
    auto& window = call.as<BaseWindow>();
    const auto operation = operationAt(window.layout, call.slot);
    auto& noted = window.calls.emplace_back(BaseWindow::Called{operation, {}});
    for (std::uint32_t n = 0; n < kStandInArguments; ++n) noted.arguments[n] = call.whole(n);
    for (std::uint32_t n = 0; n < numbersOf(operation); ++n)
        call.set<std::uint32_t>(n, BaseWindow::kNumber + n);
    if (operation == "getVisibility" || operation == "getEnabled" || operation == "getBlurSuppression")
        return window.layout.oneByteBooleans ? call.set<std::uint8_t>(0, 1) : call.set<std::uint32_t>(0, 1);
    if (operation == "getParentNativeWindow") return call.set<std::uint64_t>(0, window.nativeWindow);
    return NS_OK;
}

constexpr Operation kRows[] = {{kEverySlot, &called}};

}  // namespace

std::span<const WindowLayout> windowLayouts() { return kLayouts; }

const WindowLayout& windowLayoutOf(int version) {
    return kLayouts[version < 10 ? 0 : version < 17 ? 1 : version < 18 ? 2 : version < 47 ? 3 : 5];
}

BaseWindow::BaseWindow(Browser& browser, const WindowLayout& windowLayout)
    : BedObject(browser, std::string("base window ") + windowLayout.name), layout(windowLayout) {
    static const Interface kInterface{"baseWindow", kLayouts[0].iid, kRows};
    answersTo(kInterface, layout.iid);
}

}  // namespace zab::testbed
