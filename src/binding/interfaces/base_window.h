// The base window of a browser object: one interface that the module is written against, and where its
// operations stand in the five later layouts of the same interface.
//
// Layouts by browser version: A up to 9, B 10 to 16, B17 only 17 (under the identifier of B), C 18 to 46, D
// from 45.6 on in the extended-support release of 45, E from 47 on. Booleans are 4 bytes in A and 1 byte in the
// others; the last argument of SetPositionAndSize is a boolean in A to C and flags in D and E, where 1 means
// what true means in the others.
#pragma once

#include "binding/interfaces/supports.h"

/// Layout A. Widgets and native windows are passed on, never called.
class nsIBaseWindow : public nsISupports {
  public:
    static constexpr nsIID kIID{0x046BC8A0, 0x8015, 0x11D3, {0xAF, 0x70, 0x00, 0xA0, 0x24, 0xFF, 0xC0, 0x8C}};
    static constexpr nsIID kIIDB{0x7144AC8B, 0x6702, 0x4A4B, {0xA7, 0x3D, 0xD1, 0xD4, 0xE9, 0x71, 0x7E, 0x46}};
    static constexpr nsIID kIIDC{0x9DA319F3, 0xEEE6, 0x4504, {0x81, 0xA5, 0x6A, 0x19, 0xCF, 0x62, 0x15, 0xBF}};
    static constexpr nsIID kIIDD{0x758A7A9C, 0x03D7, 0x4DCE, {0x95, 0x8F, 0x78, 0x85, 0xAE, 0xA2, 0xDC, 0x75}};
    static constexpr nsIID kIIDE{0xCA635529, 0xA977, 0x4552, {0x9B, 0x8A, 0x66, 0x18, 0x7E, 0x54, 0xD8, 0x82}};

    virtual nsresult InitWindow(void* parentNativeWindow, void* parentWidget, int32_t x, int32_t y, int32_t cx,
                                int32_t cy) = 0;
    virtual nsresult Create() = 0;
    virtual nsresult Destroy() = 0;
    virtual nsresult SetPosition(int32_t x, int32_t y) = 0;
    virtual nsresult GetPosition(int32_t* x, int32_t* y) = 0;
    virtual nsresult SetSize(int32_t cx, int32_t cy, uint32_t repaint) = 0;
    virtual nsresult GetSize(int32_t* cx, int32_t* cy) = 0;
    virtual nsresult SetPositionAndSize(int32_t x, int32_t y, int32_t cx, int32_t cy, uint32_t repaint) = 0;
    virtual nsresult GetPositionAndSize(int32_t* x, int32_t* y, int32_t* cx, int32_t* cy) = 0;
    virtual nsresult Repaint(uint32_t force) = 0;
    virtual nsresult GetParentWidget(void** widget) = 0;
    virtual nsresult SetParentWidget(void* widget) = 0;
    virtual nsresult GetParentNativeWindow(void** nativeWindow) = 0;
    virtual nsresult SetParentNativeWindow(void* nativeWindow) = 0;
    virtual nsresult GetVisibility(uint32_t* visible) = 0;
    virtual nsresult SetVisibility(uint32_t visible) = 0;
    virtual nsresult GetEnabled(uint32_t* enabled) = 0;
    virtual nsresult SetEnabled(uint32_t enabled) = 0;
    virtual nsresult GetBlurSuppression(uint32_t* suppressed) = 0;
    virtual nsresult SetBlurSuppression(uint32_t suppressed) = 0;
    virtual nsresult GetMainWidget(void** widget) = 0;
    virtual nsresult SetFocus() = 0;
    /// The title belongs to the caller and to the runtime's allocator.
    virtual nsresult GetTitle(char16_t** title) = 0;
    virtual nsresult SetTitle(const char16_t* title) = 0;
};

namespace zab {

enum class BaseWindowLayout { a, b, b17, c, d, e };

enum class BaseWindowOperation {
    initWindow,
    create,
    destroy,
    setPosition,
    getPosition,
    setSize,
    getSize,
    setPositionAndSize,
    getPositionAndSize,
    repaint,
    getParentWidget,
    setParentWidget,
    getParentNativeWindow,
    setParentNativeWindow,
    getVisibility,
    setVisibility,
    getEnabled,
    setEnabled,
    getBlurSuppression,
    setBlurSuppression,
    getMainWidget,
    setFocus,
    getTitle,
    setTitle,
};

/// Slot 0 is the query of every object, so it is free to mean none.
inline constexpr uint8_t kNoSlot = 0;

struct BaseWindowSlots {
    BaseWindowOperation operation;
    uint8_t inLayout[6];  // by BaseWindowLayout
};

// One column per layout.
// clang-format off
inline constexpr BaseWindowSlots kBaseWindowSlots[] = {
    //                                            A   B   B17 C   D   E
    {BaseWindowOperation::initWindow,            {3,  3,  3,  3,  3,  3}},
    {BaseWindowOperation::create,                {4,  4,  4,  4,  4,  4}},
    {BaseWindowOperation::destroy,               {5,  5,  5,  5,  5,  5}},
    {BaseWindowOperation::setPosition,           {6,  6,  6,  6,  6,  6}},
    {BaseWindowOperation::getPosition,           {7,  7,  7,  7,  7,  8}},
    {BaseWindowOperation::setSize,               {8,  8,  8,  8,  8,  9}},
    {BaseWindowOperation::getSize,               {9,  9,  9,  9,  9,  10}},
    {BaseWindowOperation::setPositionAndSize,    {10, 10, 10, 10, 10, 11}},
    {BaseWindowOperation::getPositionAndSize,    {11, 11, 11, 11, 11, 12}},
    {BaseWindowOperation::repaint,               {12, 12, 12, 12, 12, 13}},
    {BaseWindowOperation::getParentWidget,       {13, 13, 13, 13, 13, 14}},
    {BaseWindowOperation::setParentWidget,       {14, 14, 14, 14, 14, 15}},
    {BaseWindowOperation::getParentNativeWindow, {15, 15, 15, 15, 15, 16}},
    {BaseWindowOperation::setParentNativeWindow, {16, 16, 16, 16, 16, 17}},
    {BaseWindowOperation::getVisibility,         {17, 17, 18, 18, 18, 19}},
    {BaseWindowOperation::setVisibility,         {18, 18, 19, 19, 19, 20}},
    {BaseWindowOperation::getEnabled,            {19, 19, 20, 20, 20, 21}},
    {BaseWindowOperation::setEnabled,            {20, 20, 21, 21, 21, 22}},
    {BaseWindowOperation::getBlurSuppression,    {21, 0,  0,  0,  0,  0}},
    {BaseWindowOperation::setBlurSuppression,    {22, 0,  0,  0,  0,  0}},
    {BaseWindowOperation::getMainWidget,         {23, 21, 22, 22, 22, 23}},
    {BaseWindowOperation::setFocus,              {24, 22, 23, 24, 24, 26}},
    {BaseWindowOperation::getTitle,              {25, 23, 24, 25, 25, 27}},
    {BaseWindowOperation::setTitle,              {26, 24, 25, 26, 26, 28}},
};
// clang-format on

/// Where an operation stands in a layout; kNoSlot where the layout lacks it.
constexpr uint8_t slotOf(BaseWindowLayout layout, BaseWindowOperation operation) {
    return kBaseWindowSlots[static_cast<int>(operation)].inLayout[static_cast<int>(layout)];
}

constexpr bool baseWindowRowsStandInOrder() {
    uint8_t last[6] = {2, 2, 2, 2, 2, 2};
    int expected = 0;
    for (const auto& row : kBaseWindowSlots) {
        if (static_cast<int>(row.operation) != expected) return false;
        if (row.inLayout[0] != expected + 3) return false;
        ++expected;
        for (int layout = 0; layout < 6; ++layout) {
            if (row.inLayout[layout] == kNoSlot) continue;
            if (row.inLayout[layout] <= last[layout]) return false;
            last[layout] = row.inLayout[layout];
        }
    }
    return expected == static_cast<int>(BaseWindowOperation::setTitle) + 1;
}
static_assert(baseWindowRowsStandInOrder(), "a row per operation, layout A without gaps, no slot used twice");

}  // namespace zab
