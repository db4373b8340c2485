// What several scenarios begin with, and the steps that they share.
#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "binding/utf.h"
#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/hands.h"
#ifdef _WIN32
#include "transfer/manager_process_win32.h"
#else
#include "desk/manager_process.h"
#endif

namespace zab::testbed {

using nlohmann::json;

inline constexpr nsresult kTakenOverStatus = 0xFFFFFFFF;
inline const Headers kZip = {{"Content-Type", "application/zip"}, {"Content-Length", "5000"}};
inline constexpr std::uint32_t kImage = 3, kDocument = 6;  // of the content policy

/// The download manager's own process, which notes what it is told. Registered, until a scenario says
/// otherwise.
class Manager : public ::zab::testing::ManagerProcess {
  public:
    Manager() {
        EXPECT_TRUE(isRegistered(true));
        set("ExePath", SettingsTree::kProgram);
    }
    /// Starts the program only for a change.
    bool isRegistered(bool wanted) {
        static bool registered = false;
        if (registered != wanted && ManagerProcess::isRegistered(wanted)) registered = wanted;
        return registered == wanted;
    }
};

/// A browser in which nothing may be left behind. Text is UTF-8.
class SoundBrowser : public Browser {
  public:
    using Browser::Browser;
    ~SoundBrowser() {
        EXPECT_EQ(unbalanced(), "");
        EXPECT_EQ(violations(), std::vector<std::string>{});
    }

    PassedText narrow(std::string_view text) { return PassedText(runtime(), text); }
    PassedText wide(std::string_view text) { return PassedText(runtime(), utf16FromUtf8(text)); }

    /// What the content policy answers.
    std::int32_t asksPolicy(std::uint32_t type, std::string_view address, std::string_view page = {},
                            std::string_view documentId = "17") {
        const auto url = narrow(address), origin = narrow(page), mime = narrow("");
        const auto id = wide(documentId);
        return static_cast<std::int32_t>(intoModule([&] {
            return static_cast<std::uint32_t>(module().ShouldLoad2(type, url, origin, nullptr, mime, id));
        }));
    }
    nsresult downloadsLink(std::string_view address, std::string_view page = {},
                           std::string_view cookiesOfPage = {}, std::string_view text = {}) {
        const auto url = wide(address), from = wide(page), known = wide(cookiesOfPage), told = wide(text);
        return static_cast<nsresult>(
            intoModule([&] { return module().DownloadLinkWithZAB(url, from, known, told); }));
    }
    nsresult downloadsAll(std::string_view markup, std::string_view page, std::string_view cookiesOfPage) {
        const auto text = wide(markup), from = wide(page), known = wide(cookiesOfPage);
        return static_cast<nsresult>(
            intoModule([&] { return module().DownloadAllWithZAB(text, from, known); }));
    }
    nsresult downloadsMedia(std::string_view documentId, bool ten = false) {
        const auto id = wide(documentId);
        const auto download = ten ? module().DownloadLast10FLVwithZAB : module().DownloadLastFLVwithZAB;
        return static_cast<nsresult>(intoModule([&] { return download(id); }));
    }
    /// A media file of the page arrives.
    void offers(Page& page, const std::string& name = "a.mp4", const char* type = "video/mp4",
                const char* length = "94371840") {
        auto& film = requests({.url = "http://films.example/" + name, .loadFlags = kEmbedded, .page = &page});
        answers(film, 200, {{"Content-Type", type}, {"Content-Length", length}});
        finishes(film);
    }
};

/// An installed download manager and a browser.
struct Installation {
    explicit Installation(BrowserOptions options = {}) : browser(std::move(options)) {}

    SettingsTree settings;
    Manager manager;
    SoundBrowser browser;
};

class Scenario : public ::testing::Test, protected Installation {};

/// With the companion libraries, and a window of the browser on the screen.
struct Screen : Installation {
    explicit Screen(BrowserOptions options = {}) : Installation(std::move(options)) {
        settings.setCompanions();
        browser.startsUp();
    }

    Page& opensPage(std::uint64_t id = 0, const std::string& url = "http://site.example/") {
        auto& page = browser.opensPage(url, u"Page", id);
        page.nativeWindow = window->handle();
        return page;
    }
    /// The user drags over a part of the page that holds links, and releases here.
    void drags(Page& page, std::u16string links, std::int32_t x = 200, std::int32_t y = 150) {
        window->putsCursor(x - 50, y - 50);
        browser.mouse(u"mousedown", &page);
        window->putsCursor(x, y);
        browser.mouse(u"mouseup", &page, std::move(links));
    }
    /// The only visible button; 0: none, or several.
    [[nodiscard]] NativeWindow button() const {
        const auto visible = window->buttons();
        return visible.size() == 1 ? visible.front() : 0;
    }
    nlohmann::json received(std::size_t number) {
        return meanwhile([&, number] { return manager.received(number); });
    }

    std::optional<TopWindow> window{std::in_place};
};

class ScreenScenario : public ::testing::Test, protected Screen {};

}  // namespace zab::testbed
