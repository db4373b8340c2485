// What the module costs a browser, in calls: nobody waits for a registry, a lock or the heap because of an
// image.
#include <gtest/gtest.h>

#include "browser/browser.h"
#include "browser/desktop.h"
#include "scenarios/import_hook.h"

namespace zab::testbed {
namespace {

constexpr HookedImport kCounted[] = {
    {"RegOpenKeyExA"},
    {"RegOpenKeyExW"},
    {"RegCreateKeyExA"},
    {"RegQueryValueExA"},
    {"RegQueryValueExW"},
    {"RegSetValueExA"},
    {"RegEnumKeyExA"},
    {"RegQueryInfoKeyA"},
    {"RegNotifyChangeKeyValue"},
    {"RegCloseKey"},
    {"WaitForSingleObject"},
    {"AcquireSRWLockExclusive"},
    {"EnterCriticalSection"},
    {"malloc"},
    {"calloc"},
    {"realloc"},
    {"free"},
    {"CreateFileA"},
    {"CreateFileW"},
    {"OutputDebugStringA"},
    {"OutputDebugStringW"},
};

/// The list of extensions: one value, read into one buffer.
constexpr const char* kListRead = "RegQueryValueExA 1; malloc 1; free 1; ";

class Cost : public ::testing::Test {
  protected:
    Cost() {
        settings.set("Extensions", "zip rar 7z exe");
        browser.startsUp();
    }
    ~Cost() override { EXPECT_EQ(browser.violations(), std::vector<std::string>{}); }

    /// The counted calls that the module makes during `act`, as "name count; ".
    template <class Act>
    std::string callsDuring(Act act) {
        browser.faults().none();
        act();
        std::string text;
        for (const auto& import : kCounted)
            if (const auto count = browser.faults().countOf(import.function); count != 0)
                text.append(import.function).append(" ").append(std::to_string(count)) += "; ";
        return text;
    }

    SettingsTree settings;
    Browser browser{{.debuggerPresent = false}};
    ImportHook hook{browser, kCounted};
};

TEST_F(Cost, WhatAPageEmbedsReachesNeitherRegistryNorLockNorHeap) {
    const struct {
        const char* url;
        Headers answer;
        const char* calls;
        const char* why;
    } rows[] = {
        {"http://h.example/thumb?file=photo.zip", {{"Content-Type", "image/jpeg"}}, "", "named in its query"},
        {"http://h.example/a.zip",
         {{"Content-Type", "image/gif"}},
         "",
         "an image that claims to be an archive"},
        {"http://h.example/style?v=7.css", {{"Content-Type", "text/css; charset=utf-8"}}, "", "with a query"},
        {"http://h.example/load.php?a=site.zip",
         {{"Content-Type", "text/javascript"}, {"Content-Encoding", "gzip"}},
         "",
         "made by a program"},
        {"http://h.example/a.css?v=7",
         {{"Content-Type", "text/css"}},
         kListRead,
         "its type is its extension, which a list could name"},
        {"http://h.example/a.zip?x",
         {{"Content-Type", "application/octet-stream"}},
         kListRead,
         "bytes of any kind, with an extension that a list could name"},
    };
    settings.set("Extensions", "rar");
    for (const auto& row : rows) {
        const Request request{.url = row.url, .loadFlags = kEmbedded};
        auto& first = browser.requests(request);
        browser.answers(first, 200, row.answer);
        auto& second = browser.requests(request);
        EXPECT_EQ(callsDuring([&] { browser.answers(second, 200, row.answer); }), row.calls) << row.why;
        EXPECT_FALSE(second.cancelled()) << row.why;
    }
}

TEST_F(Cost, APolicyQuestionAsksNobody) {
    constexpr std::uint32_t kImage = 3;  // of the content policy
    const auto& module = browser.module();
    const PassedText url(browser.runtime(), std::string_view("http://h.example/a.png")),
        id(browser.runtime(), u"17");
    auto& page = browser.opensPage("http://h.example/");
    const auto helpersBefore = browser.helperCalls();
    const auto ask = [&] {
        browser.intoModule([&] {
            return module.ShouldLoad(kImage, url, url, page.asSupports(), url) ==
                           module.ShouldLoad2(kImage, url, url, page.asSupports(), url, id)
                       ? 0u
                       : 1u;
        });
    };
    ask();
    EXPECT_EQ(callsDuring(ask), "");
    EXPECT_EQ(browser.helperCalls(), helpersBefore);
}

TEST_F(Cost, ARequestTakesTheLockOnceAndMakesOneRecord) {
    const Request request{.url = "http://h.example/a.png", .loadFlags = kEmbedded};
    browser.requests(request);
    const std::string calls = callsDuring([&] { browser.requests(request); });
    EXPECT_EQ(browser.faults().countOf("WaitForSingleObject"), 1u) << calls;
    EXPECT_EQ(browser.faults().countOf("AcquireSRWLockExclusive"), 0u) << calls;
    EXPECT_EQ(browser.faults().countOf("RegQueryValueExA"), 0u) << calls;
    // The record keeps one text that outgrows a string, its URL, a node in the list and one in the index; what
    // else was taken from the heap was given back.
    EXPECT_EQ(browser.faults().countOf("malloc") - browser.faults().countOf("free"), 3u) << calls;
    EXPECT_EQ(browser.faults().countOf("malloc"), 3u) << calls;
    // A response that ends the exchange takes exactly the record away again.
    auto& gone = browser.requests(request);
    const std::string calls404 = callsDuring([&] { browser.answers(gone, 404); });
    EXPECT_EQ(browser.faults().countOf("WaitForSingleObject"), 1u) << calls404;
    EXPECT_EQ(browser.faults().countOf("free") - browser.faults().countOf("malloc"), 3u) << calls404;
}

}  // namespace
}  // namespace zab::testbed
