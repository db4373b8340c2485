#include "binding/base_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace zab {
namespace {

// The operations of each layout from slot 3 on, in the order in which the browsers' interface definitions
// declare them; written down here a second time, so that the adapters' table is held to something.
constexpr const char* kA =
    "initWindow create destroy setPosition getPosition setSize getSize setPositionAndSize getPositionAndSize "
    "repaint getParentWidget setParentWidget getParentNativeWindow setParentNativeWindow getVisibility "
    "setVisibility getEnabled setEnabled getBlurSuppression setBlurSuppression getMainWidget setFocus getTitle "
    "setTitle";
constexpr const char* kB =
    "initWindow create destroy setPosition getPosition setSize getSize setPositionAndSize getPositionAndSize "
    "repaint getParentWidget setParentWidget getParentNativeWindow setParentNativeWindow getVisibility "
    "setVisibility getEnabled setEnabled getMainWidget setFocus getTitle setTitle";
constexpr const char* kB17 =
    "initWindow create destroy setPosition getPosition setSize getSize setPositionAndSize getPositionAndSize "
    "repaint getParentWidget setParentWidget getParentNativeWindow setParentNativeWindow getNativeHandle "
    "getVisibility setVisibility getEnabled setEnabled getMainWidget setFocus getTitle setTitle";
constexpr const char* kCAndD =
    "initWindow create destroy setPosition getPosition setSize getSize setPositionAndSize getPositionAndSize "
    "repaint getParentWidget setParentWidget getParentNativeWindow setParentNativeWindow getNativeHandle "
    "getVisibility setVisibility getEnabled setEnabled getMainWidget getUnscaledDevicePixelsPerCSSPixel "
    "setFocus "
    "getTitle setTitle";
constexpr const char* kE =
    "initWindow create destroy setPosition setPositionDesktopPix getPosition setSize getSize "
    "setPositionAndSize "
    "getPositionAndSize repaint getParentWidget setParentWidget getParentNativeWindow setParentNativeWindow "
    "getNativeHandle getVisibility setVisibility getEnabled setEnabled getMainWidget "
    "getUnscaledDevicePixelsPerCSSPixel getDevicePixelsPerDesktopPixel setFocus getTitle setTitle";

constexpr nsIID kIidA{0x046BC8A0, 0x8015, 0x11D3, {0xAF, 0x70, 0x00, 0xA0, 0x24, 0xFF, 0xC0, 0x8C}};
constexpr nsIID kIidB{0x7144AC8B, 0x6702, 0x4A4B, {0xA7, 0x3D, 0xD1, 0xD4, 0xE9, 0x71, 0x7E, 0x46}};
constexpr nsIID kIidC{0x9DA319F3, 0xEEE6, 0x4504, {0x81, 0xA5, 0x6A, 0x19, 0xCF, 0x62, 0x15, 0xBF}};
constexpr nsIID kIidD{0x758A7A9C, 0x03D7, 0x4DCE, {0x95, 0x8F, 0x78, 0x85, 0xAE, 0xA2, 0xDC, 0x75}};
constexpr nsIID kIidE{0xCA635529, 0xA977, 0x4552, {0x9B, 0x8A, 0x66, 0x18, 0x7E, 0x54, 0xD8, 0x82}};

std::vector<std::string> words(const char* text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

enum class Asked { directly, throughRequestor };

/// A window of a browser: which interfaces it answers and how, what was called, what is answered.
struct Browser {
    using Arguments = std::array<std::uintptr_t, 6>;

    int references = 0;
    nsresult status = NS_OK;
    std::string called;
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

/// One layout: its table has an operation for every slot, each of which tells its name and first six arguments.
class WindowFacet final : public Facet<nsISupports> {
  public:
    WindowFacet(Browser& browser, const char* layout, std::size_t booleanBytes)
        : Facet(browser), names_(words(layout)), booleanBytes_(booleanBytes) {}

#define ZAB_SLOT(number)                                                                                  \
    virtual nsresult Slot##number(std::uintptr_t a, std::uintptr_t b, std::uintptr_t c, std::uintptr_t d, \
                                  std::uintptr_t e, std::uintptr_t f) {                                   \
        return record(number, {a, b, c, d, e, f});                                                        \
    }
    ZAB_SLOT(3)
    ZAB_SLOT(4)
    ZAB_SLOT(5)
    ZAB_SLOT(6)
    ZAB_SLOT(7)
    ZAB_SLOT(8)
    ZAB_SLOT(9)
    ZAB_SLOT(10)
    ZAB_SLOT(11)
    ZAB_SLOT(12)
    ZAB_SLOT(13)
    ZAB_SLOT(14)
    ZAB_SLOT(15)
    ZAB_SLOT(16)
    ZAB_SLOT(17)
    ZAB_SLOT(18)
    ZAB_SLOT(19)
    ZAB_SLOT(20)
    ZAB_SLOT(21)
    ZAB_SLOT(22)
    ZAB_SLOT(23)
    ZAB_SLOT(24)
    ZAB_SLOT(25)
    ZAB_SLOT(26)
    ZAB_SLOT(27)
    ZAB_SLOT(28)
#undef ZAB_SLOT

  private:
    nsresult record(std::size_t slot, const Browser::Arguments& arguments) {
        browser_.called = slot - 3 < names_.size() ? names_[slot - 3] : "behind the table";
        browser_.arguments = arguments;
        const bool booleanOut = browser_.called == "getVisibility" || browser_.called == "getEnabled" ||
                                browser_.called == "getBlurSuppression";
        if (booleanOut) {
            const std::uint32_t yes = 1;
            std::memcpy(reinterpret_cast<void*>(arguments[0]), &yes, booleanBytes_);
        }
        return browser_.status;
    }

    std::vector<std::string> names_;
    std::size_t booleanBytes_;
};

/// A browser whose window has one layout, and the adapter to it.
struct Served {
    Browser browser;
    WindowFacet window;
    RequestorFacet requestor{browser};
    InterfacePtr<nsIBaseWindow> adapter;

    Served(const nsIID& iid, Asked asked, const char* layout, std::size_t booleanBytes, std::int32_t version)
        : window(browser, layout, booleanBytes) {
        browser.answers = {{iid, asked, &window}, {nsIInterfaceRequestor::kIID, Asked::directly, &requestor}};
        adapter = GetBaseWindow(&window, version);
    }
};

struct LayoutCase {
    const char* name;
    nsIID iid;
    Asked asked;
    std::int32_t version;
    std::size_t booleanBytes;
    const char* operations;
};

constexpr LayoutCase kLayouts[] = {
    {"A through the requestor", kIidA, Asked::throughRequestor, 9, 4, kA},
    {"B", kIidB, Asked::directly, 16, 1, kB},
    {"B of 17", kIidB, Asked::directly, 17, 1, kB17},
    {"B of an unknown version", kIidB, Asked::directly, 4, 1, kB},
    {"C", kIidC, Asked::directly, 18, 1, kCAndD},
    {"C of 17: the version changes B alone", kIidC, Asked::directly, 17, 1, kCAndD},
    {"D", kIidD, Asked::directly, 45, 1, kCAndD},
    {"E", kIidE, Asked::directly, 52, 1, kE},
};

/// Where results go, and pointers that are only passed on.
struct Places {
    std::int32_t x, y, cx, cy;
    void* pointer;
    char16_t* title;
    char token;
};

struct Argument {
    std::uintptr_t value;
    std::uintptr_t mask;  // the upper half of a 32-bit argument is undefined
};
Argument number(std::int32_t value) { return {static_cast<std::uint32_t>(value), 0xFFFFFFFF}; }
Argument place(const void* address) { return {reinterpret_cast<std::uintptr_t>(address), ~std::uintptr_t{0}}; }

struct OperationCase {
    const char* name;
    nsresult (*call)(nsIBaseWindow&, Places&);
    std::vector<Argument> arguments;
};

std::vector<OperationCase> operationCases(Places& p) {
    using W = nsIBaseWindow;
    return {
        {"initWindow",
         [](W& w, Places& q) { return w.InitWindow(&q.token, &q.pointer, -1, 2, -3, 4); },
         {place(&p.token), place(&p.pointer), number(-1), number(2), number(-3), number(4)}},
        {"create", [](W& w, Places&) { return w.Create(); }, {}},
        {"destroy", [](W& w, Places&) { return w.Destroy(); }, {}},
        {"setPosition", [](W& w, Places&) { return w.SetPosition(-5, 6); }, {number(-5), number(6)}},
        {"getPosition", [](W& w, Places& q) { return w.GetPosition(&q.x, &q.y); }, {place(&p.x), place(&p.y)}},
        {"setSize", [](W& w, Places&) { return w.SetSize(7, 8, 2); }, {number(7), number(8), number(1)}},
        {"getSize", [](W& w, Places& q) { return w.GetSize(&q.cx, &q.cy); }, {place(&p.cx), place(&p.cy)}},
        {"setPositionAndSize",
         [](W& w, Places&) { return w.SetPositionAndSize(1, 2, 3, 4, 0x100); },
         {number(1), number(2), number(3), number(4), number(1)}},
        {"getPositionAndSize",
         [](W& w, Places& q) { return w.GetPositionAndSize(&q.x, &q.y, &q.cx, &q.cy); },
         {place(&p.x), place(&p.y), place(&p.cx), place(&p.cy)}},
        {"repaint", [](W& w, Places&) { return w.Repaint(0); }, {number(0)}},
        {"getParentWidget", [](W& w, Places& q) { return w.GetParentWidget(&q.pointer); }, {place(&p.pointer)}},
        {"setParentWidget", [](W& w, Places& q) { return w.SetParentWidget(&q.token); }, {place(&p.token)}},
        {"getParentNativeWindow",
         [](W& w, Places& q) { return w.GetParentNativeWindow(&q.pointer); },
         {place(&p.pointer)}},
        {"setParentNativeWindow",
         [](W& w, Places& q) { return w.SetParentNativeWindow(&q.token); },
         {place(&p.token)}},
        {"setVisibility", [](W& w, Places&) { return w.SetVisibility(0xFF00); }, {number(1)}},
        {"setEnabled", [](W& w, Places&) { return w.SetEnabled(1); }, {number(1)}},
        {"getMainWidget", [](W& w, Places& q) { return w.GetMainWidget(&q.pointer); }, {place(&p.pointer)}},
        {"setFocus", [](W& w, Places&) { return w.SetFocus(); }, {}},
        {"getTitle", [](W& w, Places& q) { return w.GetTitle(&q.title); }, {place(&p.title)}},
        {"setTitle", [](W& w, Places&) { return w.SetTitle(u"t"); }, {}},
    };
}

TEST(BaseWindow, ForwardsEveryOperationToItsSlotInEveryLayout) {
    for (const auto& layout : kLayouts) {
        Served served(layout.iid, layout.asked, layout.operations, layout.booleanBytes, layout.version);
        ASSERT_TRUE(served.adapter) << layout.name;
        EXPECT_EQ(served.browser.references, 1)
            << layout.name << ": the adapter holds the window, nothing else";
        served.browser.status = 0x80470002;
        Places places{};
        for (const auto& operation : operationCases(places)) {
            const auto where = std::string(layout.name) + ", " + operation.name;
            EXPECT_EQ(operation.call(*served.adapter.get(), places), served.browser.status) << where;
            EXPECT_EQ(served.browser.called, operation.name) << where;
            for (std::size_t i = 0; i < operation.arguments.size(); ++i) {
                const auto& [value, mask] = operation.arguments[i];
                EXPECT_EQ(served.browser.arguments[i] & mask, value) << where << ", argument " << i;
            }
        }
        served.adapter.reset();
        EXPECT_EQ(served.browser.references, 0) << layout.name;
    }
}

TEST(BaseWindow, ReadsABooleanOfEitherWidthIntoAWholeWord) {
    const struct {
        const char* name;
        nsresult (nsIBaseWindow::*get)(uint32_t*);
    } attributes[] = {
        {"getVisibility", &nsIBaseWindow::GetVisibility},
        {"getEnabled", &nsIBaseWindow::GetEnabled},
    };
    for (const auto& layout : kLayouts) {
        Served served(layout.iid, layout.asked, layout.operations, layout.booleanBytes, layout.version);
        ASSERT_TRUE(served.adapter) << layout.name;
        for (const auto& attribute : attributes) {
            std::uint32_t flag = 0xAAAAAAAA;
            served.browser.status = NS_OK;
            EXPECT_EQ((served.adapter.get()->*attribute.get)(&flag), NS_OK);
            EXPECT_EQ(served.browser.called, attribute.name) << layout.name;
            EXPECT_EQ(flag, 1u) << layout.name << ": nothing of the old word is left";

            flag = 0xAAAAAAAA;
            served.browser.status = NS_ERROR_FAILURE;
            EXPECT_EQ((served.adapter.get()->*attribute.get)(&flag), NS_ERROR_FAILURE);
            EXPECT_EQ(flag, 0xAAAAAAAA) << layout.name << ": a failure gives nothing";
            EXPECT_EQ((served.adapter.get()->*attribute.get)(nullptr), NS_ERROR_NULL_POINTER);
        }
    }
}

TEST(BaseWindow, BlurSuppressionIsOffWhereABrowserHasNone) {
    for (const auto& layout : kLayouts) {
        Served served(layout.iid, layout.asked, layout.operations, layout.booleanBytes, layout.version);
        ASSERT_TRUE(served.adapter) << layout.name;
        const bool known = layout.operations == kA;
        std::uint32_t flag = 0xAAAAAAAA;
        EXPECT_EQ(served.adapter->GetBlurSuppression(&flag), known ? NS_OK : NS_ERROR_NOT_IMPLEMENTED);
        EXPECT_EQ(flag, known ? 1u : 0u) << layout.name;
        EXPECT_EQ(served.browser.called, known ? "getBlurSuppression" : "") << layout.name;
        EXPECT_EQ(served.adapter->SetBlurSuppression(1), known ? NS_OK : NS_ERROR_NOT_IMPLEMENTED);
        EXPECT_EQ(served.browser.called, known ? "setBlurSuppression" : "") << layout.name;
    }
}

TEST(BaseWindow, AnAdapterAnswersTheModulesInterfaceAndTheRootWithItself) {
    Served served(kIidE, Asked::directly, kE, 1, 52);
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
    WindowFacet own(browser, kA, 4), requested(browser, kA, 4), c(browser, kCAndD, 1), d(browser, "d d d d", 1),
        e(browser, "e e e e", 1);
    RequestorFacet requestor(browser);
    const Browser::Answer ownA{kIidA, Asked::directly, &own},
        requestedA{kIidA, Asked::throughRequestor, &requested}, answerC{kIidC, Asked::directly, &c},
        answerD{kIidD, Asked::directly, &d}, answerE{kIidE, Asked::directly, &e},
        requestorItself{nsIInterfaceRequestor::kIID, Asked::directly, &requestor};
    const struct {
        std::vector<Browser::Answer> answers;
        const char* fourthOperation;  // as the layout that serves names it
        const char* why;
    } rows[] = {
        {{answerD, answerE, answerC, requestedA, requestorItself, ownA}, "", "its own layout: no adapter"},
        {{answerD, answerE, answerC, requestedA, requestorItself},
         "setPosition",
         "the requestor before the rest"},
        {{answerD, answerE, answerC, requestedA}, "setPosition", "no requestor to ask: layout C"},
        {{answerD, answerE}, "e", "47 before the extended-support release"},
        {{answerD}, "d", "the last"},
    };
    for (const auto& row : rows) {
        browser.answers = row.answers;
        browser.called.clear();
        auto window = GetBaseWindow(&e, 52);
        ASSERT_TRUE(window) << row.why;
        EXPECT_EQ(browser.references, 1) << row.why;
        if (*row.fourthOperation == '\0') {
            EXPECT_EQ(static_cast<void*>(window.get()), static_cast<void*>(&own)) << row.why;
        } else {
            window->SetPosition(1, 2);
            EXPECT_EQ(browser.called, row.fourthOperation) << row.why;
        }
        window.reset();
        EXPECT_EQ(browser.references, 0) << row.why;
    }
}

TEST(BaseWindow, IsNothingWhereNobodyAnswers) {
    Browser browser;
    WindowFacet window(browser, kA, 4);
    RequestorFacet requestor(browser);
    EXPECT_FALSE(GetBaseWindow(nullptr, 52));
    EXPECT_FALSE(GetBaseWindow(&window, 52)) << "answers nothing";
    browser.answers = {{nsIInterfaceRequestor::kIID, Asked::directly, &requestor}};
    EXPECT_FALSE(GetBaseWindow(&window, 52)) << "a requestor that has none";
    EXPECT_EQ(browser.references, 0);
}

}  // namespace
}  // namespace zab
