// What the module costs a browser: its size and its start, then for each kind of response the whole, what runs
// in the module, and the calls that it makes. Times are the best of many; those of the registry are its calls
// times the time of one.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "binding/wide_win32.h"
#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/library.h"
#include "scenarios/recorded.h"

namespace zab::testbed {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int kRuns = 2000;

double microseconds(Clock::duration time) { return std::chrono::duration<double, std::micro>(time).count(); }

const Headers kOrdinary = {{"Date", "Tue, 24 Nov 2026 22:36:43 GMT"},
                           {"Server", "Apache"},
                           {"Cache-Control", "max-age=31536000, public"},
                           {"ETag", "\"5f2b-4c7a1e5d8f60\""},
                           {"Accept-Ranges", "bytes"}};

const struct {
    const char* name;
    const char* url;
    std::uint32_t loadFlags;
    const char* type;
} kResponses[] = {
    {"an image of a page", "http://h.example/a.png?v=1.2", kEmbedded, "image/png"},
    {"a script of a page", "http://h.example/load.php?v=7", kEmbedded, "text/javascript"},
    {"a page that was opened", "http://h.example/page", kTopLevelLoad, "text/html"},
    {"a file that is not caught", "http://h.example/a.iso", kTopLevelLoad, "application/octet-stream"},
    {"a download, handed over", "http://h.example/a.zip", kTopLevelLoad, "application/zip"},
};

constexpr const char* kRegistryCalls[] = {"RegOpenKeyExA",    "RegOpenKeyExW",    "RegCreateKeyExA",
                                          "RegQueryValueExA", "RegQueryValueExW", "RegSetValueExA",
                                          "RegEnumKeyExA"};

/// Each time in a copy of the module that nobody has started yet. Loading binds the browser's runtime.
void printStart() {
    constexpr int kStarts = 20;
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, MAX_PATH);
    const auto module = std::filesystem::path(program).replace_filename(BrowserOptions{}.module);
    auto load = Clock::duration::max(), init = load, observe = load;
    const auto timed = [](Clock::duration& best, const auto& work) {
        const auto begin = Clock::now();
        work();
        best = std::min(best, Clock::now() - begin);
    };
    for (int start = 0; start < kStarts; ++start) {
        Browser browser({.debuggerPresent = false});
        auto& host = browser.make<BedObject>("extension");
        const auto copy =
            std::filesystem::temp_directory_path() / ("zab_cost" + std::to_string(start) + ".dll");
        copy_file(module, copy, std::filesystem::copy_options::overwrite_existing);
        timed(load, [&] { ModuleExports(loadLibrary(copy.string())); });
        timed(init, [&] { browser.intoModule([&] { return browser.module().InitCC(host.asSupports()); }); });
        timed(observe, [&] {
            browser.intoModule([&] { return browser.module().Observe(nullptr, "profile-after-change"); });
        });
    }
    std::printf("module: %ju bytes; microseconds: load %.0f, ZABMzCC_InitCC %.1f, ZABMzCC_Observe %.1f\n\n",
                static_cast<std::uintmax_t>(file_size(module)), microseconds(load), microseconds(init),
                microseconds(observe));
}

double oneRegistryCall() {
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\ZabrionHub", 0, KEY_READ, &key);
    auto best = Clock::duration::max();
    for (int i = 0; i < kRuns; ++i) {
        char text[2000];
        DWORD size = sizeof(text);
        const auto begin = Clock::now();
        RegQueryValueExA(key, "Extensions", nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size);
        best = std::min(best, Clock::now() - begin);
    }
    RegCloseKey(key);
    return microseconds(best);
}

void printCosts() {
    SettingsTree settings;
    settings.set("Extensions", "zip rar 7z exe");
    Browser browser({.debuggerPresent = false});
    HookedSystem system(browser);
    browser.startsUp();
    const double registryCall = oneRegistryCall();
    std::printf("%-28s %10s %10s %16s %16s\n", "response (microseconds)", "whole", "in module",
                "registry (calls)", "helpers (calls)");
    for (const auto& row : kResponses) {
        auto whole = Clock::duration::max(), inModule = whole;
        std::uint32_t registryCalls = 0, helperCalls = 0;
        for (int run = 0; run < kRuns; ++run) {
            auto& channel = browser.requests({.url = row.url, .loadFlags = row.loadFlags});
            Headers headers = kOrdinary;
            headers.emplace_back("Content-Type", row.type);
            browser.faults().none();
            const auto moduleBefore = browser.moduleTime();
            const auto helpersBefore = browser.helperCalls();
            const auto begin = Clock::now();
            browser.answers(channel, 200, std::move(headers));
            whole = std::min(whole, Clock::now() - begin);
            inModule = std::min(inModule, browser.moduleTime() - moduleBefore);
            helperCalls = browser.helperCalls() - helpersBefore;
            registryCalls = 0;
            for (const auto* name : kRegistryCalls) registryCalls += browser.faults().countOf(name);
            browser.finishes(channel);
            browser.sweeps();
            system.takesTold();
        }
        std::printf("%-28s %10.1f %10.1f %10.1f (%u) %11.1f (%u)\n", row.name, microseconds(whole),
                    microseconds(inModule), registryCalls * registryCall, registryCalls,
                    microseconds(whole - inModule), helperCalls);
    }
}

/// Asked before anything is loaded. The clock is read twice for each: ten questions, to see more than that.
void printPolicy() {
    constexpr std::uint32_t kImage = 3, kQuestions = 10;
    SettingsTree settings;
    Browser browser({.debuggerPresent = false});
    browser.startsUp();
    const PassedText url(browser.runtime(), std::string_view("http://h.example/a.png?v=1.2"));
    const PassedText page(browser.runtime(), std::string_view("http://h.example/page"));
    const PassedText document(browser.runtime(), std::u16string_view(u"17"));
    auto best = Clock::duration::max();
    for (int run = 0; run < kRuns; ++run) {
        const auto before = browser.moduleTime();
        browser.intoModule([&] {
            std::uint64_t sum = 0;
            for (std::uint32_t i = 0; i < kQuestions; ++i)
                sum += static_cast<std::uint64_t>(
                    browser.module().ShouldLoad2(kImage, url, page, nullptr, url, document));
            return sum;
        });
        best = std::min(best, browser.moduleTime() - before);
    }
    std::printf("\na policy question about an image: %.2f microseconds\n", microseconds(best) / kQuestions);
}

}  // namespace
}  // namespace zab::testbed

int main() {
    zab::testbed::printStart();
    zab::testbed::printCosts();
    zab::testbed::printPolicy();
}
