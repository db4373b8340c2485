// Base windows of every layout: a window that notes which of its layout's operations is called.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "browser/bed_object.h"

namespace zab::testbed {

/// A published layout: its identifier and its operations in the order of their slots, from 3 on.
struct WindowLayout {
    const char* name;
    nsIID iid;
    std::string operations;  // separated by blanks
    bool oneByteBooleans;
};

/// A (up to version 9), B (10 to 16), B17 (17), C (18 to 46), D (late releases of 45), E (from 47 on).
std::span<const WindowLayout> windowLayouts();
/// The layout of a browser version.
const WindowLayout& windowLayoutOf(int version);

/// Getters write what stands here; other operations are noted only.
struct BaseWindow : BedObject {
    BaseWindow(Browser& browser, const WindowLayout& windowLayout);

    static constexpr std::uint32_t kNumber = 0x1234;  // what a getter of numbers gives

    const WindowLayout& layout;
    std::uint64_t nativeWindow = 0x5678;
    struct Called {
        std::string operation;
        std::array<std::uint64_t, kStandInArguments> arguments;
    };
    std::vector<Called> calls;
};

}  // namespace zab::testbed
