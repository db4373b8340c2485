// Under Windows: the settings, keys and message boxes of the desktop, the browser's window, and its user.
#include "browser/desktop.h"

#include <future>
#include <utility>

#include "binding/wide_win32.h"
#include "browser/hands.h"
#include "browser/library.h"
#include "browser/message_font.h"

namespace zab::testbed {

using namespace std::chrono_literals;

// --- Settings and keys ---

namespace {

HWND windowOf(NativeWindow handle) { return reinterpret_cast<HWND>(handle); }
NativeWindow handleOf(HWND window) { return reinterpret_cast<NativeWindow>(window); }

constexpr const char* kRoot = "Software\\ZabrionHub";

/// The key and the name of a value.
std::pair<std::string, std::string> placeOf(const std::string& path) {
    const auto slash = path.rfind('\\');
    if (slash == std::string::npos) return {kRoot, path};
    return {std::string(kRoot) + "\\" + path.substr(0, slash), path.substr(slash + 1)};
}

void write(const std::string& path, DWORD type, const void* data, std::size_t bytes) {
    const auto [key, value] = placeOf(path);
    RegSetKeyValueA(HKEY_CURRENT_USER, key.c_str(), value.c_str(), type, data, static_cast<DWORD>(bytes));
}

bool read(const std::string& path, DWORD types, void* data, DWORD bytes) {
    const auto [key, value] = placeOf(path);
    return RegGetValueA(HKEY_CURRENT_USER, key.c_str(), value.c_str(), types, nullptr, data, &bytes) ==
           ERROR_SUCCESS;
}

constexpr int kMessage = 0xFFFF;  // what the text of a message box is called

HWND openMessageBox() { return FindWindowA("#32770", nullptr); }

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
    return set("ExePath", programFolder() + "companions\\zabrion.exe");
}

std::optional<std::uint32_t> SettingsTree::number(const std::string& path) {
    std::uint32_t number = 0;
    return read(path, RRF_RT_REG_DWORD, &number, sizeof(number)) ? std::optional(number) : std::nullopt;
}

std::optional<std::string> SettingsTree::text(const std::string& path) {
    char text[2048];
    return read(path, RRF_RT_REG_SZ, text, sizeof(text)) ? std::optional<std::string>(text) : std::nullopt;
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
    const auto visible = [] { return IsWindowVisible(openMessageBox()) ? openMessageBox() : nullptr; };
    const HWND dialog = waitsFor(visible, patience);
    if (dialog == nullptr) return std::nullopt;
    ShownBox box{captionOf(handleOf(dialog)), captionOf(handleOf(GetDlgItem(dialog, kMessage)))};
    PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
    waitsFor([&] { return !IsWindow(dialog); });
    return box;
}

// --- The window ---

namespace {

constexpr int kLeft = 40, kTop = 40, kWidth = 640, kHeight = 440;
constexpr int kBarHeight = 36;
constexpr RECT kFilm{24, 84, 424, 309};
constexpr POINT kPlay[] = {{204, 174}, {204, 218}, {248, 196}};  // a triangle that points to the right
constexpr const wchar_t* kLinks[] = {L"Holiday pictures (zip)", L"Map of the coast (pdf)",
                                     L"All the music (zip)"};

void fill(HDC context, const RECT& area, COLORREF color) {
    SetDCBrushColor(context, color);
    SetDCPenColor(context, color);
    Rectangle(context, area.left, area.top, area.right, area.bottom);
}

void write(HDC context, int x, int y, const wchar_t* text, COLORREF color = RGB(40, 40, 40)) {
    SetTextColor(context, color);
    TextOutW(context, x, y, text, lstrlenW(text));
}

void paint(HWND window, const TopWindow::Look& look) {
    PAINTSTRUCT paint{};
    const HDC canvas = BeginPaint(window, &paint);
    for (const int object : {DC_BRUSH, DC_PEN}) SelectObject(canvas, GetStockObject(object));
    SelectObject(canvas, messageFont());
    SetBkMode(canvas, TRANSPARENT);
    RECT area{};
    GetClientRect(window, &area);
    fill(canvas, area, RGB(255, 255, 255));
    fill(canvas, {0, 0, area.right, kBarHeight}, RGB(222, 224, 228));
    fill(canvas, {80, 7, area.right - 16, kBarHeight - 7}, RGB(255, 255, 255));
    write(canvas, 16, 11, L"<    >");
    write(canvas, 90, 11, wide(look.address));
    write(canvas, 24, 56, wide(look.title));
    fill(canvas, kFilm, RGB(24, 28, 36));
    SetDCBrushColor(canvas, RGB(230, 230, 230));
    Polygon(canvas, kPlay, 3);
    int y = kFilm.bottom + 20;
    for (const wchar_t* link : kLinks) {
        if (look.linksSelected) fill(canvas, {22, y - 1, 180, y + 17}, RGB(180, 210, 250));
        write(canvas, 24, y, link, RGB(0, 70, 180));
        y += 22;
    }
    EndPaint(window, &paint);
}

LRESULT CALLBACK topProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* look = reinterpret_cast<const TopWindow::Look*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message != WM_PAINT || look == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    paint(window, *look);
    return 0;
}

HWND makeWindow() {
    static const ATOM registered = [] {
        WNDCLASSW type{};
        type.lpfnWndProc = topProcedure;
        type.hInstance = GetModuleHandleW(nullptr);
        type.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
        type.lpszClassName = L"ZAB stand-in browser";
        return RegisterClassW(&type);
    }();
    return CreateWindowExW(0, MAKEINTRESOURCEW(registered), L"Stand-in browser", WS_POPUP | WS_CLIPCHILDREN,
                           kLeft, kTop, kWidth, kHeight, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
}

}  // namespace

TopWindow::TopWindow(std::u16string address, std::u16string title)
    : look_{std::move(address), std::move(title)}, handle_(handleOf(makeWindow())) {
    SetWindowLongPtrW(windowOf(handle_), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&look_));
    ShowWindow(windowOf(handle_), SW_SHOW);
    SetForegroundWindow(windowOf(handle_));
}

TopWindow::~TopWindow() { DestroyWindow(windowOf(handle_)); }

std::array<std::int32_t, 4> TopWindow::contentBox() const {
    return {0, kBarHeight, kWidth, kHeight - kBarHeight};
}

std::vector<NativeWindow> TopWindow::buttons(bool all) const {
    std::vector<NativeWindow> found;
    HWND button = nullptr;
    while ((button = FindWindowExW(windowOf(handle_), button, L"ZAB stand-in button", nullptr)) != nullptr)
        if (all || IsWindowVisible(button)) found.push_back(handleOf(button));
    return found;
}

void TopWindow::putsCursor(std::int32_t x, std::int32_t y) const {
    POINT point{x, y};
    ClientToScreen(windowOf(handle_), &point);
    SetCursorPos(point.x, point.y);
}

void TopWindow::selectsLinks() {
    look_.linksSelected = true;
    InvalidateRect(windowOf(handle_), nullptr, FALSE);
}

// --- The user ---

namespace {

constexpr UINT kMenuOfWindow = 0x01E1;  // MN_GETHMENU

void click(POINT point) {
    SetCursorPos(point.x, point.y);
    INPUT input[2]{};
    for (INPUT& one : input) one.type = INPUT_MOUSE;
    input[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    input[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(2, input, sizeof(INPUT));
}

POINT middleOf(const RECT& area) { return {(area.left + area.right) / 2, (area.top + area.bottom) / 2}; }

/// The popup menu of this process that is open; null: none.
HWND openMenu() {
    const HWND window = FindWindowA("#32768", nullptr);
    return window != nullptr && IsWindowVisible(window) ? window : nullptr;
}

HMENU menuOf(HWND window) { return reinterpret_cast<HMENU>(SendMessageA(window, kMenuOfWindow, 0, 0)); }

}  // namespace

bool isWindow(NativeWindow window) { return IsWindow(windowOf(window)) != FALSE; }

Area areaOf(NativeWindow window) {
    RECT area{};
    GetWindowRect(windowOf(window), &area);
    MapWindowPoints(nullptr, GetParent(windowOf(window)), reinterpret_cast<POINT*>(&area), 2);
    return {static_cast<std::int32_t>(area.left), static_cast<std::int32_t>(area.top),
            static_cast<std::int32_t>(area.right), static_cast<std::int32_t>(area.bottom)};
}

std::u16string captionOf(NativeWindow window) {
    wchar_t text[2048]{};
    GetWindowTextW(windowOf(window), text, 2048);
    return utf16(text);
}

bool serves(const std::function<bool()>& ended, std::chrono::milliseconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!ended()) {
        if (std::chrono::steady_clock::now() > end) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(kLook.count()), QS_ALLINPUT);
        MSG message{};
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }
    return true;
}

void beside(const std::function<void()>& work) {
    auto done = std::async(std::launch::async, work);
    serves([&] { return done.wait_for(0s) == std::future_status::ready; });
    done.get();
}

std::int32_t scrollBarWidth() { return GetSystemMetrics(SM_CXVSCROLL); }

void closesButton(NativeWindow button) { PostMessageA(windowOf(button), WM_CLOSE, 0, 0); }

std::vector<std::u16string> opensMenu(NativeWindow button) {
    HWND window = nullptr;
    // A click on what is not drawn yet goes astray, so a user clicks once more.
    for (int clicks = 0; window == nullptr && clicks < 5; ++clicks) {
        RECT area{};
        GetWindowRect(windowOf(button), &area);
        click(middleOf(area));
        window = waitsFor([] { return openMenu(); }, 2s);
    }
    std::vector<std::u16string> labels;
    const HMENU menu = window == nullptr ? nullptr : menuOf(window);
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[512]{};
        GetMenuStringW(menu, static_cast<UINT>(i), text, 512, MF_BYPOSITION);
        labels.emplace_back(utf16(text));
    }
    return labels;
}

bool choosesItem(std::size_t item) {
    for (int clicks = 0; clicks < 5; ++clicks) {
        const HWND window = openMenu();
        RECT area{};
        if (window == nullptr || !GetMenuItemRect(nullptr, menuOf(window), static_cast<UINT>(item), &area))
            return false;
        click(middleOf(area));
        if (waitsFor([] { return openMenu() == nullptr; }, 2s)) return true;
    }
    return false;
}

void leavesMenu(NativeWindow button) {
    RECT area{};
    GetWindowRect(GetParent(windowOf(button)), &area);
    click({area.left + 1, area.top + 1});
    waitsFor([] { return openMenu() == nullptr; });
}

}  // namespace zab::testbed
