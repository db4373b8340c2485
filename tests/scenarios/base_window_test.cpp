// The module's adapters on base windows of every published layout, called as a browser calls them.
#include "binding/base_window.h"

#include <gtest/gtest.h>

#include <sstream>

#include "browser/base_window.h"
#include "browser/browser.h"

namespace zab::testbed {
namespace {

enum class Takes { numbers, lastIsBoolean, addresses, booleanAddress };

// What the module is written against: slot 3 is the first row.
const struct {
    const char* operation;
    std::uint32_t arguments;
    Takes takes;
} kModuleLayout[] = {
    {"initWindow", 6, Takes::numbers},
    {"create", 0, Takes::numbers},
    {"destroy", 0, Takes::numbers},
    {"setPosition", 2, Takes::numbers},
    {"getPosition", 2, Takes::addresses},
    {"setSize", 3, Takes::lastIsBoolean},
    {"getSize", 2, Takes::addresses},
    {"setPositionAndSize", 5, Takes::lastIsBoolean},
    {"getPositionAndSize", 4, Takes::addresses},
    {"repaint", 1, Takes::lastIsBoolean},
    {"getParentWidget", 1, Takes::addresses},
    {"setParentWidget", 1, Takes::numbers},
    {"getParentNativeWindow", 1, Takes::addresses},
    {"setParentNativeWindow", 1, Takes::numbers},
    {"getVisibility", 1, Takes::booleanAddress},
    {"setVisibility", 1, Takes::lastIsBoolean},
    {"getEnabled", 1, Takes::booleanAddress},
    {"setEnabled", 1, Takes::lastIsBoolean},
    {"getBlurSuppression", 1, Takes::booleanAddress},
    {"setBlurSuppression", 1, Takes::lastIsBoolean},
    {"getMainWidget", 1, Takes::addresses},
    {"setFocus", 0, Takes::numbers},
    {"getTitle", 1, Takes::addresses},
    {"setTitle", 1, Takes::numbers},
};

bool has(const WindowLayout& layout, const std::string& operation) {
    std::istringstream names(layout.operations);
    for (std::string name; names >> name;)
        if (name == operation) return true;
    return false;
}

TEST(BaseWindows, EveryOperationReachesItsOwnSlotInEveryLayout) {
    for (const auto& layout : windowLayouts()) {
        Browser browser;
        auto& window = browser.make<BaseWindow>(layout);
        const auto adapter =
            GetBaseWindow(window.asSupports(), std::string_view(layout.name) == "B17" ? 17 : 16);
        ASSERT_TRUE(adapter) << layout.name;
        std::uint32_t slot = 3;
        for (const auto& row : kModuleLayout) {
            const auto where = std::string(row.operation) + " in layout " + layout.name;
            std::uint64_t words[kStandInArguments];
            std::uint64_t arguments[kStandInArguments] = {11, 12, 13, 14, 15, 16};
            std::fill(std::begin(words), std::end(words), 0xAAAAAAAA'00000000);
            if (row.takes == Takes::addresses || row.takes == Takes::booleanAddress)
                for (std::uint32_t n = 0; n < kStandInArguments; ++n)
                    arguments[n] = reinterpret_cast<std::uint64_t>(&words[n]);
            window.calls.clear();
            const nsresult status = browser.runtime().callSlot(adapter.get(), slot++, arguments);
            if (!has(layout, row.operation)) {
                EXPECT_EQ(status, NS_ERROR_NOT_IMPLEMENTED) << where;
                EXPECT_TRUE(window.calls.empty()) << where;
                continue;
            }
            EXPECT_EQ(status, NS_OK) << where;
            ASSERT_EQ(window.calls.size(), 1u) << where;
            EXPECT_EQ(window.calls[0].operation, row.operation) << where;
            // The window that needs no adapter is called directly: nobody makes 1 of its booleans.
            const bool direct = window.layout.name == std::string_view("A");
            for (std::uint32_t n = 0; n < row.arguments && row.takes != Takes::booleanAddress; ++n) {
                const bool madeOne = row.takes == Takes::lastIsBoolean && n + 1 == row.arguments && !direct;
                const auto expected = madeOne ? 1 : arguments[n];
                const auto mask = row.takes == Takes::addresses ? ~0ull : 0xFFFFFFFFull;
                EXPECT_EQ(window.calls[0].arguments[n] & mask, expected & mask) << where << ", argument " << n;
            }
            if (row.takes == Takes::booleanAddress) {
                EXPECT_EQ(words[0], 0xAAAAAAAA'00000001) << "the caller's 4 bytes and no more: " << where;
            }
        }
    }
}

}  // namespace
}  // namespace zab::testbed
