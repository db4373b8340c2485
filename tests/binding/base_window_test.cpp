#include "binding/base_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace zab {
namespace {

const nsIID& iidOf(char letter) {
    switch (letter) {
        case 'B': return nsIBaseWindow::kIIDB;
        case 'C': return nsIBaseWindow::kIIDC;
        case 'D': return nsIBaseWindow::kIIDD;
        case 'E': return nsIBaseWindow::kIIDE;
        default: return nsIBaseWindow::kIID;
    }
}

/// A window of a browser: it answers the layouts of these letters, some directly and some through its
/// requestor, if it has one; every slot notes its number. That each operation has its slot in each layout is
/// walked through the browser's own tables, by the module's ABI tests.
struct Window final : nsIInterfaceRequestor {
    Window(std::string_view layouts, const char* requestable) : answered(layouts), requested(requestable) {}

    nsresult QueryInterface(const nsIID* iid, void** result) override {
        return give(answers(answered, *iid) || (requested != nullptr && *iid == nsIInterfaceRequestor::kIID),
                    result);
    }
    uint32_t AddRef() override { return ++references; }
    uint32_t Release() override { return --references; }
    nsresult GetInterface(const nsIID* iid, void** result) override {
        return give(answers(requested, *iid), result);
    }
#define ZAB_SLOT(number) \
    virtual nsresult Slot##number(std::uintptr_t argument) { return record(number, argument); }
#define ZAB_SLOTS(a, b, c, d) ZAB_SLOT(a) ZAB_SLOT(b) ZAB_SLOT(c) ZAB_SLOT(d)
    ZAB_SLOTS(4, 5, 6, 7)
    ZAB_SLOTS(8, 9, 10, 11)
    ZAB_SLOTS(12, 13, 14, 15)
    ZAB_SLOTS(16, 17, 18, 19)
    ZAB_SLOTS(20, 21, 22, 23)
#undef ZAB_SLOTS
#undef ZAB_SLOT

    static bool answers(std::string_view layouts, const nsIID& iid) {
        return std::any_of(layouts.begin(), layouts.end(), [&](char letter) { return iidOf(letter) == iid; });
    }
    nsresult give(bool known, void** result) {
        *result = known ? this : nullptr;
        references += known;
        return known ? NS_OK : NS_ERROR_NO_INTERFACE;
    }
    nsresult record(unsigned slot, std::uintptr_t argument) {
        called = slot;
        given = static_cast<std::uint32_t>(argument);
        const std::uint32_t yes = 1;
        if (slot == booleanSlot) std::memcpy(reinterpret_cast<void*>(argument), &yes, booleanBytes);
        return status;
    }

    std::string_view answered;
    const char* requested;
    unsigned booleanSlot = 0, called = 0;
    std::size_t booleanBytes = 0;
    std::uint32_t references = 0, given = 0;
    nsresult status = NS_OK;
};

TEST(BaseWindow, CarriesBooleansOfEitherWidthAsWholeWords) {
    const struct {
        const char *answered, *requested;
        std::int32_t version;
        std::size_t booleanBytes;
        unsigned getVisibility;  // its slot; the setter follows
    } rows[] = {
        {"", "A", 9, 4, 17},       {"B", nullptr, 16, 1, 17}, {"B", nullptr, 17, 1, 18},
        {"B", nullptr, 4, 1, 17},  {"C", nullptr, 18, 1, 18}, {"C", nullptr, 17, 1, 18},
        {"D", nullptr, 45, 1, 18}, {"E", nullptr, 52, 1, 19},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.answered + std::to_string(row.version));
        Window window(row.answered, row.requested);
        window.booleanSlot = row.getVisibility;
        window.booleanBytes = row.booleanBytes;
        auto adapter = GetBaseWindow(&window, row.version);
        ASSERT_TRUE(adapter);
        EXPECT_EQ(window.references, 1u) << "the adapter holds the window, nothing else";
        std::uint32_t flag = 0xAAAAAAAA;
        EXPECT_EQ(adapter->GetVisibility(&flag), NS_OK);
        EXPECT_EQ(window.called, row.getVisibility);
        EXPECT_EQ(flag, 1u) << "nothing of the old word is left";
        EXPECT_EQ(adapter->GetVisibility(nullptr), NS_ERROR_NULL_POINTER);
        EXPECT_EQ(adapter->SetVisibility(0xFF00), NS_OK);
        EXPECT_EQ(window.called, row.getVisibility + 1);
        EXPECT_EQ(window.given, 1u) << "0 or 1, whatever is true for the caller";

        const bool known = row.requested != nullptr;
        window.called = 0;
        EXPECT_EQ(adapter->GetBlurSuppression(&flag), known ? NS_OK : NS_ERROR_NOT_IMPLEMENTED);
        EXPECT_EQ(window.called, known ? 21u : 0u);
        EXPECT_EQ(flag, 0u) << "off where a browser has none";
        EXPECT_EQ(adapter->SetBlurSuppression(1), known ? NS_OK : NS_ERROR_NOT_IMPLEMENTED);
        EXPECT_EQ(window.called, known ? 22u : 0u);

        flag = 0xAAAAAAAA;
        window.status = NS_ERROR_FAILURE;
        EXPECT_EQ(adapter->GetVisibility(&flag), NS_ERROR_FAILURE) << "the browser's own answer";
        EXPECT_EQ(flag, 0xAAAAAAAA) << "a failure gives nothing";

        void* self = nullptr;
        for (const nsIID& iid : {nsIBaseWindow::kIID, nsISupports::kIID}) {
            EXPECT_EQ(adapter->QueryInterface(&iid, &self), NS_OK);
            EXPECT_EQ(self, adapter.get());
            EXPECT_EQ(adapter->Release(), 1u);
        }
        EXPECT_EQ(adapter->QueryInterface(&nsIBaseWindow::kIIDE, &self), NS_ERROR_NO_INTERFACE);
        EXPECT_EQ(self, nullptr);
        adapter.reset();
        EXPECT_EQ(window.references, 0u);
    }
}

TEST(BaseWindow, IsTheFirstThatAnswers) {
    const struct {
        const char *answered, *requested;
        unsigned getVisibility;  // its slot in the layout that serves; 0: none does
        const char* why;
    } rows[] = {
        {"DECB", "A", 17, "the requestor before the rest"},
        {"DEC", "B", 18, "a requestor that lacks the module's own layout: C"},
        {"DECB", nullptr, 17, "no requestor to ask: B"},
        {"DE", nullptr, 19, "47 before the extended-support release"},
        {"D", nullptr, 18, "the last"},
        {"", "B", 0, "a requestor is asked for one layout"},
        {"", nullptr, 0, "answers nothing"},
    };
    for (const auto& row : rows) {
        Window window(row.answered, row.requested);
        if (const auto adapter = GetBaseWindow(&window, 52)) {
            EXPECT_EQ(adapter->SetBlurSuppression(1) == NS_OK,
                      row.getVisibility == 17 && row.requested != nullptr)
                << row.why;
            adapter->SetVisibility(1);
        }
        EXPECT_EQ(window.called, row.getVisibility == 0 ? 0 : row.getVisibility + 1) << row.why;
        EXPECT_EQ(window.references, 0u) << row.why;
    }
    Window own("DECBA", "A");
    EXPECT_EQ(static_cast<void*>(GetBaseWindow(&own, 52).get()), &own) << "its own layout needs no adapter";
    EXPECT_EQ(own.references, 0u);
    EXPECT_FALSE(GetBaseWindow(nullptr, 52));
}

}  // namespace
}  // namespace zab
