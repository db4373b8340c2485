// A browser's day in minutes: pages come and go, exchanges, media and commands on them, settings change under
// it all, and every now and then something that the module calls fails. At the end everything is given back.
//
//     zab_soak [MINUTES [SEED]]
//
// The same seed plays the same day. Exit status 1: something is wrong, in a line each.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <set>

#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/hands.h"
#include "browser/process_view.h"
#include "scenarios/recorded.h"

namespace zab::testbed {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostPages = 8;
constexpr double kFaultShare = 0.05;  // of the steps
constexpr std::uint32_t kDeepestFault = 120;
constexpr nsresult kNothingDone = 1;  // a success that is none
/// What a heap holds ready of its own accord.
constexpr std::uint64_t kSlackBytes = 1 << 20;

class Day {
  public:
    explicit Day(std::uint32_t seed) : random_(seed) {
        settings_.setCompanions();
        settings_.set("Extensions", kExtensions[0]);
        browser_.startsUp();
        browser_.cookies = {{.name = "theme", .value = "dark", .host = "127.0.0.1"}};
    }

    void step() {
        if (chance(kFaultShare)) {
            browser_.faults().failNth(1 + below(kDeepestFault), {},
                                      chance(0.5) ? NS_ERROR_FAILURE : kNothingDone);
            act();
            faults_ += browser_.faults().reached();
            browser_.faults().none();
        } else {
            act();
        }
        system_.takesTold();
        browser_.takesDebugLines();
        browser_.sweeps();
    }

    /// Whatever is open is closed, and what it held is given back.
    void ends() {
        while (!pages_.empty()) closesPage();
        while (!windows_.empty()) closesWindow();
        serves([&] { return browser_.unbalanced().empty() && top_.buttons(true).empty(); });
        browser_.sweeps();
    }
    void rests() {
        while (!pages_.empty()) closesPage();
        browser_.sweeps();
    }

    std::vector<std::string> wrongs() {
        std::vector<std::string> all(lost_);
        const auto& violations = browser_.violations();
        all.insert(all.end(), violations.begin(), violations.end());
        if (const auto kept = browser_.unbalanced(); !kept.empty()) all.push_back("still held: " + kept);
        if (!top_.buttons(true).empty()) all.push_back("a button is left");
        return all;
    }
    [[nodiscard]] std::uint64_t exchanges() const { return exchanges_; }
    [[nodiscard]] std::uint64_t faults() const { return faults_; }
    [[nodiscard]] std::uint64_t transfers() const { return transfers_; }

  private:
    struct Open {
        Page* page;
        std::u16string id;
    };

    static constexpr const char* kExtensions[] = {"zip rar 7z gz exe msi", "iso mp4", "", "zip"};

    std::uint32_t below(std::size_t n) { return static_cast<std::uint32_t>(random_() % n); }
    bool chance(double share) { return random_() < share * 4294967296.0; }
    Open& anyPage() { return pages_[below(pages_.size())]; }

    void act() {
        if (pages_.empty()) return opensPage();
        const auto dice = below(1000);
        if (dice < 900) return plays();
        if (dice < 940) return offersMedia();
        if (dice < 950) return choosesMedia();
        if (dice < 960) return pages_.size() < kMostPages ? opensPage() : closesPage();
        if (dice < 970) return closesPage();
        if (dice < 985) return browser_.selectsTab(anyPage().id);
        if (dice < 990) return changesSettings();
        if (dice < 995) return drags();
        opensOrClosesWindow();
    }

    void opensPage() {
        const auto number = ++lastId_;
        auto& page = browser_.opensPage("http://127.0.0.1:8080/", u"Page", number);
        page.nativeWindow = top_.handle();
        page.boxes[u"appcontent"] = {10, 40, 400, 300};
        std::u16string id;
        for (const char digit : std::to_string(number)) id += static_cast<char16_t>(digit);
        pages_.push_back({&page, id});
        browser_.selectsTab(id);
    }

    void closesPage() {
        const Open closed = anyPage();
        std::erase_if(pages_, [&](const Open& open) { return open.page == closed.page; });
        browser_.fires(u"unload", *closed.page);
        browser_.unloads(closed.id);
        Browser::dropsPage(*closed.page);
    }

    void plays() { ends(play(browser_, recorded_[below(recorded_.size())], anyPage().page)); }

    /// A download that left the browser is with the download manager.
    void ends(Channel& channel) {
        ++exchanges_;
        const auto told = system_.takesTold().size();
        transfers_ += told;
        if (channel.cancelled() && told == 0 && channel.request.url.find("sentinel") == std::string::npos)
            lost_.push_back("lost: " + channel.request.url + " (" + browser_.faults().failedOperation() + ")");
        browser_.finishes(channel);
    }

    void offersMedia() {
        static constexpr const char* kTypes[] = {"video/mp4", "video/x-flv", "application/x-mpegURL"};
        const std::string type = kTypes[below(std::size(kTypes))];
        auto& channel = browser_.requests({.url = "http://films.example/" + std::to_string(below(50)) + ".bin",
                                           .loadFlags = kEmbedded,
                                           .page = anyPage().page});
        browser_.answers(channel, 200, {{"Content-Type", type}});
        browser_.receives(channel, "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\nhigh.m3u8\n");
        ends(channel);
    }

    void choosesMedia() {
        const PassedText id(browser_.runtime(), anyPage().id);
        const auto& module = browser_.module();
        const auto choose = chance(0.5) ? module.DownloadLastFLVwithZAB : module.DownloadLast10FLVwithZAB;
        browser_.intoModule([&] { return choose(id); });
    }

    void changesSettings() {
        settings_.set("Extensions", kExtensions[below(std::size(kExtensions))]);
        settings_.touchConfigTime();
    }

    void drags() {
        browser_.mouse(u"mousedown", anyPage().page);
        browser_.mouse(u"mouseup", anyPage().page);
    }

    void opensOrClosesWindow() {
        if (windows_.size() >= 3) return closesWindow();
        windows_.push_back(&browser_.opensWindow());
    }

    void closesWindow() {
        ChromeWindow& window = *windows_.front();
        windows_.erase(windows_.begin());
        browser_.closesWindow(window);
        window.target.letGo();
        window.letGo();
    }

    std::mt19937 random_;
    SettingsTree settings_;
    TopWindow top_;
    Browser browser_{{.debuggerPresent = false}};
    HookedSystem system_{browser_};
    std::vector<zabprobe::Exchange> recorded_ = recordedExchanges("");
    std::vector<Open> pages_;
    std::vector<ChromeWindow*> windows_;
    std::uint64_t lastId_ = 100, exchanges_ = 0, faults_ = 0, transfers_ = 0;
    std::vector<std::string> lost_;
};

int soak(double minutes, std::uint32_t seed) {
    const auto begin = Clock::now();
    const auto secondsGone = [&] { return std::chrono::duration<double>(Clock::now() - begin).count(); };
    std::printf("%g minutes, seed %u\n", minutes, seed);
    Day day(seed);
    std::uint64_t settled = 0;  // private bytes after the first fifth, with nothing open
    while (secondsGone() < minutes * 60) {
        day.step();
        if (settled != 0 || secondsGone() < minutes * 12) continue;
        day.rests();
        settled = privateBytes();
    }
    day.ends();
    const auto atEnd = privateBytes();
    auto wrongs = day.wrongs();
    if (atEnd > settled + kSlackBytes) wrongs.push_back("the memory has grown");
    std::printf("%llu exchanges, %llu transfers, %llu faults; private bytes %llu, after the first fifth %llu\n",
                day.exchanges(), day.transfers(), day.faults(), atEnd, settled);
    for (const auto& wrong : wrongs) std::printf("WRONG: %s\n", wrong.c_str());
    std::fflush(stdout);
    return wrongs.empty() ? 0 : 1;
}

}  // namespace
}  // namespace zab::testbed

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 5;
    const auto seed = argc > 2 ? static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10))
                               : static_cast<std::uint32_t>(std::random_device{}());
    return zab::testbed::soak(minutes, seed);
}
