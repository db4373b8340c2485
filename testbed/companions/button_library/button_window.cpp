#include "button_library/button_window.h"

#include <algorithm>
#include <map>
#include <memory>

#include "browser/message_font.h"
#include "button_library/choice_record.h"

namespace zab::testbed {
namespace {

constexpr UINT kMove = 0x469;
constexpr ULONG_PTR kMediaRequest = 0x466;
constexpr int kWidth = 180, kHeight = 28;
constexpr UINT kAnswerMs = 5000;

struct Button {
    std::u16string caption;
    HWND controller = nullptr;
    ButtonPage page;
};

/// By window; a button is held by its menu too, while that is open.
std::map<HWND, std::shared_ptr<Button>>& buttons() {
    static std::map<HWND, std::shared_ptr<Button>> all;
    return all;
}

std::shared_ptr<Button> buttonOf(HWND window) {
    const auto found = buttons().find(window);
    return found == buttons().end() ? nullptr : found->second;
}

/// The upper right corner; a place too narrow for that is where the button begins.
RECT cornerOf(const RECT& place) {
    const LONG left = place.right - place.left >= kWidth ? place.right - kWidth : place.left;
    return {left, place.top, left + kWidth, place.top + kHeight};
}

void paint(HWND window, const Button& button) {
    PAINTSTRUCT paint{};
    const HDC context = BeginPaint(window, &paint);
    RECT area{};
    GetClientRect(window, &area);
    SelectObject(context, GetStockObject(DC_BRUSH));
    SelectObject(context, GetStockObject(DC_PEN));
    SetDCBrushColor(context, RGB(32, 96, 176));
    SetDCPenColor(context, RGB(16, 48, 96));
    Rectangle(context, area.left, area.top, area.right, area.bottom);
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, RGB(255, 255, 255));
    SelectObject(context, messageFont());
    DrawTextW(context, wide(button.caption), -1, &area, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
    EndPaint(window, &paint);
}

void report(HWND window, const Button& button, const std::u16string& link) {
    std::string record = choiceRecord(link, button.page.documentId, button.page.url);
    COPYDATASTRUCT copy{kMediaRequest, static_cast<DWORD>(record.size()), record.data()};
    DWORD_PTR answer = 0;
    SendMessageTimeoutA(button.controller, WM_COPYDATA, reinterpret_cast<WPARAM>(window),
                        reinterpret_cast<LPARAM>(&copy), SMTO_NORMAL, kAnswerMs, &answer);
}

void openMenu(HWND window, const Button& button) {
    const HMENU menu = CreatePopupMenu();
    UINT id = 0;
    for (const ButtonEntry& entry : button.page.entries) AppendMenuW(menu, MF_STRING, ++id, wide(entry.label));
    RECT area{};
    GetWindowRect(window, &area);
    SetForegroundWindow(window);
    const auto entries = button.page.entries;  // of this menu, whatever the module sets meanwhile
    const auto chosen = static_cast<std::size_t>(TrackPopupMenu(
        menu, TPM_RETURNCMD | TPM_RIGHTALIGN | TPM_TOPALIGN, area.right, area.bottom, 0, window, nullptr));
    DestroyMenu(menu);
    if (chosen != 0 && chosen <= entries.size()) report(window, button, entries[chosen - 1].link);
}

LRESULT CALLBACK buttonProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto button = buttonOf(window);
    if (!button) return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
        case WM_PAINT: paint(window, *button); return 0;
        case WM_LBUTTONUP: openMenu(window, *button); return 0;
        case kMove: {
            const RECT place{static_cast<LONG>(wParam), static_cast<LONG>(wParam >> 32),
                             static_cast<LONG>(lParam), static_cast<LONG>(lParam >> 32)};
            const RECT corner = cornerOf(place);
            MoveWindow(window, corner.left, corner.top, kWidth, kHeight, TRUE);
            return 0;
        }
        case WM_CLOSE:
            EndMenu();
            DestroyWindow(window);
            return 0;
        case WM_NCDESTROY: buttons().erase(window); break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

bool registerClass() {
    WNDCLASSW type{};
    type.style = CS_HREDRAW | CS_VREDRAW;
    type.lpfnWndProc = buttonProcedure;
    type.hInstance = GetModuleHandleW(nullptr);
    type.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32649));  // a hand
    type.lpszClassName = kButtonClass;
    return RegisterClassW(&type) != 0;
}

}  // namespace

HWND makeButtonWindow(HWND parent, const RECT& place, const std::u16string& caption, HWND controller) {
    static const bool registered = registerClass();
    if (!registered) return nullptr;
    const RECT corner = cornerOf(place);
    const HWND window = CreateWindowExW(WS_EX_NOPARENTNOTIFY, kButtonClass, wide(caption),
                                        WS_CHILD | WS_CLIPSIBLINGS, corner.left, corner.top, kWidth, kHeight,
                                        parent, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (window == nullptr) return nullptr;
    buttons()[window] = std::make_shared<Button>(Button{caption, controller, {}});
    return window;
}

std::vector<ButtonEntry> entriesOf(std::uint64_t documentId) {
    for (const auto& [window, button] : buttons())
        if (button->page.documentId == documentId) return button->page.entries;
    return {};
}

bool choose(std::uint64_t documentId, const std::u16string& link) {
    for (const auto& [window, button] : buttons()) {
        if (button->page.documentId != documentId) continue;
        const auto held = button;
        report(window, *held, link);
        return true;
    }
    return false;
}

void setButtonPage(HWND window, ButtonPage page) {
    if (const auto button = buttonOf(window)) button->page = std::move(page);
}

}  // namespace zab::testbed
