#include "media/capture/media_display.h"

#include "ui/page_buttons.h"
#include "ui/panel_controller.h"
#include "ui/panel_gate.h"

namespace zab {
namespace {

class ButtonsAndPanel final : public MediaDisplay {
  public:
    EntryFate fateOf(std::string_view pageUrl, std::string_view extension, std::uint64_t size) override {
        return entryFate(pageUrl, extension, size);
    }
    WindowHandle controllerOf(WindowHandle browserWindow) override { return pageController(browserWindow); }
    bool sendEntry(WindowHandle controller, std::unique_ptr<MediaEntry> entry) override {
        return zab::sendEntry(controller, std::move(entry));
    }
    void mediaChanged(nsISupports* document, const OpenPage& page) override {
        pageButtons().mediaChanged(document, page);
    }
};

}  // namespace

MediaDisplay& mediaDisplay() noexcept {
    static ButtonsAndPanel display;
    return display;
}

}  // namespace zab
