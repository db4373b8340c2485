// Pages go away, in every way that a browser tells of it: what was kept of them goes too, and nothing else.
#include "desk/desk.h"
#include "scenarios/import_hook.h"
#include "scenarios/scenario.h"

namespace zab::testbed {
namespace {

std::u16string idOf(const Page& page) { return page.attributes.at(u"zabmzcc-ext-docid"); }

class Documents : public Scenario {
  protected:
    Documents() { browser.startsUp(); }

    static std::string urlOf(const std::string& name) { return "http://site.example/" + name; }
    static bool kept(const std::string& name) { return desk().remembers(urlOf(name)); }
    Channel& asks(Page& page, const std::string& name) {
        return browser.requests({.url = urlOf(name), .loadFlags = kEmbedded, .page = &page});
    }
    void unloadEvent(Page& page) { browser.mouse(u"unload", &page); }
    /// Whether the module takes this document for the selected one; asking unloads it.
    bool wasSelected(std::u16string_view id) {
        const auto before = browser.refreshes();
        browser.unloads(id);
        return browser.refreshes() != before;
    }
};

TEST_F(Documents, TakeTheirRequestsWithThemHoweverTheirEndIsTold) {
    for (const std::string_view steps : {"ex", "xe", "ee", "xx"}) {  // the event, the export
        auto& page = browser.opensPage("http://site.example/");
        auto& other = browser.opensPage("http://site.example/");
        for (const char* name : {"first", "second"}) asks(page, name);
        asks(other, "other");
        browser.selectsTab(idOf(page));
        for (const char step : steps) {
            step == 'e' ? unloadEvent(page) : browser.unloads(idOf(page));
            EXPECT_FALSE(kept("first") || kept("second")) << steps;
            EXPECT_TRUE(kept("other")) << steps;
        }
        EXPECT_FALSE(wasSelected(idOf(page))) << steps;
        unloadEvent(other);
        EXPECT_FALSE(kept("other")) << steps;
    }
}

TEST_F(Documents, AreKnownByTheNumberThatTheirAttributeBeginsWith) {
    const struct {
        std::optional<std::u16string> attribute;
        std::u16string_view id;  // by which the export knows the document; empty: by none
        const char* why;
    } rows[] = {
        {std::nullopt, u"", "no attribute"},
        {u"abc", u"", "no number"},
        {u"17abc", u"17", "a number that ends at another character"},
        {u"18446744073709551616", u"18446744073709551615", "more than the largest counts as the largest"},
    };
    for (const auto& row : rows) {
        auto& page = browser.opensPage("http://site.example/");
        page.attributes.clear();
        if (row.attribute) page.attributes[u"zabmzcc-ext-docid"] = *row.attribute;
        const bool unknown = row.id.empty();
        const auto ends = [&](const std::function<void()>& end, const char* how) {
            asks(page, how);
            end();
            EXPECT_EQ(kept(how), unknown) << row.why << ": " << how;
        };
        ends([&] { browser.unloads(row.attribute.value_or(u"")); }, "export");
        ends([&] { browser.unloads(row.id); }, "number");
        ends([&] { unloadEvent(page); }, "event");
        // A document that gets its number later is still known as an object.
        page.attributes[u"zabmzcc-ext-docid"] = u"17";
        unloadEvent(page);
        EXPECT_FALSE(kept("export") || kept("number") || kept("event")) << row.why;
    }
}

TEST_F(Documents, AnUnloadEventThatCannotBeReadChangesNothing) {
    auto& page = browser.opensPage("http://site.example/");
    std::uint32_t faults = 0;
    for (bool reached = true; reached; ++faults) {
        asks(page, "page");
        browser.selectsTab(idOf(page));
        browser.faults().failNth(faults + 1);
        unloadEvent(page);
        reached = browser.faults().reached();
        const auto where = browser.faults().failedOperation();
        browser.faults().none();
        EXPECT_EQ(kept("page"), reached) << where;
        EXPECT_EQ(wasSelected(idOf(page)), reached) << where;
        EXPECT_FALSE(kept("page")) << "the export ends it all the same: " << where;
        EXPECT_EQ(browser.unbalanced(), "") << where;
    }
    EXPECT_GT(faults, 8u);
}

TEST_F(Documents, TheSelectedTabIsAskedForAnewWhenItsDocumentEnds) {
    auto& tab = browser.make<BedObject>("selected tab");
    browser.selectedTab = &tab;
    const struct {
        std::string failing;
        std::uint32_t refreshed, asked;
        std::int32_t held;
        const char* why;
    } rows[] = {
        {"none", 1, 0, 0, "the newer helper does it by itself"},
        {"service @zab/mozilla_cc_helper11;1", 0, 1, 1, "no newer helper: the older one names the tab"},
        {"helper11.4", 1, 1, 1, "the newer one fails"},
    };
    for (const auto& row : rows) {
        browser.selectsTab(u"17");
        browser.faults().failAll(row.failing);
        browser.unloads(u"17");
        EXPECT_EQ(browser.faults().countOf("helper11.4"), row.refreshed) << row.why;
        EXPECT_EQ(browser.faults().countOf("helper.3"), row.asked) << row.why;
        EXPECT_EQ(tab.references(), row.held) << row.why;
        browser.faults().none();
    }
    browser.selectsTab(u"17");
    unloadEvent(browser.opensPage("http://site.example/", u"", 17));
    EXPECT_EQ(tab.references(), 0) << "the event lets it go and asks for none";
    EXPECT_EQ(browser.faults().countOf("helper11.4"), 0u);
}

TEST_F(Documents, ATabMayComeForwardWhileADocumentUnloads) {
    auto& page = browser.opensPage("http://site.example/", u"", 17);
    const struct {
        const char* during;
        bool byEvent;
        const char* why;
    } rows[] = {
        {"helper5.66", true, "while the document is asked for"},
        {"helper11.7", true, "while its number is read"},
        {"helper11.4", false, "while the extension is asked for the new tab, as its answer"},
    };
    for (const auto& row : rows) {
        asks(page, "page");
        browser.selectsTab(u"17");
        browser.onNext(row.during, [&] { browser.selectsTab(u"18"); });
        row.byEvent ? unloadEvent(page) : browser.unloads(u"17");
        EXPECT_FALSE(kept("page")) << row.why;
        EXPECT_TRUE(wasSelected(u"18")) << "the newer choice stays: " << row.why;
    }
}

TEST_F(Documents, WaitAtMostOnceForListsThatAnotherHoldsAndTouchThemOrNotAsTheyMust) {
    const ImportHook hook(browser, {});
    auto& page = browser.opensPage("http://site.example/", u"", 17);
    auto& gone = asks(page, "gone");
    auto& moved = asks(page, "moved");
    asks(page, "page");
    const struct {
        const char* why;
        std::function<void()> work;
        std::uint32_t waits;
    } rows[] = {
        {"a request goes out and is not noted", [&] { asks(page, "unnoted"); }, 1},
        {"a request that came to nothing stays noted", [&] { browser.answers(gone, 404); }, 1},
        {"a redirect is followed under its old name",
         [&] {
             browser.answers(moved, 302, {{"Location", "http://site.example/elsewhere"}});
         },
         1},
        {"a response that stays needs no list",
         [&] { browser.answers(browser.make<Channel>(Request{.url = "http://site.example/"}), 200); }, 0},
        {"a tab comes forward all the same", [&] { browser.selectsTab(u"17"); }, 1},
        {"and is reported", [&] { browser.reportsSelectedTab(u"17"); }, 1},
        {"an unload by export clears the selection, the requests stay", [&] { browser.unloads(u"17"); }, 1},
        {"an unload by event too", [&] { unloadEvent(page); }, 1},
        {"an unload of nothing waits for nothing", [&] { browser.unloads(u"abc"); }, 0},
        {"a mouse press neither", [&] { browser.mouse(u"mousedown", &page); }, 0},
    };
    for (const auto& row : rows) {
        browser.faults().failAll("lists lock");
        row.work();
        EXPECT_EQ(browser.faults().countOf("lists lock"), row.waits) << row.why;
    }
    browser.faults().none();
    EXPECT_EQ(browser.refreshes(), 1u) << "the selected tab was asked for";
    EXPECT_FALSE(kept("unnoted"));
    EXPECT_TRUE(kept("gone") && kept("moved") && kept("page"));
    browser.answers(gone, 404);
    EXPECT_FALSE(kept("gone")) << "the lock is free again";
    unloadEvent(page);
    EXPECT_FALSE(kept("moved") || kept("page"));
}

}  // namespace
}  // namespace zab::testbed
