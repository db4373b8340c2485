// zab_pictures: puts the button, its open menu and the popup of selected links on the screen, one after the
// other, and waits at each until somebody has taken a picture.
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

constexpr const char* kPage = "http://films.example/sea.html";

/// Whether somebody took it.
bool shows(const std::string& folder, const std::string& name) {
    const std::string wanted = folder + "\\" + name + ".wanted";
    serves([] { return false; }, std::chrono::milliseconds(500));  // everything is drawn
    std::ofstream(wanted) << name;
    return serves([&] { return GetFileAttributesA(wanted.c_str()) == INVALID_FILE_ATTRIBUTES; });
}

void offersFilms(Browser& browser, Page& page) {
    const struct {
        const char* name;
        const char* megabytes;
    } films[] = {{"sea.1080p.mp4", "734003200"},
                 {"sea.720p.mp4", "367001600"},
                 {"sea.webm", "209715200"},
                 {"waves.flv", "52428800"},
                 {"song.mp3", "8388608"}};
    for (const auto& film : films) {
        const bool sound = std::string_view(film.name).ends_with("mp3");
        auto& channel = browser.requests(
            {.url = std::string("http://films.example/") + film.name, .loadFlags = kEmbedded, .page = &page});
        browser.answers(
            channel, 200,
            {{"Content-Type", sound ? "audio/mpeg" : "video/mp4"}, {"Content-Length", film.megabytes}});
        browser.finishes(channel);
    }
}

bool showsAll(const std::string& folder) {
    SettingsTree settings;
    settings.setCompanions();
    TopWindow window(u"http://films.example/sea.html");
    Browser browser;
    browser.startsUp();
    auto& page = browser.opensPage(kPage, u"A day at the sea", 17);
    page.nativeWindow = window.handle();
    page.boxes[u"appcontent"] = window.contentBox();
    browser.selectsTab(u"17");
    offersFilms(browser, page);

    const auto showsMenuOf = [&](const char* name) {
        const auto buttons = window.buttons();
        if (buttons.empty()) return false;
        const auto newest = buttons.back();
        const bool open = !meanwhile([&] { return opensMenu(newest); }).empty();
        const bool taken = open && shows(folder, name);
        meanwhile([&] { return leavesMenu(newest), true; });
        return taken;
    };
    if (window.buttons().empty() || !shows(folder, "button") || !showsMenuOf("menu")) return false;

    browser.mouse(u"mousedown", &page);
    SetCursorPos(250, 355);
    window.selectsLinks();
    browser.mouse(u"mouseup", &page,
                  u"http://films.example/holiday%20pictures.zip\nhttp://films.example/map.pdf\n"
                  u"http://films.example/music.zip");
    const bool taken = showsMenuOf("popup");
    browser.mouse(u"mousedown", &page);
    browser.fires(u"unload", page);
    return taken;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "zab_pictures FOLDER\n";
        return 2;
    }
    return showsAll(argv[1]) ? 0 : 1;
}
