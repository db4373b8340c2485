// A browser's day: pages come and go, exchanges, media and commands on them, settings change under it all, and
// now and then a call fails that the module makes, of the browser, of the system or for memory. At the end the
// browser shuts down, and everything was given back.
//
// The same seed plays the same day, natively and under Windows.
#pragma once

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/hands.h"
#include "intercept/load_types.h"
#include "scenarios/recorded.h"

namespace zab::testbed {

class Day {
  public:
    /// `faultShare`: how many of the steps meet a fault, of 1.
    Day(std::uint32_t seed, double faultShare) : random_(seed), faultShare_(faultShare) {
        settings_.setCompanions().set("Extensions", kExtensions[0]);
        settings_.set("SpecialKeys\\UseKeyToForce", 1u).set("SpecialKeys\\CtrlF", 1u);
        browser_.startsUp();
        browser_.cookies = {{.name = "theme", .value = "dark", .host = "127.0.0.1"}};
    }

    void step() {
        if (chance(faultShare_)) armsFault();
        act();
        faults_ += browser_.faults().reached();
        browser_.faults().none();
        serves([] { return true; });
        system_.takesTold();
        browser_.takesDebugLines();
        browser_.sweeps();
    }

    void rests() {
        while (!pages_.empty()) closesPage();
        browser_.sweeps();
    }

    /// Whatever is open is closed, and the observer service lets go of the module.
    void ends() {
        rests();
        while (!windows_.empty()) closesWindow();
        serves([&] { return browser_.unbalanced().empty() && top_.buttons(true).empty(); });
        browser_.shutsDown();
        browser_.sweeps();
    }

    std::vector<std::string> wrongs() {
        std::vector<std::string> all(wrongs_);
        std::ranges::copy(browser_.violations(), std::back_inserter(all));
        if (const auto kept = browser_.unbalanced(); !kept.empty()) all.push_back("still held: " + kept);
        if (!top_.buttons(true).empty()) all.emplace_back("a button is left");
        return all;
    }
    [[nodiscard]] std::uint64_t navigations() const { return navigations_; }
    [[nodiscard]] std::uint64_t faults() const { return faults_; }
    [[nodiscard]] std::uint64_t transfers() const { return transfers_; }

  private:
    static constexpr std::size_t kMostPages = 8, kMostWindows = 3;
    static constexpr std::uint32_t kDeepestFault = 10;  // of as many calls as two has to this power
    static constexpr nsresult kNothingDone = 1;         // a success that is none
    static constexpr const char* kExtensions[] = {"zip rar 7z gz exe msi", "iso mp4", "", "zip"};
    static constexpr HookedImport kHeap[] = {
        {"malloc"}, {"calloc", 0, nullptr, "malloc"}, {"realloc", 0, nullptr, "malloc"}};

    std::uint32_t below(std::size_t n) { return static_cast<std::uint32_t>(random_() % n); }
    bool chance(double share) { return static_cast<double>(random_()) < share * 4294967296.0; }
    Page& anyPage() { return *pages_[below(pages_.size())]; }
    static std::u16string idOf(const Page& page) { return page.attributes.at(u"zabmzcc-ext-docid"); }

    /// Early calls fail as often as late ones, and memory as often as all else.
    void armsFault() {
        const auto nth = 1 + below(std::size_t{1} << below(kDeepestFault));
        const bool memory = chance(0.5);
        browser_.faults().failNth(nth, memory ? "malloc" : "",
                                  memory || chance(0.5) ? NS_ERROR_FAILURE : kNothingDone);
    }

    void act() {
        if (pages_.empty()) return opensPage();
        const auto dice = below(1000);
        if (dice < 900) return plays();
        if (dice < 940) return offersMedia();
        if (dice < 950) return choosesMedia();
        if (dice < 960) return pages_.size() < kMostPages ? opensPage() : closesPage();
        if (dice < 970) return closesPage();
        if (dice < 985) return browser_.selectsTab(idOf(anyPage()));
        if (dice < 990) return changesSettings();
        if (dice < 995) return drags();
        if (windows_.size() >= kMostWindows) return closesWindow();
        windows_.push_back(&browser_.opensWindow());
    }

    void opensPage() {
        auto& page = browser_.opensPage("http://127.0.0.1:8080/");
        page.nativeWindow = top_.handle();
        page.boxes[u"appcontent"] = {10, 40, 400, 300};
        pages_.push_back(&page);
        browser_.selectsTab(idOf(page));
    }

    void closesPage() {
        Page& page = anyPage();
        std::erase(pages_, &page);
        browser_.fires(u"unload", page);
        browser_.unloads(idOf(page));
        Browser::dropsPage(page);
    }

    /// The policy is asked first; what it rejects is not requested.
    void plays() {
        const auto& exchange = recorded_[below(recorded_.size())];
        const HeldKeys keys(chance(0.05) ? std::vector<std::uint8_t>{kControl} : std::vector<std::uint8_t>{});
        const bool isPage = (exchange.loadFlags & kTopLevelLoad) != 0;
        Page& page = anyPage();
        if (isRejected(isPage ? policy_types::kDocument : policy_types::kMedia, exchange.url, page))
            return settles(exchange.url, true);
        ends(play(browser_, exchange, &page));
    }

    bool isRejected(std::uint32_t type, const std::string& address, Page& page) {
        const PassedText url(browser_.runtime(), address), origin(browser_.runtime(), page.url),
            id(browser_.runtime(), idOf(page));
        return static_cast<std::int32_t>(browser_.intoModule([&] {
                   return static_cast<std::uint64_t>(
                       browser_.module().ShouldLoad2(type, url, origin, page.asSupports(), url, id));
               })) == kPolicyReject;
    }

    void ends(Channel& channel) {
        settles(channel.request.url, channel.cancelled() || !channel.written.empty());
        browser_.finishes(channel);
    }

    /// What left the browser is with the download manager, once, and what stayed is not; unless the browser
    /// was asked to let go and failed.
    void settles(const std::string& url, bool left) {
        static const std::set<std::string> kLettingGo = {"helper5.61", "helper5.64", "NS_CStringContainerInit",
                                                         "NS_CStringSetData"};
        ++navigations_;
        const auto told = system_.takesTold().size();
        transfers_ += told;
        const auto& failed = browser_.faults().failedOperation();
        if (told == (left ? 1u : 0u) || (told == 1 && kLettingGo.contains(failed))) return;
        wrongs_.push_back(std::to_string(told) + " transfers of what " + (left ? "left" : "stayed") + ": " +
                          url + " (" + failed + ")");
    }

    void offersMedia() {
        static constexpr const char* kTypes[] = {"video/mp4", "video/x-flv", "application/x-mpegURL"};
        const std::string type = kTypes[below(std::size(kTypes))];
        auto& channel = browser_.requests({.url = "http://films.example/" + std::to_string(below(50)) + ".bin",
                                           .loadFlags = kEmbedded,
                                           .page = &anyPage()});
        browser_.answers(channel, 200, {{"Content-Type", type}});
        browser_.receives(channel, "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\nhigh.m3u8\n");
        ends(channel);
    }

    void choosesMedia() {
        const PassedText id(browser_.runtime(), idOf(anyPage()));
        const auto& module = browser_.module();
        const auto choose = chance(0.5) ? module.DownloadLastFLVwithZAB : module.DownloadLast10FLVwithZAB;
        browser_.intoModule([&] { return choose(id); });
    }

    void changesSettings() {
        settings_.set("Extensions", kExtensions[below(std::size(kExtensions))]);
        settings_.touchConfigTime();
    }

    void drags() {
        browser_.mouse(u"mousedown", &anyPage());
        browser_.mouse(u"mouseup", &anyPage());
    }

    void closesWindow() {
        ChromeWindow& window = *windows_.front();
        windows_.erase(windows_.begin());
        browser_.closesWindow(window);
        window.target.letGo();
        window.letGo();
    }

    std::mt19937 random_;
    double faultShare_;
    SettingsTree settings_;
    TopWindow top_;
    Browser browser_{{.debuggerPresent = false}};
    HookedSystem system_{browser_};
    ImportHook heap_{browser_, kHeap};
    std::vector<zabprobe::Exchange> recorded_ = recordedExchanges("");
    std::vector<Page*> pages_;
    std::vector<ChromeWindow*> windows_;
    std::uint64_t navigations_ = 0, faults_ = 0, transfers_ = 0;
    std::vector<std::string> wrongs_;
};

}  // namespace zab::testbed
