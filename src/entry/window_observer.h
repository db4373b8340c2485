// Follows the browser's windows and the user's mouse: listeners come and go with each window, and the extension
// forwards their events.
#pragma once

#include "binding/browser_object.h"
#include "binding/interfaces/helpers.h"
#include "page/platform.h"

namespace zab {

class CWindowObserver final : public BrowserObject<CWindowObserver, nsIObserver> {
  public:
    /// "domwindowopened" and "domwindowclosed", with the window as subject.
    nsresult Observe(nsISupports* subject, const char* topic, const char16_t* data) override;

    /// Slot 4, behind those of nsIObserver: a mouse, tab or unload event of a browser window. Always succeeds.
    virtual nsresult HandleMouseEvent(nsISupports* event);

  private:
    void windowOpened(nsISupports* window);
    void windowClosed(nsISupports* window);
    void pressed();
    void released(iZABHelper5& helper, nsISupports* event);

    nsISupports* listener_ = nullptr;  // this object, once it listens to a window
    ScreenPoint pressedAt_;
};

}  // namespace zab
