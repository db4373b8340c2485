// Settings and keys of the desktop, laid on the desk; the browser's window and its user: what is seen is what
// was told, and a choice is sent at once.
#include "browser/browser.h"
#include "browser/hands.h"
#include "companions/button_library/choice_record.h"
#include "desk/desk.h"
#include "scenarios/import_hook.h"
#include "scenarios/recorded.h"
#include "transfer/failure_report.h"

extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace zab::testbed {

namespace {

/// The menu that is open: of this button, as it was when it opened.
struct Menu {
    NativeWindow button = 0;
    DeskWindow shown{};
} g_menu;

DeskWindow windowOf(NativeWindow window) {
    const auto found = desk().windows.find(window);
    return found == desk().windows.end() ? DeskWindow{} : found->second;
}

constexpr std::int32_t kWidth = 640, kHeight = 440, kBarHeight = 36;

}  // namespace

SettingsTree::SettingsTree() {
    removeAll();
    set("zabvers", "1.0").set("ExePath", kProgram);
}

SettingsTree::~SettingsTree() { removeAll(); }

void SettingsTree::removeAll() { desk().settings.clear(); }

SettingsTree& SettingsTree::set(const std::string& path, std::string_view text) {
    desk().settings[path] = std::string(text);
    return *this;
}

SettingsTree& SettingsTree::set(const std::string& path, std::uint32_t number) {
    desk().settings[path] = number;
    return *this;
}

SettingsTree& SettingsTree::remove(const std::string& path) {
    desk().settings.erase(path);
    return *this;
}

void SettingsTree::touchConfigTime() {}  // nobody watches

SettingsTree& SettingsTree::setCompanions() { return set("ExePath", kCompanions); }

HeldKeys::HeldKeys(const std::vector<std::uint8_t>& keys) {
    desk().keyboard = {};
    for (const auto key : keys) desk().keyboard[key] = 0x80;
}

HeldKeys::~HeldKeys() { desk().keyboard = {}; }

std::optional<std::uint32_t> SettingsTree::number(const std::string& path) {
    return desk().setting<std::uint32_t>(path);
}

bool messageBoxIsOpen() { return !desk().boxes.empty(); }

std::optional<ShownBox> answerMessageBox(int, std::chrono::milliseconds) {
    if (!messageBoxIsOpen()) return std::nullopt;
    auto box = std::move(desk().boxes.front());
    desk().boxes.erase(desk().boxes.begin());
    return box;
}

void putCursor(std::int32_t x, std::int32_t y) { desk().cursor = {x, y}; }

DebugLines::DebugLines(bool claimDebugger) : handler_(nullptr), before_(0) {
    desk().debuggerWatches = claimDebugger;
    desk().debuggerText = &DebugLines::add;
    take();
}

DebugLines::~DebugLines() = default;

std::size_t heapBytes() {
    return __sanitizer_get_current_allocated_bytes != nullptr ? __sanitizer_get_current_allocated_bytes() : 0;
}

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
    g_menu = {};
    if (windowOf(button).visible) g_menu = {button, windowOf(button)};
    return g_menu.shown.labels;
}

bool choosesItem(std::size_t item) {
    const auto [button, shown] = std::exchange(g_menu, {});
    if (!isWindow(button) || item >= shown.links.size()) return false;
    desk().copies(shown.controller, choiceRecord(shown.links[item], shown.documentId, shown.pageUrl));
    return true;
}

void leavesMenu(NativeWindow) { g_menu = {}; }
void closesButton(NativeWindow button) { desk().destroys(button); }

// What the module asks of the desk is a step of the browser's faults; the rows of Windows functions say nothing
// here.

ImportHook::ImportHook(Browser& browser, std::span<const HookedImport> imports) {
    for (const auto& row : imports) {
        desk().noCallsNow |= row.failure == transfer_failure::kNoCallsNow;
        desk().memoryMayFail |= std::string_view(row.function) == "malloc";
    }
    desk().fails = [&](const std::string& step) { return browser.faults().fails(step); };
}

ImportHook::~ImportHook() {
    desk().fails = [](const std::string&) { return false; };
    desk().noCallsNow = desk().memoryMayFail = false;
}

HookedSystem::HookedSystem(Browser& browser) : browser_(browser), hook_(browser, {}) {
    desk().managerRegistered = true;
    takesTold();
}

HookedSystem::~HookedSystem() = default;

std::vector<Told> HookedSystem::takesTold() {
    desk().boxes.clear();
    return std::exchange(desk().told, {});
}

std::string HookedSystem::unbalanced() const {
    return desk().lockHeld == 0 ? "" : std::to_string(desk().lockHeld) + " locks; ";
}

}  // namespace zab::testbed
