// Which of a window's layouts serves, and what is made of booleans. That each operation reaches its own slot is
// walked by the module's ABI tests.
#include "binding/base_window.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "browser/base_window.h"
#include "browser/browser.h"

namespace zab::testbed {
namespace {

/// A browser object that answers as these windows, as some directly and as others through its requestor, if it
/// has one.
struct ManyWindows final : nsIInterfaceRequestor {
    using Windows = std::vector<BaseWindow*>;

    nsresult QueryInterface(const nsIID* iid, void** result) override {
        if (!requested || *iid != nsIInterfaceRequestor::kIID) return ask(answered, iid, result);
        *result = this;
        ++references;
        return NS_OK;
    }
    uint32_t AddRef() override { return ++references; }
    uint32_t Release() override { return --references; }
    nsresult GetInterface(const nsIID* iid, void** result) override { return ask(*requested, iid, result); }

    static nsresult ask(const Windows& windows, const nsIID* iid, void** result) {
        for (BaseWindow* window : windows)
            if (!failed(window->asSupports()->QueryInterface(iid, result))) return NS_OK;
        return NS_ERROR_NO_INTERFACE;
    }

    Windows answered;
    std::optional<Windows> requested;
    std::uint32_t references = 0;
};

TEST(BaseWindow, IsTheFirstThatAnswersAndCarriesBooleansOfEitherWidth) {
    constexpr std::string_view kLetters = "ABbCDE";  // of the layouts in their order; b: B of version 17
    const struct {
        const char *answered, *requested;
        std::int32_t version;
        const char *served, *why;
    } rows[] = {
        {"DECB", "A", 52, "A", "the requestor before the rest"},
        {"DEC", "B", 52, "C", "a requestor is asked for the module's own layout only"},
        {"DECB", nullptr, 16, "B", "no requestor to ask"},
        {"b", nullptr, 17, "B17", "the same identifier, a version later"},
        {"B", nullptr, 18, "B", "and two"},
        {"C", nullptr, 17, "C", "which changes no other layout"},
        {"DE", nullptr, 52, "E", "47 before the extended-support release"},
        {"D", nullptr, 45, "D", "the last"},
        {"", "B", 52, nullptr, "answers nothing"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        Browser browser;
        ManyWindows object;
        ManyWindows::Windows all;
        const auto windowsOf = [&](std::string_view letters) {
            ManyWindows::Windows windows;
            for (const char letter : letters)
                windows.push_back(&browser.make<BaseWindow>(windowLayouts()[kLetters.find(letter)]));
            all.insert(all.end(), windows.begin(), windows.end());
            return windows;
        };
        object.answered = windowsOf(row.answered);
        if (row.requested != nullptr) object.requested = windowsOf(row.requested);
        auto adapter = GetBaseWindow(&object, row.version);
        ASSERT_EQ(static_cast<bool>(adapter), row.served != nullptr);
        EXPECT_EQ(object.references, 0u) << "the adapter holds the window, nothing else";
        if (!adapter) continue;

        EXPECT_EQ(adapter->SetVisibility(0xFF00), NS_OK);
        const auto served = std::ranges::find_if(all, [](auto* window) { return !window->calls.empty(); });
        ASSERT_NE(served, all.end());
        EXPECT_EQ((*served)->layout.name, std::string_view(row.served));
        EXPECT_EQ((*served)->calls[0].operation, "setVisibility");
        EXPECT_EQ(static_cast<std::uint32_t>((*served)->calls[0].arguments[0]), 1u) << "0 or 1";

        std::uint32_t flag = 0xAAAAAAAA;
        browser.faults().failNth(1);
        EXPECT_EQ(adapter->GetVisibility(&flag), NS_ERROR_FAILURE) << "the browser's own answer";
        EXPECT_EQ(flag, 0xAAAAAAAA) << "a failure gives nothing";
        EXPECT_EQ(adapter->GetVisibility(&flag), NS_OK);
        EXPECT_EQ(flag, 1u) << "nothing of the old word is left";
        EXPECT_EQ(adapter->GetVisibility(nullptr), NS_ERROR_NULL_POINTER);
        const bool suppresses = row.served == std::string_view("A");
        EXPECT_EQ(adapter->GetBlurSuppression(&flag), suppresses ? NS_OK : NS_ERROR_NOT_IMPLEMENTED);
        EXPECT_EQ(flag, suppresses ? 1u : 0u) << "off where a browser has none";

        void* self = nullptr;
        for (const nsIID& iid : {nsIBaseWindow::kIID, nsISupports::kIID}) {
            EXPECT_EQ(adapter->QueryInterface(&iid, &self), NS_OK);
            EXPECT_EQ(self, adapter.get());
            EXPECT_EQ(adapter->Release(), 1u);
        }
        EXPECT_EQ(adapter->QueryInterface(&nsIBaseWindow::kIIDE, &self), NS_ERROR_NO_INTERFACE);
        EXPECT_EQ(self, nullptr);
        adapter.reset();
        EXPECT_EQ(browser.unbalanced(), "");
    }
}

TEST(BaseWindow, OfTheModulesOwnLayoutNeedsNoAdapter) {
    Browser browser;
    nsISupports* own = browser.make<BaseWindow>(windowLayouts()[0]).asSupports();
    EXPECT_EQ(GetBaseWindow(own, 52).get(), query<nsIBaseWindow>(own).get());
    EXPECT_EQ(browser.unbalanced(), "");
    EXPECT_FALSE(GetBaseWindow(nullptr, 52));
}

}  // namespace
}  // namespace zab::testbed
