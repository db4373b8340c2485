// The stand-in for the button library: its manager, whose operations run on a thread of the library's own,
// where the windows live.
//
// The table is written down here once more, as the contract has it: it shares no declaration with the module.
#include <functional>
#include <thread>

#include "button_library/button_window.h"

namespace zab::testbed {
namespace {

constexpr UINT kRun = WM_APP;  // lParam: a Work that waits for its end

using Work = std::function<void()>;

class Manager {
  public:
    virtual void deletingDestructor(std::uint32_t flags) = 0;
    virtual std::uint64_t createButton(std::uint64_t parent, const std::int32_t* rect, const char16_t* caption,
                                       std::uint64_t controller) = 0;
    virtual void setEntries(std::uint64_t button, std::uint64_t documentId, const char16_t* pageUrl,
                            std::uint32_t count, const char16_t* const* labels,
                            const char16_t* const* links) = 0;
    virtual void showButton(std::uint64_t button, std::uint32_t visible) = 0;
};

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
        const HANDLE ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        std::thread([this, ready] {
            window_ = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
            SetWindowLongPtrA(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&deskProcedure));
            SetEvent(ready);
            MSG message{};
            while (GetMessageA(&message, nullptr, 0, 0) > 0) {
                TranslateMessage(&message);
                DispatchMessageA(&message);
            }
        }).detach();
        WaitForSingleObject(ready, INFINITE);
        CloseHandle(ready);
    }
    /// Waits for the end of the work, and serves the caller's own windows meanwhile.
    void run(const Work& work) const { SendMessageA(window_, kRun, 0, reinterpret_cast<LPARAM>(&work)); }
    /// The thread ends by itself.
    void end() const { PostMessageA(window_, WM_QUIT, 0, 0); }

  private:
    HWND window_ = nullptr;
};

class StandInManager;
StandInManager* g_manager = nullptr;  // one in a process

class StandInManager final : public Manager {
  public:
    StandInManager() { g_manager = this; }
    void deletingDestructor(std::uint32_t flags) override {
        g_manager = nullptr;
        desk_.end();
        if ((flags & 1) != 0) delete this;
    }
    std::uint64_t createButton(std::uint64_t parent, const std::int32_t* rect, const char16_t* caption,
                               std::uint64_t controller) override {
        HWND made = nullptr;
        desk_.run([&] {
            const RECT place{rect[0], rect[1], rect[2], rect[3]};
            made = makeButtonWindow(windowOf(parent), place, caption, windowOf(controller));
        });
        return reinterpret_cast<std::uint64_t>(made);
    }
    void setEntries(std::uint64_t button, std::uint64_t documentId, const char16_t* pageUrl,
                    std::uint32_t count, const char16_t* const* labels, const char16_t* const* links) override {
        ButtonPage page{documentId, pageUrl, {}};
        for (std::uint32_t i = 0; i < count; ++i) page.entries.push_back({labels[i], links[i]});
        desk_.run([&] { setButtonPage(windowOf(button), std::move(page)); });
    }
    void showButton(std::uint64_t button, std::uint32_t visible) override {
        desk_.run([&] { ShowWindow(windowOf(button), visible != 0 ? SW_SHOWNA : SW_HIDE); });
    }
    const Desk desk_{};
};

struct Init {
    std::uint32_t size, moduleVersion;
    std::uint64_t controllerWindow;
};

}  // namespace
}  // namespace zab::testbed

extern "C" __declspec(dllexport) void* CreateDownlSelWtZABButton(const zab::testbed::Init* init) {
    if (init == nullptr || init->size < sizeof(*init)) return nullptr;
    return static_cast<zab::testbed::Manager*>(new zab::testbed::StandInManager);
}

/// The entries of a page, a line each: link, tab, label. Writes as much as there is room for and gives the
/// whole length.
extern "C" __declspec(dllexport) std::uint32_t
    StandIn_Entries(std::uint64_t documentId, char16_t* text, std::uint32_t capacity) {
    if (zab::testbed::g_manager == nullptr) return 0;
    std::u16string lines;
    zab::testbed::g_manager->desk_.run([&] {
        for (const auto& entry : zab::testbed::entriesOf(documentId))
            lines.append(entry.link).append(u"\t").append(entry.label).append(u"\n");
    });
    lines.copy(text, capacity);
    return static_cast<std::uint32_t>(lines.size());
}

/// The user chooses a link in the menu of a page's button; 0: there is no button.
extern "C" __declspec(dllexport) int StandIn_Choose(std::uint64_t documentId, const char16_t* link) {
    bool chosen = false;
    if (zab::testbed::g_manager != nullptr)
        zab::testbed::g_manager->desk_.run([&] { chosen = zab::testbed::choose(documentId, link); });
    return chosen ? 1 : 0;
}
