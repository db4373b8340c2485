// The module's edge at the desk: memory, runtime, settings, keys, windows. Each function stands for the one of
// the same name that calls Windows.
#include <algorithm>
#include <new>
#include <optional>
#include <span>

#include "binding/browser_text_win32.h"
#include "binding/browser_version.h"
#include "binding/guard.h"
#include "binding/never_destroyed.h"
#include "binding/utf.h"
#include "desk/desk.h"
#include "entry/modifier_keys.h"
#include "intercept/content_sniffing.h"
#include "media/capture/companion_libraries.h"
#include "media/capture/media_capture.h"
#include "page/request_lists.h"
#include "settings/data_file.h"
#include "settings/settings_store.h"
#include "settings/shared_list_lock.h"
#include "ui/button_windows.h"
#include "ui/controller_host.h"
#include "ui/panel_controller.h"
#include "ui/panel_gate.h"
#include "ui/panel_messages.h"
#include "ui/panel_settings.h"

namespace zab {
namespace testbed {
namespace {

Desk* g_desk = nullptr;

/// Whether the memory that the module asks for cannot be had.
bool memoryFails() { return g_desk != nullptr && g_desk->memoryMayFail && g_desk->fails("malloc"); }

std::optional<std::string> textAt(const std::string& path) {
    return desk().fails("setting " + path) ? std::nullopt : desk().setting<std::string>(path);
}

std::optional<std::uint32_t> numberAt(const std::string& path) {
    return desk().fails("setting " + path) ? std::nullopt : desk().setting<std::uint32_t>(path);
}

constexpr const char* kIntegration = "ZABBI\\zab_scenarios\\int";
constexpr const char* kPanelView = "ZABBI\\Firefox\\DwnlPanel\\PanelView";
constexpr const char* kPanel = "ZABBI\\Firefox\\DwnlPanel";

}  // namespace

Desk& desk() noexcept { return *g_desk; }

/// Of this library alone: it is never unloaded, and what it remembers starts anew with each browser.
extern "C" __attribute__((visibility("hidden"))) int __cxa_atexit(void (*)(void*), void*, void*) noexcept {
    return 0;
}

extern "C" __attribute__((visibility("default"))) void ZabDesk_Sit(Desk* desk) {
    g_desk = desk;
    runtimeRecord() = desk->runtime;
    setBrowserMajorVersion(desk->browserVersion);
    desk->answer = [](WindowHandle window, std::uint32_t message, std::uintptr_t lParam) {
        return guarded(std::intptr_t{0},
                       [&] { return controllers().answer(window, message, lParam).value_or(0); });
    };
    desk->requested = [](WindowHandle window, const std::string& payload) {
        return guarded(std::intptr_t{0}, [&] {
            return controllers().requested(
                window, {reinterpret_cast<const std::uint8_t*>(payload.data()), payload.size()});
        });
    };
    desk->remembers = [](std::string_view url) {
        auto& lists = requestLists();
        return lists.requested.find(url) != nullptr || lists.examined.find(url) != nullptr;
    };
}

}  // namespace testbed
}  // namespace zab

/// Of this library alone; what it gives is freed like any other memory of the process.
void* operator new(std::size_t size) {
    void* const memory = zab::testbed::memoryFails() ? nullptr : operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc{};
    return memory;
}

namespace zab {

using testbed::desk;
using testbed::numberAt;
using testbed::textAt;

// Text. The desk's own code page is Latin-1.

std::string ansiFromUtf16(std::u16string_view text) {
    std::string narrow;
    for (const char16_t unit : text) narrow += unit < 0x100 ? static_cast<char>(unit) : '?';
    return narrow;
}

std::u16string utf16FromAnsi(std::string_view text) {
    std::u16string wide;
    for (const char c : text) wide += static_cast<unsigned char>(c);
    return wide;
}

std::optional<std::string> narrowPreferringAnsi(std::u16string_view text) {
    if (text.empty()) return std::nullopt;
    auto ansi = ansiFromUtf16(text);
    return utf16FromAnsi(ansi) == text ? ansi : utf8FromUtf16(text);
}

// Settings.

bool EnsureRootKey() noexcept { return !desk().settings.empty() && !desk().fails("settings root"); }

Registration RegisterBrowser() noexcept {
    static bool known = false;
    if (known) return Registration::known;
    return guarded(Registration::failed, [] {
        if (!EnsureRootKey()) return Registration::failed;
        ReloadDataFile(dataFile());
        if (desk().fails("browser record")) return Registration::failed;
        const bool created = desk().settings.emplace(testbed::kIntegration, 1u).second;
        known = true;
        return created ? Registration::created : Registration::known;
    });
}

std::uint32_t IsBrowserIntegrationEnabled() noexcept {
    return guarded(1u, [] { return numberAt(testbed::kIntegration).value_or(1) != 0 ? 1u : 0u; });
}

std::uint32_t GetPanelViewFlag() noexcept {
    return guarded(1u, [] { return numberAt(testbed::kPanelView) == 2u ? 0u : 1u; });
}

std::optional<std::string> extensionList() { return textAt("Extensions"); }
std::optional<std::string> exePathNarrow() { return textAt("ExePath"); }
std::optional<std::u16string> exePath() {
    const auto path = exePathNarrow();
    return path ? std::optional(utf16FromUtf8(*path)) : std::nullopt;
}
CExceptionServersList readExceptionServers(const TextValue& value) {
    return CExceptionServersList(textAt(value.name).value_or(""));
}

const MessageTexts& messageTexts() {
    static NeverDestroyed<MessageTexts> texts;
    return texts.get();
}

std::uint32_t ReloadDataFile(Published<ZabFcRecord>& record) {
    record.publish(parseDataFile(desk().fails("data file") ? std::string{} : desk().dataFile));
    return 0;
}

bool stayLoaded() noexcept { return true; }
bool endConfigTimeWatcher() noexcept { return true; }
void closeSharedState() noexcept {}

// The lock over the lists: a wait for it at the desk is over at once.

SharedListLock::SharedListLock(OnTimeout onTimeout) noexcept : onTimeout_(onTimeout) {
    held_ = !desk().listsLocked && !desk().fails("lists lock");
    desk().lockHeld += held_;
}
SharedListLock::~SharedListLock() { desk().lockHeld -= held_; }
void createSharedListMutex() noexcept {}
void closeSharedListMutex() noexcept {}

// Keys.

namespace {

Keys g_keysAtPress = 0;

Keys keysDown() {
    constexpr struct {
        std::uint8_t code;
        Keys key;
    } kCodes[] = {{0x11, kCtrlKey}, {0x12, kAltKey}, {0x10, kShiftKey}, {0x2D, kInsertKey}, {0x2E, kDeleteKey}};
    Keys held = 0;
    for (const auto& row : kCodes)
        if (desk().keyboard[row.code] > 127) held |= row.key;
    return held;
}

bool isSet(const std::string& name) { return numberAt("SpecialKeys\\" + name).value_or(0) != 0; }

Keys configured(std::span<const KeySetting> settings) {
    Keys keys = 0;
    for (const auto& setting : settings)
        if (isSet(setting.name)) keys |= setting.key;
    return keys;
}

}  // namespace

bool IsPreventKeyDown() noexcept {
    return guarded(
        false, [] { return isSet(kUseKeyToPrevent) && combinationHeld(configured(kPreventKeys), keysDown()); });
}
bool IsForceKeyDown() noexcept {
    return guarded(false, [] {
        if (!isSet(kUseKeyToForce)) return false;
        const Keys keys = configured(kForceKeys);
        return forceKeysHeld(keys, keysDown(), desk().keyboard) &&
               forceKeysHeldAtPress(keys, isSet(kCheckMouse), g_keysAtPress);
    });
}
void recordMousePressKeys() noexcept { g_keysAtPress = keysDown(); }

// What all pages ask.

void writeDebuggerText(const std::string& text) noexcept {
    guarded([&] { desk().debuggerText(text); });
}
void writeDebuggerText(const std::u16string& text) noexcept {
    guarded([&] { desk().debuggerText(utf8FromUtf16(text)); });
}
bool debuggerWatches() noexcept { return desk().debuggerWatches; }
std::optional<ScreenPoint> cursorPosition() noexcept {
    return desk().fails("cursor") ? std::nullopt : std::optional(desk().cursor);
}
bool runSoon(std::function<void()> work) {
    if (desk().fails("runSoon")) return false;
    desk().posted.push_back([work = std::move(work)] { guarded([&] { work(); }); });
    return true;
}
void announceIntegration() noexcept {}
bool SniffContentType(const std::uint8_t*, std::uint32_t, MyStrClass&) noexcept { return false; }

// Windows.

void closeWindow(WindowHandle window) noexcept {
    guarded([&] { desk().destroys(window); });
}
WindowHandle activeWindow() noexcept { return desk().activeWindow; }
bool isOpen(WindowHandle window) noexcept { return desk().windows.contains(window); }
void postClose(WindowHandle window) noexcept {
    guarded([&] { desk().posted.emplace_back([window] { desk().destroys(window); }); });
}
void postMove(WindowHandle button, const PixelRect& rect) noexcept {
    const auto move = [=] {
        if (isOpen(button)) desk().windows[button].rect = rect;
    };
    guarded([&] { desk().posted.emplace_back(move); });
}
std::optional<WindowFacts> windowFactsOf(WindowHandle browserWindow) noexcept {
    return guarded(std::optional<WindowFacts>{}, [&]() -> std::optional<WindowFacts> {
        if (!isOpen(browserWindow) || desk().fails("window facts")) return std::nullopt;
        WindowFacts facts;
        facts.client = desk().windows[browserWindow].rect;
        facts.scrollBarWidth = facts.scrollBarHeight = testbed::kScrollBar;
        facts.cursor = PixelPoint{desk().cursor.x, desk().cursor.y};
        return facts;
    });
}

// The controllers' windows, all of this thread.

bool isPageController(WindowHandle window) noexcept {
    return desk().isController(window) && desk().windows[window].parent != 0;
}
bool othersWait() noexcept { return false; }
bool postToWindow(WindowHandle window, std::uint32_t message, std::uintptr_t lParam) noexcept {
    return guarded(false, [&] {
        if (!isOpen(window) || desk().fails("message")) return false;
        desk().posted.emplace_back([=] { desk().sends(window, message, lParam); });
        return true;
    });
}
WindowHandle processController() noexcept {
    return guarded(WindowHandle{0}, [] {
        auto& windows = controllerWindows();
        if (windows.process == 0 && !desk().fails("process controller")) {
            if (windows.own == 0) windows.own = desk().opensWindow({.answers = true});
            windows.process = desk().opensWindow({.answers = true});
        }
        return windows.process.load();
    });
}
WindowHandle pageController(WindowHandle browserWindow) noexcept {
    return guarded(WindowHandle{0}, [&]() -> WindowHandle {
        for (const auto& [handle, window] : desk().windows)
            if (window.parent == browserWindow && window.answers) return handle;
        if (!isOpen(browserWindow)) return 0;
        processController();
        if (desk().fails("page controller")) return 0;
        return desk().opensWindow({.parent = browserWindow, .answers = true});
    });
}
bool endControllers() noexcept {
    controllers().end();
    std::erase_if(desk().windows, [](const auto& row) { return row.second.answers; });
    controllerWindows().process = controllerWindows().own = 0;
    return true;
}
bool sendEntry(WindowHandle controller, std::unique_ptr<MediaEntry> entry) noexcept {
    return guarded(false, [&] {
        const auto number = controllers().add(controller, std::move(entry));
        const bool shown = number != 0 && desk().sends(controller, panel_messages::kFileEntry, number) == 1;
        auto unread = controllers().takeBack(controller, number);
        return unread ? fileEntry(std::move(unread)) : shown;
    });
}

EntryFate entryFate(std::string_view pageUrl, std::string_view extension, std::uint64_t size) {
    PanelValues values;
    const std::string key = std::string(testbed::kPanel) + "\\";
    values.keyOpen =
        std::ranges::any_of(desk().settings, [&](const auto& row) { return row.first.starts_with(key); });
    values.everyType = numberAt(key + "!ALL!") == 1u;
    if (const auto name = panelValueName(extension); values.keyOpen && name && !values.everyType) {
        values.type = numberAt(key + *name);
        values.minimumSize = numberAt("DwnlPanel\\minsize\\" + std::string(extension)).value_or(0);
        values.captureWithoutPanel = numberAt(key + "DonlCaptWP").value_or(0);
        values.exceptedPages = readExceptionServers(kPanelExceptionServers);
    }
    return fateOf(panelGate(pageUrl, extension, values), size);
}

CDwnlSelectedPanelSettings CDwnlSelectedPanelSettings::load() {
    CDwnlSelectedPanelSettings settings;
    const std::string key = "DwnlSelPanel\\";
    settings.mode = numberAt(key + "PanelMode").value_or(kAnyLink);
    if (settings.mode != kNamedTypes) return settings;
    for (const auto& [path, value] : desk().settings)  // the keys below it
        if (const auto end = path.rfind('\\'); path.starts_with(key) && end > key.size())
            settings.names.push_back(path.substr(key.size(), end - key.size()));
    return settings;
}

// Companion libraries: no readers of bodies lie at the desk; the button library draws nothing.

namespace {

class NoReaders final : public CompanionLibraries {
  public:
    std::optional<DashStreams> dashStreams(std::string_view, std::string_view) override { return std::nullopt; }
    SniffedContent sniff(std::string_view) override { return {}; }
};

class DeskButtons final : public IZABButtonManager {
  public:
    void DeleteThis(std::uint32_t) override {}
    std::uint64_t CreateButton(std::uint64_t parent, const std::int32_t* rect, const char16_t* caption,
                               std::uint64_t controller) override {
        if (desk().fails("CreateButton")) return 0;
        return desk().opensWindow({.parent = parent,
                                   .rect = {rect[0], rect[1], rect[2], rect[3]},
                                   .caption = caption,
                                   .controller = controller});
    }
    void SetEntries(std::uint64_t button, std::uint64_t documentId, const char16_t* pageUrl,
                    std::uint32_t count, const char16_t* const* labels, const char16_t* const* links) override {
        if (!isOpen(button)) return;
        auto& window = desk().windows[button];
        window.documentId = documentId;
        window.pageUrl = pageUrl;
        window.labels.assign(labels, labels + count);
        window.links.assign(links, links + count);
    }
    void ShowButton(std::uint64_t button, std::uint32_t visible) override {
        if (isOpen(button)) desk().windows[button].visible = visible != 0;
    }
};

}  // namespace

void destroyButtonManager() noexcept {}

CompanionLibraries& companionLibraries() noexcept {
    static NoReaders none;
    return none;
}

IZABButtonManager* buttonManager() noexcept {
    static DeskButtons buttons;
    static IZABButtonManager* manager = nullptr;
    guarded([] {
        if (manager == nullptr && exePathNarrow() == testbed::kCompanions && processController() != 0 &&
            !desk().fails("button library"))
            manager = &buttons;
    });
    return manager;
}

}  // namespace zab
