// The browser's window and its user at the desk: what is seen is what was told, and a choice is sent at once.
#include "browser/hands.h"

#include "companions/button_library/choice_record.h"
#include "desk/desk.h"

namespace zab::testbed {
namespace {

/// The menu that is open: of this button, as it was when it opened.
struct Menu {
    NativeWindow button = 0;
    DeskWindow shown{};
};
Menu& menu() {
    static Menu open;
    return open;
}

DeskWindow windowOf(NativeWindow window) {
    const auto found = desk().windows.find(window);
    return found == desk().windows.end() ? DeskWindow{} : found->second;
}

constexpr std::int32_t kWidth = 640, kHeight = 440, kBarHeight = 36;

}  // namespace

TopWindow::TopWindow(std::u16string address, std::u16string title)
    : look_{std::move(address), std::move(title)},
      handle_(desk().opensWindow({.rect = {0, 0, kWidth, kHeight}, .visible = true})) {
    desk().activeWindow = handle_;
}

TopWindow::~TopWindow() {
    desk().activeWindow = 0;
    desk().destroys(handle_);
}

std::array<std::int32_t, 4> TopWindow::contentBox() const {
    return {0, kBarHeight, kWidth, kHeight - kBarHeight};
}

std::vector<NativeWindow> TopWindow::buttons(bool all) const {
    std::vector<NativeWindow> found;
    for (const auto& [handle, window] : desk().windows)
        if (window.parent == handle_ && window.controller != 0 && (all || window.visible))
            found.push_back(handle);
    return found;
}

void TopWindow::putsCursor(std::int32_t x, std::int32_t y) const { desk().cursor = {x, y}; }
void TopWindow::selectsLinks() { look_.linksSelected = true; }

bool isWindow(NativeWindow window) { return desk().windows.contains(window); }

Area areaOf(NativeWindow window) {
    const PixelRect rect = windowOf(window).rect;
    return {rect.left, rect.top, rect.right, rect.bottom};
}

std::u16string captionOf(NativeWindow window) { return windowOf(window).caption; }
std::int32_t scrollBarWidth() { return kScrollBar; }

bool serves(const std::function<bool()>& ended, std::chrono::milliseconds) {
    desk().servesMessages();
    return ended();
}

void beside(const std::function<void()>& work) {
    desk().servesMessages();
    work();
}

std::vector<std::u16string> opensMenu(NativeWindow button) {
    menu() = {};
    if (windowOf(button).visible) menu() = {button, windowOf(button)};
    return menu().shown.labels;
}

bool choosesItem(std::size_t item) {
    const auto [button, shown] = std::exchange(menu(), {});
    if (!isWindow(button) || item >= shown.links.size()) return false;
    desk().copies(shown.controller, choiceRecord(shown.links[item], shown.documentId, shown.pageUrl));
    return true;
}

void leavesMenu(NativeWindow) { menu() = {}; }
void closesButton(NativeWindow button) { desk().destroys(button); }

}  // namespace zab::testbed
