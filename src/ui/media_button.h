// The button of one page that has media: its window, drawn by the button library, and the listeners that keep
// it where the page is.
//
// Lives on the browser's main thread. It calls the extension and the library, so never under the shared-list
// lock.
#pragma once

#include <memory>
#include <optional>

#include "binding/browser_object.h"
#include "binding/interfaces/dom.h"
#include "binding/interfaces/helpers.h"
#include "page/media_pages.h"
#include "ui/button_library.h"

namespace zab {

class CDownloadMediaBtn;

/// Passes the page's events on, as long as the button lives.
template <class Self>
class ButtonListener : public BrowserObject<Self, nsIDOMEventListener> {
  public:
    explicit ButtonListener(CDownloadMediaBtn& button) noexcept : button_(&button) {}
    /// Slot 3. Always succeeds.
    nsresult HandleEvent(nsISupports* event) override;
    /// An event that is still on its way finds nobody.
    void leaveButton() noexcept { button_ = nullptr; }

  protected:
    ~ButtonListener() = default;

  private:
    CDownloadMediaBtn* button_;
};

/// Hears "scroll", "resize" and "unload" of the page's window.
class CBtnMouseListener final : public ButtonListener<CBtnMouseListener> {
    using ButtonListener::ButtonListener;
};

/// Hears "unload" of the document itself, for one that goes without its window.
class CElementUnloadListener final : public ButtonListener<CElementUnloadListener> {
    using ButtonListener::ButtonListener;
};

class CDownloadMediaBtn : public std::enable_shared_from_this<CDownloadMediaBtn> {
  public:
    /// Holds the document and its window until close().
    CDownloadMediaBtn(nsISupports* document, const OpenPage& page);
    ~CDownloadMediaBtn() { close(); }
    CDownloadMediaBtn(const CDownloadMediaBtn&) = delete;
    CDownloadMediaBtn& operator=(const CDownloadMediaBtn&) = delete;

    [[nodiscard]] const DocumentKey& document() const noexcept { return document_; }

    [[nodiscard]] WindowHandle browserWindow() const noexcept { return plan_.parent; }

    /// Listens, and makes the button's window. False: there is none.
    bool open(IZABButtonManager& manager);
    /// Tells the library, when it was told another one before.
    void setMenu(IZABButtonManager& manager, Menu menu);
    /// Moves the button to where the page is now; a call that fails leaves it where it was.
    void follow();

    /// A button that goes while its browser window stays was closed by the user: the page gets no other. To be
    /// called while that can be told.
    void noteClosed() noexcept;
    /// Whether its browser window died, and the button with it.
    [[nodiscard]] bool isOrphan() const noexcept;
    /// The browser window that shows the page now; 0: the extension does not say.
    [[nodiscard]] WindowHandle pageWindow() const;
    /// The page is in another browser window: there the button is made anew, unless the user closed it.
    void moveTo(IZABButtonManager& manager, WindowHandle browserWindow, WindowHandle controller);

    /// Whether the button is to be seen; settle() makes it so, and makes it anew where that failed before.
    void wantShown(bool wanted) noexcept { wanted_ = wanted; }
    void settle(IZABButtonManager& manager);
    /// Gives listeners and references back and asks the window to close. May be called again.
    void close() noexcept;

    /// An event of the page, which may be its end.
    void handle(nsISupports* event);

  private:
    /// All that ties it to the browser.
    struct Bonds {
        InterfacePtr<nsISupports> document;
        InterfacePtr<nsISupports> domWindow;
        InterfacePtr<CBtnMouseListener> mouseListener;
        InterfacePtr<CElementUnloadListener> unloadListener;

        /// Calls `change` (add or remove a listener) for each event that the button listens to.
        template <class Change>
        void forEachEvent(iZABHelper5& helper, Change change) const;
    };

    bool place(iZABHelper5& helper);
    bool make(IZABButtonManager& manager);
    void followSoon();

    DocumentKey document_;
    Bonds bonds_;
    ButtonPlan plan_;
    Placement placement_;
    Menu menu_;       // what the library was last told
    PixelRect told_;  // the same for the place
    WindowHandle window_ = 0;
    bool makes_ = false;  // now: the library may serve messages meanwhile
    bool closedByUser_ = false;
    bool follows_ = false;  // soon: many scrolls are one move
    bool wanted_ = false;
    std::optional<bool> shown_;  // the same
};

}  // namespace zab
