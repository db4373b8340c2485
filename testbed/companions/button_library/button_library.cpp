// The stand-in for the button library: its manager, whose operations run on a thread of the library's own, and
// its buttons: real windows on that thread, each with a caption in the upper right corner of the place that it
// is given, and a real menu.
//
// The table is written down here once more, as the contract has it: it shares no declaration with the module.
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "binding/wide_win32.h"
#include "browser/message_font.h"
#include "button_library/choice_record.h"

namespace zab::testbed {
namespace {

// --- The windows ---

/// By which a test finds them.
constexpr const wchar_t* kButtonClass = L"ZAB stand-in button";
constexpr UINT kMove = 0x469;
constexpr ULONG_PTR kMediaRequest = 0x466;
constexpr int kWidth = 180, kHeight = 28;
constexpr UINT kAnswerMs = 5000;

struct ButtonEntry {
    std::u16string label, link;
};

struct Button {
    std::u16string caption;
    HWND controller = nullptr;
    // What a choice tells of besides its link.
    std::uint64_t documentId = 0;
    std::u16string pageUrl{};
    std::vector<ButtonEntry> entries{};
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
    for (const int object : {DC_BRUSH, DC_PEN}) SelectObject(context, GetStockObject(object));
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
    std::string record = choiceRecord(link, button.documentId, button.pageUrl);
    COPYDATASTRUCT copy{kMediaRequest, static_cast<DWORD>(record.size()), record.data()};
    DWORD_PTR answer = 0;
    SendMessageTimeoutA(button.controller, WM_COPYDATA, reinterpret_cast<WPARAM>(window),
                        reinterpret_cast<LPARAM>(&copy), SMTO_NORMAL, kAnswerMs, &answer);
}

void openMenu(HWND window, const Button& button) {
    const HMENU menu = CreatePopupMenu();
    UINT id = 0;
    for (const ButtonEntry& entry : button.entries) AppendMenuW(menu, MF_STRING, ++id, wide(entry.label));
    RECT area{};
    GetWindowRect(window, &area);
    SetForegroundWindow(window);
    const auto entries = button.entries;  // of this menu, whatever the module sets meanwhile
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

/// Not visible yet; null when it cannot be made. Obeys 0x469 (move) and WM_CLOSE; a choice in its menu goes to
/// `controller`.
HWND makeButtonWindow(HWND parent, const RECT& place, const std::u16string& caption, HWND controller) {
    static const bool registered = registerClass();
    if (!registered) return nullptr;
    const RECT corner = cornerOf(place);
    const HWND window = CreateWindowExW(WS_EX_NOPARENTNOTIFY, kButtonClass, wide(caption),
                                        WS_CHILD | WS_CLIPSIBLINGS, corner.left, corner.top, kWidth, kHeight,
                                        parent, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (window != nullptr) buttons()[window] = std::make_shared<Button>(Button{caption, controller});
    return window;
}

// --- The manager ---

constexpr UINT kRun = WM_APP;  // lParam: a Work that waits for its end

using Work = std::function<void()>;

HWND windowOf(std::uint64_t handle) { return reinterpret_cast<HWND>(handle); }

LRESULT CALLBACK deskProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != kRun) return DefWindowProcA(window, message, wParam, lParam);
    (*reinterpret_cast<Work*>(lParam))();
    return 1;
}

/// The library's thread, reached through a window that nobody sees.
class Desk {
  public:
    Desk() {
        std::promise<void> ready;
        const auto isReady = ready.get_future();
        std::thread([this, ready = std::move(ready)]() mutable {
            window_ = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
            SetWindowLongPtrA(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&deskProcedure));
            ready.set_value();
            MSG message{};
            while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
        }).detach();
        isReady.wait();
    }
    /// Waits for the end of the work, and serves the caller's own windows meanwhile.
    void run(const Work& work) const { SendMessageA(window_, kRun, 0, reinterpret_cast<LPARAM>(&work)); }
    /// The thread ends by itself.
    void end() const { PostMessageA(window_, WM_QUIT, 0, 0); }

  private:
    HWND window_ = nullptr;
};

class Manager final {
  public:
    Manager() { only = this; }
    virtual void deletingDestructor(std::uint32_t flags) {
        only = nullptr;
        desk.end();
        if ((flags & 1) != 0) delete this;
    }
    virtual std::uint64_t createButton(std::uint64_t parent, const std::int32_t* rect, const char16_t* caption,
                                       std::uint64_t controller) {
        HWND made = nullptr;
        desk.run([&] {
            const RECT place{rect[0], rect[1], rect[2], rect[3]};
            made = makeButtonWindow(windowOf(parent), place, caption, windowOf(controller));
        });
        return reinterpret_cast<std::uint64_t>(made);
    }
    virtual void setEntries(std::uint64_t button, std::uint64_t documentId, const char16_t* pageUrl,
                            std::uint32_t count, const char16_t* const* labels, const char16_t* const* links) {
        desk.run([&] {
            const auto told = buttonOf(windowOf(button));
            if (!told) return;
            told->documentId = documentId;
            told->pageUrl = pageUrl;
            told->entries.clear();
            for (std::uint32_t i = 0; i < count; ++i) told->entries.push_back({labels[i], links[i]});
        });
    }
    virtual void showButton(std::uint64_t button, std::uint32_t visible) {
        desk.run([&] { ShowWindow(windowOf(button), visible != 0 ? SW_SHOWNA : SW_HIDE); });
    }

    static inline Manager* only = nullptr;  // in a process
    const Desk desk{};
};

/// Does something with each button of a document, on the library's thread.
void forButtons(std::uint64_t documentId, const std::function<void(HWND, const Button&)>& work) {
    if (Manager::only == nullptr) return;
    Manager::only->desk.run([&] {
        const auto all = buttons();  // they live on until the work has ended
        for (const auto& [window, button] : all)
            if (button->documentId == documentId) work(window, *button);
    });
}

}  // namespace
}  // namespace zab::testbed

extern "C" __declspec(dllexport) void* CreateDownlSelWtZABButton(const std::uint32_t* init) {
    // Its size first; then the module's version, its controller's window.
    constexpr std::uint32_t kInitBytes = 16;
    if (init == nullptr || *init < kInitBytes) return nullptr;
    return new zab::testbed::Manager;
}

/// The entries of a page, a line each: link, tab, label. Writes as much as there is room for and gives the
/// whole length.
extern "C" __declspec(dllexport) std::uint32_t
    StandIn_Entries(std::uint64_t documentId, char16_t* text, std::uint32_t capacity) {
    std::u16string lines;
    zab::testbed::forButtons(documentId, [&](HWND, const auto& button) {
        for (const auto& entry : button.entries)
            lines.append(entry.link).append(u"\t").append(entry.label).append(u"\n");
    });
    lines.copy(text, capacity);
    return static_cast<std::uint32_t>(lines.size());
}

/// The user chooses a link in the menu of a page's button; 0: there is no button.
extern "C" __declspec(dllexport) int StandIn_Choose(std::uint64_t documentId, const char16_t* link) {
    int chosen = 0;
    zab::testbed::forButtons(documentId, [&](HWND window, const auto& button) {
        chosen = 1;
        zab::testbed::report(window, button, link);
    });
    return chosen;
}
