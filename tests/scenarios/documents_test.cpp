// Pages go away, in every way that a browser tells of it: what was kept of them goes too, and nothing else.
//
// What the module keeps of a request is its record; its POST body, a text of its own in the module's memory,
// shows from outside whether the record is there.
#include <gtest/gtest.h>

#include <algorithm>

#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/process_view.h"

namespace zab::testbed {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

constexpr auto kLongestWait = 1000ms;
constexpr auto kSlack = 800ms;  // of a machine that is busy with other things

/// A form as the browser holds it, behind a header block that the module's copy does not have; of a length that
/// a heap gives a block of its own.
std::string formNamed(const std::string& name) {
    return "Content-Type: text/plain\r\n\r\nbody of " + name + std::string(20'000, '.');
}
std::size_t kept(const std::string& name) { return longTextsThatBeginWith("body of " + name + "."); }

std::u16string idOf(const Page& page) {
    const auto found = page.attributes.find(u"zabmzcc-ext-docid");
    return found == page.attributes.end() ? u"" : found->second;
}

milliseconds timeOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
}

class Documents : public ::testing::Test {
  protected:
    Documents() { browser.startsUp(); }
    ~Documents() override {
        EXPECT_EQ(browser.unbalanced(), "");
        EXPECT_EQ(browser.violations(), std::vector<std::string>{});
    }

    Channel& posts(Page& page, const std::string& name) {
        return browser.requests({.url = "http://site.example/" + name,
                                 .method = "POST",
                                 .loadFlags = kEmbedded,
                                 .page = &page,
                                 .upload = Upload{.bytes = formNamed(name)}});
    }
    void unloadEvent(Page& page) { browser.mouse(u"unload", &page); }
    /// Whether the module takes this document for the selected one; asking unloads it.
    bool wasSelected(std::u16string_view id) {
        const auto before = browser.refreshes();
        browser.unloads(id);
        return browser.refreshes() != before;
    }

    SettingsTree settings;
    Browser browser{{.debuggerPresent = false}};
};

TEST_F(Documents, TakeTheirRequestsWithThemHoweverTheirEndIsTold) {
    const struct {
        const char* steps;  // e: the event, x: the export
        const char* why;
    } rows[] = {{"e", "by event"},
                {"x", "by export"},
                {"ex", "event, then export"},
                {"xe", "export, then event"},
                {"ee", "the event twice"},
                {"xx", "the export twice"}};
    for (const auto& row : rows) {
        auto& page = browser.opensPage("http://site.example/");
        auto& other = browser.opensPage("http://site.example/");
        posts(page, "first");
        posts(page, "second");
        posts(other, "other");
        EXPECT_EQ(kept("first") + kept("second") + kept("other"), 3u) << row.why;
        browser.selectsTab(idOf(page));
        for (const char step : std::string_view(row.steps)) {
            step == 'e' ? unloadEvent(page) : browser.unloads(idOf(page));
            EXPECT_EQ(kept("first") + kept("second"), 0u) << row.why;
            EXPECT_EQ(kept("other"), 1u) << row.why;
        }
        EXPECT_FALSE(wasSelected(idOf(page))) << row.why;
        unloadEvent(other);
        EXPECT_EQ(kept("other"), 0u) << row.why;
    }
}

TEST_F(Documents, AreKnownByTheNumberThatTheirAttributeBeginsWith) {
    constexpr std::u16string_view kLargest = u"18446744073709551615";
    const struct {
        std::optional<std::u16string> attribute;
        std::u16string_view id;  // by which the export knows the document; empty: by none
        const char* why;
    } rows[] = {
        {std::nullopt, u"", "no attribute"},
        {u"", u"", "an empty one"},
        {u"abc", u"", "no number"},
        {u"0", u"", "the number of no document"},
        {u"17abc", u"17", "a number that ends at another character"},
        {u"18446744073709551615", kLargest, "the largest"},
        {u"18446744073709551616", kLargest, "one more counts as the largest"},
    };
    for (const auto& row : rows) {
        auto& page = browser.opensPage("http://site.example/");
        page.attributes.clear();
        if (row.attribute) page.attributes[u"zabmzcc-ext-docid"] = *row.attribute;
        const bool known = !row.id.empty();

        posts(page, "ended by export");
        browser.unloads(row.attribute.value_or(u""));
        EXPECT_EQ(kept("ended by export"), known ? 0u : 1u) << row.why;

        posts(page, "ended by number");
        browser.unloads(row.id);
        EXPECT_EQ(kept("ended by number"), known ? 0u : 1u) << row.why;

        posts(page, "ended by event");
        unloadEvent(page);
        EXPECT_EQ(kept("ended by event"), known ? 0u : 1u) << row.why;

        // A document that gets its number later is still known as an object.
        page.attributes[u"zabmzcc-ext-docid"] = u"17";
        unloadEvent(page);
        EXPECT_EQ(kept("ended by export") + kept("ended by number") + kept("ended by event"), 0u) << row.why;
    }
}

TEST_F(Documents, AnUnloadEventThatCannotBeReadChangesNothing) {
    auto& page = browser.opensPage("http://site.example/");
    std::uint32_t faults = 0;
    for (bool reached = true; reached; ++faults) {
        posts(page, "page");
        browser.selectsTab(idOf(page));
        browser.faults().failNth(faults + 1);
        unloadEvent(page);
        reached = browser.faults().reached();
        const auto where = browser.faults().failedOperation();
        browser.faults().none();
        EXPECT_EQ(kept("page"), reached ? 1u : 0u) << where;
        EXPECT_EQ(wasSelected(idOf(page)), reached) << where;
        EXPECT_EQ(kept("page"), 0u) << "the export ends it all the same: " << where;
        EXPECT_EQ(browser.unbalanced(), "") << where;
    }
    EXPECT_GT(faults, 8u);
}

TEST_F(Documents, TheSelectedTabIsAskedForAnewWhenItsDocumentEnds) {
    auto& tab = browser.make<BedObject>("selected tab");
    browser.selectedTab = &tab;
    const struct {
        std::vector<const char*> failing;
        std::uint32_t refreshed, asked;
        std::int32_t held;
        const char* why;
    } rows[] = {
        {{}, 1, 0, 0, "the newer helper does it by itself"},
        {{"service @zab/mozilla_cc_helper11;1"}, 0, 1, 1, "no newer helper: the older one names the tab"},
        {{"helper11.4"}, 1, 1, 1, "the newer one fails"},
    };
    for (const auto& row : rows) {
        browser.selectsTab(u"17");
        browser.faults().none();
        for (const char* operation : row.failing) browser.faults().failAll(operation);
        browser.unloads(u"17");
        EXPECT_EQ(browser.faults().countOf("helper11.4"), row.refreshed) << row.why;
        EXPECT_EQ(browser.faults().countOf("helper.3"), row.asked) << row.why;
        EXPECT_EQ(tab.references(), row.held) << row.why;
        browser.faults().none();
    }
    browser.selectsTab(u"17");
    auto& page = browser.opensPage("http://site.example/", u"", 17);
    unloadEvent(page);
    EXPECT_EQ(tab.references(), 0) << "the event lets it go and asks for none";
    EXPECT_EQ(browser.faults().countOf("helper11.4"), 0u);
}

TEST_F(Documents, ATabMayComeForwardWhileADocumentUnloads) {
    auto& page = browser.opensPage("http://site.example/", u"", 17);
    const auto switches = [&] { browser.selectsTab(u"18"); };
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
        posts(page, "page");
        browser.selectsTab(u"17");
        browser.onNext(row.during, switches);
        row.byEvent ? unloadEvent(page) : browser.unloads(u"17");
        EXPECT_EQ(kept("page"), 0u) << row.why;
        EXPECT_TRUE(wasSelected(u"18")) << "the newer choice stays: " << row.why;
    }
}

/// The lock over the lists, taken away from the module. It has no name, but the module makes it with the first
/// notification: of all such handles of the process it is the one that is new then.
class LockedDocuments : public Documents {
  protected:
    LockedDocuments() {
        const auto before = unnamedMutexes();
        browser.clicks("http://site.example/");
        const auto after = unnamedMutexes();
        std::vector<void*> made;
        std::ranges::set_difference(after, before, std::back_inserter(made));
        EXPECT_EQ(made.size(), 1u);
        if (!made.empty()) mutex = made.front();
    }

    void* mutex = nullptr;
};

TEST_F(LockedDocuments, NobodyWaitsLongerThanASecondAndEachListIsTouchedOrLeftAsItMust) {
    ASSERT_NE(mutex, nullptr);
    auto& page = browser.opensPage("http://site.example/", u"", 17);
    browser.mouse(u"mousedown", &page);  // the first of a process takes the system its time
    auto& gone = posts(page, "gone");
    auto& moved = posts(page, "moved");
    posts(page, "page");
    const struct {
        const char* why;
        std::function<void()> work;
        int waits;
    } rows[] = {
        {"a request goes out and is not noted", [&] { posts(page, "unnoted"); }, 1},
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
    {
        const HeldMutex held(mutex);
        for (const auto& row : rows) {
            const auto took = timeOf(row.work);
            EXPECT_GE(took, row.waits * (kLongestWait - 50ms)) << row.why;
            EXPECT_LT(took, row.waits * kLongestWait + kSlack) << row.why;
        }
        EXPECT_EQ(browser.refreshes(), 1u) << "the selected tab was asked for";
    }
    EXPECT_EQ(kept("unnoted"), 0u);
    EXPECT_EQ(kept("gone") + kept("moved") + kept("page"), 3u);
    browser.answers(gone, 404);
    EXPECT_EQ(kept("gone"), 0u) << "the lock is free again";
    unloadEvent(page);
    EXPECT_EQ(kept("moved") + kept("page"), 0u);
}

TEST_F(LockedDocuments, AThreadThatEndsWithTheLockTakesItFromNobody) {
    ASSERT_NE(mutex, nullptr);
    auto& page = browser.opensPage("http://site.example/");
    HeldMutex(mutex, HeldMutex::End::abandoned).lets();
    EXPECT_LT(timeOf([&] { posts(page, "page"); }), kLongestWait - 50ms);
    EXPECT_EQ(kept("page"), 1u);
    unloadEvent(page);
    EXPECT_EQ(kept("page"), 0u);
}

TEST_F(Documents, LeaveNothingBehindAfterTenThousand) {
    constexpr int kAll = 10'000, kWarmUp = 500;
    std::uint64_t early = 0, earlyInUse = 0;
    for (int n = 1; n <= kAll; ++n) {
        auto& page = browser.opensPage("http://site.example/");
        browser.finishes(posts(page, "one"));
        auto& answered = posts(page, "two");
        browser.answers(answered, 200, {{"Content-Type", "text/html"}});
        browser.finishes(answered);
        if (n % 1000 == 0) {
            EXPECT_EQ(kept("one") + kept("two"), 2u) << n;
        }
        n % 2 == 0 ? unloadEvent(page) : browser.unloads(idOf(page));
        Browser::dropsPage(page);
        browser.sweeps();
        if (n != kWarmUp) continue;
        early = privateBytes();
        earlyInUse = heapBytesInUse();
    }
    const auto late = privateBytes(), lateInUse = heapBytesInUse();
    EXPECT_EQ(kept("one") + kept("two"), 0u) << "every list is empty";
    const auto growth = [](std::uint64_t from, std::uint64_t to) {
        return 100.0 * (static_cast<double>(to) / static_cast<double>(from) - 1);
    };
    std::printf("after %d and %d documents: private bytes %llu and %llu (%+.2f %%), in use %llu and %llu\n",
                kWarmUp, kAll, early, late, growth(early, late), earlyInUse, lateInUse);
    EXPECT_LT(growth(early, late), 2.0 + 3.0);
    EXPECT_LT(growth(earlyInUse, lateInUse), 2.0) << "even where a heap had room for what was left";
}

}  // namespace
}  // namespace zab::testbed
