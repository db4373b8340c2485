#include "scenarios/any_order.h"

#include <iterator>
#include <vector>

#include "binding/utf.h"
#include "browser/base_window.h"
#include "browser/browser.h"
#include "browser/desktop.h"
#include "companions/button_library/choice_record.h"
#include "desk/desk.h"

namespace zab::testbed {
namespace {

constexpr const char* kUrls[] = {"http://h.example/a.zip",          "http://h.example/page.html",
                                 "http://h.example/film.flv",       "http://h.example/list.m3u8",
                                 "http://player.vimeo.com/video/1", "http://www.youtube.com/watch?v=1",
                                 "ftp://h.example/a.rar",           "http://h.example/form"};
constexpr const char* kTypes[] = {
    "text/html", "application/zip",     "video/x-flv", "application/x-mpegurl", "text/plain", "video/mp4",
    "",          "application/dash+xml"};
constexpr const char* kBodies[] = {"<html><video src=a.mp4></video><a href=b.zip>b</a></html>",
                                   "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\nhd.m3u8\n",
                                   "\"url_encoded_fmt_stream_map\":\"url=http%3A%2F%2Fg%2F&itag=22\"", ""};
constexpr const char* kTopics[] = {"http-on-examine-response", "http-on-examine-merged-response",
                                   "http-on-examine-cached-response"};
constexpr const char16_t* kEvents[] = {u"mousedown", u"mouseup", u"unload", u"TabSelect", u"scroll", u"resize"};
constexpr std::uint32_t kStatuses[] = {200, 206, 302, 404};
constexpr const char16_t* kLinks[] = {u"!ALL!", u"http://h.example/film.flv", u"http://h.example/a.zip",
                                      u"http://h.example/film.flv#2"};
constexpr std::uint32_t kMessages[] = {panel_messages::kAlive,    panel_messages::kResolve,
                                       panel_messages::kResolved, panel_messages::kFileEntry,
                                       panel_messages::kClose,    panel_messages::kDestroyed};

class Play {
  public:
    explicit Play(Bytes bytes) : bytes_(bytes) {
        settings_.setCompanions().set("Extensions", "zip rar");
        settings_.set("SpecialKeys\\UseKeyToForce", 1u).set("SpecialKeys\\CtrlF", 1u);
        topWindow_ = desk().opensWindow({.rect = {0, 0, 800, 600}});
        browser_.startsUp();
        opens();
    }

    std::string run() {
        while (!bytes_.empty()) act();
        desk().listsLocked = false;
        browser_.faults().none();
        for (auto* channel : channels_) browser_.finishes(*channel);
        for (auto* page : pages_) ends(*page);
        desk().servesMessages();
        std::string faults = browser_.unbalanced();
        if (desk().lockHeld != 0) faults += "the lists stay locked; ";
        for (const auto& violation : browser_.violations()) faults += violation + "; ";
        return faults;
    }

  private:
    /// The next byte as a number below `count`.
    std::size_t next(std::size_t count) {
        if (bytes_.empty()) return 0;
        const std::size_t value = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return value % count;
    }
    template <class T, std::size_t N>
    const T& one(const T (&of)[N]) {
        return of[next(N)];
    }
    Page& page() { return *pages_[next(pages_.size())]; }
    static std::u16string idOf(const Page& page) { return page.attributes.at(u"zabmzcc-ext-docid"); }

    void opens() {
        auto& page = browser_.opensPage(one(kUrls));
        page.nativeWindow = next(2) == 0 ? topWindow_ : 0;
        page.domWindow.docShell.nativeWindow = topWindow_;
        pages_.push_back(&page);
    }
    void ends(Page& page) {
        browser_.fires(u"unload", page);
        browser_.unloads(idOf(page));
    }
    void asks() {
        static constexpr std::uint32_t kLoads[] = {kEmbedded, kDocumentLoad, kTopLevelLoad};
        Request request{.url = one(kUrls), .loadFlags = one(kLoads), .page = next(8) == 0 ? nullptr : &page()};
        if (next(4) == 0) {
            request.method = "POST";
            request.upload = Upload{.bytes = "Content-Type: x/y\r\n\r\na=1", .seekable = next(2) == 0};
        }
        channels_.push_back(&browser_.requests(std::move(request)));
    }
    void answers(Channel& channel) {
        Headers headers{{"Content-Type", one(kTypes)}, {"Content-Length", "5000"}};
        if (next(4) == 0) headers.emplace_back("Content-Disposition", "attachment; filename=a.zip");
        if (next(4) == 0) headers.emplace_back("Location", one(kUrls));
        browser_.answers(channel, one(kStatuses), headers, one(kTopics));
    }
    /// Of the browser, a button or a controller.
    WindowHandle window() {
        auto& windows = desk().windows;
        return windows.empty()
                   ? 0
                   : std::next(windows.begin(), static_cast<std::ptrdiff_t>(next(windows.size())))->first;
    }
    void chooses() {
        desk().copies(window(), choiceRecord(one(kLinks), std::stoull(utf8FromUtf16(idOf(page()))),
                                             utf16FromUtf8(page().url)));
    }
    void commands() {
        const auto& runtime = browser_.runtime();
        const auto& module = browser_.module();
        const PassedText id(runtime, std::u16string_view(idOf(page())));
        const PassedText address(runtime, std::string_view(one(kUrls))), none(runtime, std::string_view(""));
        const PassedText wide(runtime, utf16FromUtf8(page().url)), nothing(runtime, std::u16string_view());
        const PassedText markup(runtime, std::u16string_view(u"<a href=a.zip>a</a><a href=ftp://h/b>"));
        const std::function<std::int64_t()> all[] = {
            [&] { return module.DownloadAllWithZAB(markup, wide, nothing); },
            [&] { return module.DownloadLastFLVwithZAB(id); },
            [&] { return module.DownloadLast10FLVwithZAB(id); },
            [&] { return module.DownloadLinkWithZAB(wide, nothing, nothing, markup); },
            [&] { return module.ShouldLoad2(6, address, none, nullptr, none, id); }};
        browser_.intoModule([&] { return static_cast<std::uint64_t>(one(all)()); });
    }
    void changes() {
        desk().listsLocked = next(4) == 0;
        desk().keyboard[kControl] = next(2) == 0 ? 0x80 : 0;
        desk().cursor = {static_cast<std::int32_t>(next(2)) * 9, 0};
        desk().managerRegistered = next(8) != 0;
        settings_.set("SpecialKeys\\CtrlF", static_cast<std::uint32_t>(next(2)));
    }
    void act() {
        static constexpr const char* kFailing[] = {"helper5.70", "helper5.71",      "helper5.72",
                                                   "helper5.61", "helper5.68",      "helper9.3",
                                                   "helper11.7", "NS_StringSetData"};
        switch (next(19)) {
            case 0: return opens();
            case 1: return ends(page());
            case 2: return browser_.selectsTab(idOf(page()));
            case 3: return browser_.reportsSelectedTab(idOf(page()));
            case 4: return browser_.mouse(one(kEvents), &page(), u"http://h.example/a.zip\nhttp://h.example/b");
            case 5: return browser_.fires(one(kEvents), page());
            case 6: windows_.push_back(&browser_.opensWindow()); return;
            case 7:
                if (!windows_.empty()) browser_.closesWindow(*windows_[next(windows_.size())]);
                return;
            case 8: return asks();
            case 9: return browser_.faults().failNth(1 + static_cast<std::uint32_t>(next(4)), one(kFailing));
            case 10: return browser_.faults().none();
            case 11: return desk().servesMessages();
            case 12: return chooses();
            case 13: desk().sends(window(), one(kMessages), next(256)); return;
            case 14: return commands();
            case 15: return changes();
            case 16:
                if (next(8) == 0) desk().destroys(window());
                return;
            default: break;
        }
        if (channels_.empty()) return asks();
        auto& channel = *channels_[next(channels_.size())];
        if (next(2) == 0) return answers(channel);
        browser_.receives(channel, one(kBodies), next(64));
        if (next(2) != 0) return;
        browser_.finishes(channel);
        std::erase(channels_, &channel);
    }

    Bytes bytes_;
    SettingsTree settings_;
    Browser browser_{};
    WindowHandle topWindow_;
    std::vector<Page*> pages_;
    std::vector<Channel*> channels_;
    std::vector<ChromeWindow*> windows_;
};

void clearsDesk() {
    desk().windows.clear();
    desk().told.clear();
    desk().boxes.clear();
    desk().keyboard = {};
    desk().managerRegistered = true;
}

}  // namespace

std::string faultsOfAnyOrder(Bytes bytes) {
    clearsDesk();
    auto faults = Play(bytes).run();
    clearsDesk();
    return faults;
}

}  // namespace zab::testbed
