#include "browser/desktop.h"

#include <thread>

#include "binding/wide_win32.h"
#include "browser/hands.h"

namespace zab::testbed {
namespace {

constexpr const char* kRoot = "Software\\ZabrionHub";

struct Place {
    std::string key, value;
};

Place placeOf(const std::string& path) {
    const auto slash = path.rfind('\\');
    if (slash == std::string::npos) return {kRoot, path};
    return {std::string(kRoot) + "\\" + path.substr(0, slash), path.substr(slash + 1)};
}

void write(const std::string& path, DWORD type, const void* data, std::size_t bytes) {
    const auto [key, value] = placeOf(path);
    RegSetKeyValueA(HKEY_CURRENT_USER, key.c_str(), value.c_str(), type, data, static_cast<DWORD>(bytes));
}

std::u16string textOf(HWND window) { return captionOf(reinterpret_cast<NativeWindow>(window)); }

constexpr const char* kDialogClass = "#32770";

HWND openMessageBox() {
    HWND found = nullptr;
    EnumWindows(
        [](HWND window, LPARAM result) -> BOOL {
            DWORD process = 0;
            char name[16]{};
            GetWindowThreadProcessId(window, &process);
            GetClassNameA(window, name, sizeof(name));
            if (process != GetCurrentProcessId() || std::string_view(name) != kDialogClass) return TRUE;
            *reinterpret_cast<HWND*>(result) = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

/// The longest text of a dialog's children: the message, not a button.
std::u16string messageOf(HWND dialog) {
    std::u16string longest;
    EnumChildWindows(
        dialog,
        [](HWND child, LPARAM result) -> BOOL {
            auto& text = *reinterpret_cast<std::u16string*>(result);
            if (auto own = textOf(child); own.size() > text.size()) text = std::move(own);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&longest));
    return longest;
}

}  // namespace

SettingsTree::SettingsTree() {
    removeAll();
    set("zabvers", "1.0").set("ExePath", kProgram);
}

SettingsTree::~SettingsTree() { removeAll(); }

void SettingsTree::removeAll() { RegDeleteTreeA(HKEY_CURRENT_USER, kRoot); }

SettingsTree& SettingsTree::set(const std::string& path, std::string_view text) {
    const std::string terminated(text);
    write(path, REG_SZ, terminated.c_str(), terminated.size() + 1);
    return *this;
}

SettingsTree& SettingsTree::set(const std::string& path, std::uint32_t number) {
    write(path, REG_DWORD, &number, sizeof(number));
    return *this;
}

SettingsTree& SettingsTree::remove(const std::string& path) {
    const auto [key, value] = placeOf(path);
    RegDeleteKeyValueA(HKEY_CURRENT_USER, key.c_str(), value.c_str());
    return *this;
}

SettingsTree& SettingsTree::setCompanions() {
    char path[MAX_PATH]{};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    const std::string program(path);
    return set("ExePath", program.substr(0, program.rfind('\\')) + "\\companions\\zabrion.exe");
}

std::optional<std::uint32_t> SettingsTree::number(const std::string& path) {
    const auto [key, value] = placeOf(path);
    DWORD number = 0, size = sizeof(number);
    const auto status =
        RegGetValueA(HKEY_CURRENT_USER, key.c_str(), value.c_str(), RRF_RT_REG_DWORD, nullptr, &number, &size);
    return status == ERROR_SUCCESS ? std::optional<std::uint32_t>(number) : std::nullopt;
}

std::optional<std::string> SettingsTree::text(const std::string& path) {
    const auto [key, value] = placeOf(path);
    char text[2048];
    DWORD size = sizeof(text);
    const auto status =
        RegGetValueA(HKEY_CURRENT_USER, key.c_str(), value.c_str(), RRF_RT_REG_SZ, nullptr, text, &size);
    return status == ERROR_SUCCESS ? std::optional<std::string>(text) : std::nullopt;
}

void SettingsTree::touchConfigTime() {
    static std::uint32_t changes = 0;
    set("ConfigTime\\time", ++changes);
}

HeldKeys::HeldKeys(const std::vector<std::uint8_t>& keys) {
    BYTE state[256]{};
    for (const auto key : keys) state[key] = 0x80;
    SetKeyboardState(state);
}

HeldKeys::~HeldKeys() {
    BYTE none[256]{};
    SetKeyboardState(none);
}

void putCursor(std::int32_t x, std::int32_t y) { SetCursorPos(x, y); }

bool messageBoxIsOpen() { return openMessageBox() != nullptr; }

std::optional<ShownBox> answerMessageBox(int button, std::chrono::milliseconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < end) {
        if (const HWND dialog = openMessageBox(); dialog != nullptr && IsWindowVisible(dialog)) {
            ShownBox box{textOf(dialog), messageOf(dialog)};
            PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
            while (IsWindow(dialog)) std::this_thread::sleep_for(std::chrono::milliseconds(5));
            return box;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return std::nullopt;
}

}  // namespace zab::testbed
