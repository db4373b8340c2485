#include "browser/top_window.h"

#include "binding/wide_win32.h"
#include "browser/message_font.h"

namespace zab::testbed {
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
    for (const int object : {DC_BRUSH, DC_PEN, DEFAULT_GUI_FONT}) SelectObject(canvas, GetStockObject(object));
    SetBkMode(canvas, TRANSPARENT);
    RECT area{};
    GetClientRect(window, &area);
    fill(canvas, area, RGB(255, 255, 255));
    fill(canvas, {0, 0, area.right, kBarHeight}, RGB(222, 224, 228));
    fill(canvas, {80, 7, area.right - 16, kBarHeight - 7}, RGB(255, 255, 255));
    write(canvas, 16, 11, L"<    >");
    write(canvas, 90, 11, wide(look.address));
    write(canvas, 24, 56, L"A day at the sea");
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
    constexpr const wchar_t* kClass = L"ZAB stand-in browser";
    static const ATOM registered = [] {
        WNDCLASSW type{};
        type.lpfnWndProc = topProcedure;
        type.hInstance = GetModuleHandleW(nullptr);
        type.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
        type.lpszClassName = kClass;
        return RegisterClassW(&type);
    }();
    if (registered == 0) return nullptr;
    return CreateWindowExW(0, kClass, L"Stand-in browser", WS_POPUP | WS_CLIPCHILDREN, kLeft, kTop, kWidth,
                           kHeight, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
}

HWND windowOf(NativeWindow handle) { return reinterpret_cast<HWND>(handle); }

}  // namespace

TopWindow::TopWindow(std::u16string address, std::u16string title)
    : look_{std::move(address), std::move(title)}, handle_(reinterpret_cast<NativeWindow>(makeWindow())) {
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
        if (all || IsWindowVisible(button)) found.push_back(reinterpret_cast<NativeWindow>(button));
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

}  // namespace zab::testbed
