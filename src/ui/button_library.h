// The download manager's button library, zabbrbtn64.dll, which draws the buttons and their menus.
//
// It runs threads of its own and is called from the browser's main thread alone. It is loaded on first use;
// one that is missing is looked for again on the next use, and without it there are no buttons.
#pragma once

#include <cstdint>
#include <string>

#include "page/document_id.h"
#include "page/platform.h"
#include "ui/menu_labels.h"
#include "ui/visible_rect.h"

namespace zab {

/// The library's manager, one in a process. Its table is laid out by another compiler: the deleting destructor
/// is an ordinary operation. Texts are UTF-16 and copied before a call returns.
class IZABButtonManager {
  public:
    virtual void DeleteThis(std::uint32_t flags) = 0;
    /// `rect`: left, top, right, bottom in the parent's client area. Gives the button's window, or 0. It is
    /// shown when ShowButton says so.
    virtual std::uint64_t CreateButton(std::uint64_t parentWindow, const std::int32_t* rect,
                                       const char16_t* caption, std::uint64_t controllerWindow) = 0;
    virtual void SetEntries(std::uint64_t button, std::uint64_t documentId, const char16_t* pageUrl,
                            std::uint32_t count, const char16_t* const* labels,
                            const char16_t* const* links) = 0;
    virtual void ShowButton(std::uint64_t button, std::uint32_t visible) = 0;
};

/// What the library is told when it makes its manager.
struct ZABButtonInit {
    std::uint32_t size = sizeof(ZABButtonInit);
    std::uint32_t moduleVersion = 0x00010000;  // major version in the high half, minor in the low one
    std::uint64_t controllerWindow = 0;        // of this process
};
static_assert(sizeof(ZABButtonInit) == 16);

/// What a button is made of.
struct ButtonPlan {
    WindowHandle parent = 0;
    WindowHandle controller = 0;  // is told of the user's choice
    PixelRect rect;
    DocumentId document = 0;
    std::string pageUrl;
    std::u16string caption;
};

/// Null without the library.
IZABButtonManager* buttonManager() noexcept;
/// When the browser shuts down. The library itself stays loaded: its threads may still be ending.
void destroyButtonManager() noexcept;

/// Makes a button that is not shown yet; 0 when there is none.
WindowHandle createButton(IZABButtonManager& manager, const ButtonPlan& plan);
void setEntries(IZABButtonManager& manager, WindowHandle button, const ButtonPlan& plan, const Menu& menu);

}  // namespace zab
