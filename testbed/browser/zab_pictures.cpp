// zab_pictures: puts on the screen what the user sees of the module, one scene after the other, and waits at
// each until somebody has taken a picture. All texts are in one font, which it is given: its pictures are the
// same on every machine that has it.
//
// For each it makes the file FOLDER/NAME.wanted, and goes on when that is gone.
#include <fstream>
#include <iostream>

#include "binding/wide_win32.h"
#include "browser/browser.h"
#include "browser/desktop.h"
#include "browser/hands.h"

namespace {

using namespace zab::testbed;

constexpr wchar_t kFace[] = L"DejaVu Sans";
constexpr LONG kFontHeight = -12;  // pixels of a letter's square

/// What programs and menus of this process write in from now on. False: the file has no such font.
bool usesFont(const char* file) {
    if (AddFontResourceExA(file, FR_PRIVATE, nullptr) == 0) return false;
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    LOGFONTW font{};
    font.lfHeight = kFontHeight;
    font.lfQuality = ANTIALIASED_QUALITY;
    lstrcpyW(font.lfFaceName, kFace);
    metrics.lfMenuFont = metrics.lfMessageFont = font;
    return SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0) != FALSE;
}

std::string g_folder;  // of the pictures

/// Whether somebody took it.
bool takes(const std::string& name) {
    const std::string wanted = g_folder + "\\" + name + ".wanted";
    serves([] { return false; }, std::chrono::milliseconds(500));  // everything is drawn
    std::ofstream(wanted) << name;
    return serves([&] { return GetFileAttributesA(wanted.c_str()) == INVALID_FILE_ATTRIBUTES; });
}

/// The same with the menu of a button open.
bool takesMenu(NativeWindow button, const std::string& name) {
    const bool taken = !meanwhile([&] { return opensMenu(button); }).empty() && takes(name);
    beside([&] { leavesMenu(button); });
    return taken;
}

/// A body that a page loads; of a file the size that its header tells.
void loads(Browser& browser, Page& page, const std::string& name, std::string_view body, const char* size) {
    auto& channel =
        browser.requests({.url = "http://films.example/" + name, .loadFlags = kEmbedded, .page = &page});
    const char* type = body.empty() ? "video/mp4" : "application/vnd.apple.mpegurl";
    browser.answers(channel, 200, {{"Content-Type", type}, {"Content-Length", size}});
    browser.receives(channel, body);
    browser.finishes(channel);
}

/// A film in three qualities, spoken in two languages, as its player asks for it; and a file beside it.
void playsFilm(Browser& browser, Page& page) {
    constexpr std::string_view kMaster =
        "#EXTM3U\n"
        "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"s\",NAME=\"English\",LANGUAGE=\"en\",DEFAULT=YES,URI=\"en.m3u8\"\n"
        "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"s\",NAME=\"Deutsch\",LANGUAGE=\"de\",URI=\"de.m3u8\"\n"
        "#EXT-X-STREAM-INF:BANDWIDTH=6144000,RESOLUTION=1920x1080,AUDIO=\"s\"\n1080.m3u8\n"
        "#EXT-X-STREAM-INF:BANDWIDTH=2560000,RESOLUTION=1280x720,AUDIO=\"s\"\n720.m3u8\n"
        "#EXT-X-STREAM-INF:BANDWIDTH=1024000,RESOLUTION=854x480,AUDIO=\"s\"\n480.m3u8\n";
    constexpr std::string_view kSegments =
        "#EXTM3U\n#EXT-X-TARGETDURATION:2750\n#EXT-X-MAP:URI=\"map.mp4\"\n#EXTINF:2730,\n1.mp4\n"
        "#EXTINF:2742,\n2.mp4\n#EXT-X-ENDLIST\n";
    loads(browser, page, "sea/master.m3u8", kMaster, "406");
    for (const char* list : {"sea/1080.m3u8", "sea/en.m3u8", "sea/de.m3u8"})
        loads(browser, page, list, kSegments, "115");
    loads(browser, page, "trailer.mp4", {}, "44040192");
}

Page& opens(Browser& browser, const TopWindow& window, std::string url, std::u16string title,
            std::uint64_t id) {
    auto& page = browser.opensPage(std::move(url), std::move(title), id);
    page.nativeWindow = window.handle();
    page.boxes[u"appcontent"] = window.contentBox();
    browser.selectsTab(zab::utf16(std::to_wstring(id).c_str()));
    return page;
}

bool takesAll() {
    SettingsTree settings;
    settings.setCompanions();
    TopWindow window(u"http://films.example/sea.html", u"A day at the sea");
    Browser browser;
    browser.startsUp();
    auto& page = opens(browser, window, "http://films.example/sea.html", u"A day at the sea", 17);
    playsFilm(browser, page);
    const auto buttons = window.buttons();
    if (buttons.size() != 1 || !takes("button") || !takesMenu(buttons.front(), "menu")) return false;
    {
        TopWindow other(u"http://films.example/shore.html", u"Along the shore");
        SetWindowPos(reinterpret_cast<HWND>(other.handle()), HWND_TOP, 340, 320, 0, 0, SWP_NOSIZE);
        auto& shore = opens(browser, other, "http://films.example/shore.html", u"Along the shore", 18);
        loads(browser, shore, "shore.mp4", {}, "262144000");
        if (window.buttons().size() + other.buttons().size() != 2 || !takes("windows")) return false;
        browser.fires(u"unload", shore);
    }
    browser.mouse(u"mousedown", &page);
    window.putsCursor(210, 315);
    window.selectsLinks();
    browser.mouse(u"mouseup", &page,
                  u"http://films.example/holiday%20pictures.zip\nhttp://films.example/map.pdf\n"
                  u"http://films.example/music.zip");
    const bool taken = takesMenu(window.buttons().back(), "popup");
    browser.mouse(u"mousedown", &page);
    browser.fires(u"unload", page);
    return taken;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3 || !usesFont(argv[2])) {
        std::cerr << "zab_pictures FOLDER FONT: a folder for what is wanted, and the file of DejaVu Sans\n";
        return 2;
    }
    g_folder = argv[1];
    return takesAll() ? 0 : 1;
}
