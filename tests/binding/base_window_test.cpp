#include "binding/base_window.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace zab {
namespace {

constexpr nsIID kIidA{0x046BC8A0, 0x8015, 0x11D3, {0xAF, 0x70, 0x00, 0xA0, 0x24, 0xFF, 0xC0, 0x8C}};
constexpr nsIID kIidB{0x7144AC8B, 0x6702, 0x4A4B, {0xA7, 0x3D, 0xD1, 0xD4, 0xE9, 0x71, 0x7E, 0x46}};
constexpr nsIID kIidC{0x9DA319F3, 0xEEE6, 0x4504, {0x81, 0xA5, 0x6A, 0x19, 0xCF, 0x62, 0x15, 0xBF}};
constexpr nsIID kIidD{0x758A7A9C, 0x03D7, 0x4DCE, {0x95, 0x8F, 0x78, 0x85, 0xAE, 0xA2, 0xDC, 0x75}};
constexpr nsIID kIidE{0xCA635529, 0xA977, 0x4552, {0x9B, 0x8A, 0x66, 0x18, 0x7E, 0x54, 0xD8, 0x82}};

enum class Asked { directly, throughRequestor };

/// A window of a browser: which interfaces it answers and how, what was called, what is answered. That each
/// operation has its slot in each layout is walked through the browser's own tables, by the module's ABI tests.
struct Browser {
    using Arguments = std::array<std::uintptr_t, 6>;

    int references = 0;
    nsresult status = NS_OK;
    unsigned called = 0;  // slot of the last operation
    Arguments arguments{};

    nsISupports* find(const nsIID& iid, Asked asked) {
        for (const auto& answer : answers)
            if (answer.iid == iid && answer.asked == asked) return answer.object;
        return nullptr;
    }

    struct Answer {
        nsIID iid;
        Asked asked;
        nsISupports* object;
    };
    std::vector<Answer> answers;
};

template <class Interface>
class Facet : public Interface {
  public:
    explicit Facet(Browser& browser) : browser_(browser) {}
    nsresult QueryInterface(const nsIID* iid, void** result) override {
        return give(browser_.find(*iid, Asked::directly), result);
    }
    uint32_t AddRef() override { return static_cast<uint32_t>(++browser_.references); }
    uint32_t Release() override { return static_cast<uint32_t>(--browser_.references); }

  protected:
    nsresult give(nsISupports* found, void** result) {
        *result = found;
        if (found == nullptr) return NS_ERROR_NO_INTERFACE;
        ++browser_.references;
        return NS_OK;
    }
    Browser& browser_;
};

class RequestorFacet final : public Facet<nsIInterfaceRequestor> {
  public:
    using Facet::Facet;
    nsresult GetInterface(const nsIID* iid, void** result) override {
        return give(browser_.find(*iid, Asked::throughRequestor), result);
    }
};

/// One layout: each slot notes its number and its first six arguments; one of them gives a boolean.
class WindowFacet final : public Facet<nsISupports> {
  public:
    WindowFacet(Browser& browser, unsigned booleanSlot = 0, std::size_t booleanBytes = 0)
        : Facet(browser), booleanSlot_(booleanSlot), booleanBytes_(booleanBytes) {}

#define ZAB_SLOT(number)                                                                                  \
    virtual nsresult Slot##number(std::uintptr_t a, std::uintptr_t b, std::uintptr_t c, std::uintptr_t d, \
                                  std::uintptr_t e, std::uintptr_t f) {                                   \
        return record(number, {a, b, c, d, e, f});                                                        \
    }
#define ZAB_SLOTS(a, b, c, d) ZAB_SLOT(a) ZAB_SLOT(b) ZAB_SLOT(c) ZAB_SLOT(d)
    ZAB_SLOTS(3, 4, 5, 6)
    ZAB_SLOTS(7, 8, 9, 10)
    ZAB_SLOTS(11, 12, 13, 14)
    ZAB_SLOTS(15, 16, 17, 18)
    ZAB_SLOTS(19, 20, 21, 22)
#undef ZAB_SLOTS
#undef ZAB_SLOT

  private:
    nsresult record(unsigned slot, const Browser::Arguments& arguments) {
        browser_.called = slot;
        browser_.arguments = arguments;
        const std::uint32_t yes = 1;
        if (slot == booleanSlot_) std::memcpy(reinterpret_cast<void*>(arguments[0]), &yes, booleanBytes_);
        return browser_.status;
    }

    unsigned booleanSlot_;
    std::size_t booleanBytes_;
};

struct Layout {
    const char* name;
    nsIID iid;
    Asked asked;
    std::int32_t version;
    std::size_t booleanBytes;
    unsigned getVisibility;  // its slot; the setter follows
};

constexpr Layout kLayouts[] = {
    {"A through the requestor", kIidA, Asked::throughRequestor, 9, 4, 17},
    {"B", kIidB, Asked::directly, 16, 1, 17},
    {"B of 17", kIidB, Asked::directly, 17, 1, 18},
    {"B of an unknown version", kIidB, Asked::directly, 4, 1, 17},
    {"C", kIidC, Asked::directly, 18, 1, 18},
    {"C of 17: the version changes B alone", kIidC, Asked::directly, 17, 1, 18},
    {"D", kIidD, Asked::directly, 45, 1, 18},
    {"E", kIidE, Asked::directly, 52, 1, 19},
};

/// A browser whose window has one layout, and the adapter to it.
struct Served {
    Browser browser;
    WindowFacet window;
    RequestorFacet requestor{browser};
    InterfacePtr<nsIBaseWindow> adapter;

    explicit Served(const Layout& layout) : window(browser, layout.getVisibility, layout.booleanBytes) {
        browser.answers = {{layout.iid, layout.asked, &window},
                           {nsIInterfaceRequestor::kIID, Asked::directly, &requestor}};
        adapter = GetBaseWindow(&window, layout.version);
    }
};

TEST(BaseWindow, CarriesBooleansOfEitherWidthAsWholeWords) {
    for (const Layout& layout : kLayouts) {
        SCOPED_TRACE(layout.name);
        Served served(layout);
        Browser& browser = served.browser;
        ASSERT_TRUE(served.adapter);
        EXPECT_EQ(browser.references, 1) << "the adapter holds the window, nothing else";
        std::uint32_t flag = 0xAAAAAAAA;
        EXPECT_EQ(served.adapter->GetVisibility(&flag), NS_OK);
        EXPECT_EQ(browser.called, layout.getVisibility);
        EXPECT_EQ(flag, 1u) << "nothing of the old word is left";
        EXPECT_EQ(served.adapter->GetVisibility(nullptr), NS_ERROR_NULL_POINTER);
        EXPECT_EQ(served.adapter->SetVisibility(0xFF00), NS_OK);
        EXPECT_EQ(browser.called, layout.getVisibility + 1);
        EXPECT_EQ(browser.arguments[0] & 0xFFFFFFFF, 1u) << "0 or 1, whatever is true for the caller";

        const bool known = layout.iid == kIidA;
        browser.called = 0;
        EXPECT_EQ(served.adapter->GetBlurSuppression(&flag), known ? NS_OK : NS_ERROR_NOT_IMPLEMENTED);
        EXPECT_EQ(browser.called, known ? 21u : 0u);
        EXPECT_EQ(flag, 0u) << "off where a browser has none";
        EXPECT_EQ(served.adapter->SetBlurSuppression(1), known ? NS_OK : NS_ERROR_NOT_IMPLEMENTED);
        EXPECT_EQ(browser.called, known ? 22u : 0u);

        flag = 0xAAAAAAAA;
        browser.status = NS_ERROR_FAILURE;
        EXPECT_EQ(served.adapter->GetVisibility(&flag), NS_ERROR_FAILURE) << "the browser's own answer";
        EXPECT_EQ(flag, 0xAAAAAAAA) << "a failure gives nothing";
        served.adapter.reset();
        EXPECT_EQ(browser.references, 0);
    }
}

TEST(BaseWindow, AnAdapterAnswersTheModulesInterfaceAndTheRootWithItself) {
    Served served(kLayouts[7]);
    ASSERT_TRUE(served.adapter);
    void* self = nullptr;
    for (const nsIID& iid : {kIidA, nsISupports::kIID}) {
        ASSERT_EQ(served.adapter->QueryInterface(&iid, &self), NS_OK);
        EXPECT_EQ(self, served.adapter.get());
        EXPECT_EQ(served.adapter->Release(), 1u);
    }
    EXPECT_EQ(served.adapter->QueryInterface(&kIidE, &self), NS_ERROR_NO_INTERFACE);
    EXPECT_EQ(self, nullptr);
}

TEST(BaseWindow, IsTheFirstThatAnswers) {
    Browser browser;
    WindowFacet own(browser), requested(browser, 17, 4), c(browser), d(browser), e(browser);
    RequestorFacet requestor(browser);
    const Browser::Answer ownA{kIidA, Asked::directly, &own},
        requestedA{kIidA, Asked::throughRequestor, &requested}, answerC{kIidC, Asked::directly, &c},
        answerD{kIidD, Asked::directly, &d}, answerE{kIidE, Asked::directly, &e},
        requestorItself{nsIInterfaceRequestor::kIID, Asked::directly, &requestor};
    const struct {
        std::vector<Browser::Answer> answers;
        unsigned getVisibility;  // its slot in the layout that serves
        const char* why;
    } rows[] = {
        {{answerD, answerE, answerC, requestedA, requestorItself, ownA}, 0, "its own layout: no adapter"},
        {{answerD, answerE, answerC, requestedA, requestorItself}, 17, "the requestor before the rest"},
        {{answerD, answerE, answerC, requestedA}, 18, "no requestor to ask: layout C"},
        {{answerD, answerE}, 19, "47 before the extended-support release"},
        {{answerD}, 18, "the last"},
    };
    for (const auto& row : rows) {
        browser.answers = row.answers;
        auto window = GetBaseWindow(&e, 52);
        ASSERT_TRUE(window) << row.why;
        EXPECT_EQ(browser.references, 1) << row.why;
        std::uint32_t flag = 0;
        if (row.getVisibility == 0) {
            EXPECT_EQ(static_cast<void*>(window.get()), static_cast<void*>(&own)) << row.why;
        } else {
            window->GetVisibility(&flag);
            EXPECT_EQ(browser.called, row.getVisibility) << row.why;
        }
        window.reset();
        EXPECT_EQ(browser.references, 0) << row.why;
    }
}

TEST(BaseWindow, IsNothingWhereNobodyAnswers) {
    Browser browser;
    WindowFacet window(browser);
    RequestorFacet requestor(browser);
    EXPECT_FALSE(GetBaseWindow(nullptr, 52));
    EXPECT_FALSE(GetBaseWindow(&window, 52)) << "answers nothing";
    browser.answers = {{nsIInterfaceRequestor::kIID, Asked::directly, &requestor}};
    EXPECT_FALSE(GetBaseWindow(&window, 52)) << "a requestor that has none";
    EXPECT_EQ(browser.references, 0);
}

}  // namespace
}  // namespace zab
