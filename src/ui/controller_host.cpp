#include "ui/controller_host.h"

#include <utility>

#include "binding/never_destroyed.h"
#include "media/capture/media_capture.h"
#include "settings/shared_list_lock.h"
#include "transfer/transfer.h"
#include "ui/button_windows.h"

namespace zab {
namespace {

class Sender final : public ChoiceSender {
  public:
    TransferResult send(const TransferRecord& record, bool requestSeen) override {
        if (!requestSeen) return session_.sendAsBrowser(record);
        TransferRecord narrow = record;
        makeNarrow(narrow);
        return session_.send(narrow);
    }

  private:
    TransferSession session_;
};

WindowHandle controllerOfPage(DocumentId document) {
    const SharedListLock lock(OnTimeout::skip);
    const auto* page = lock ? mediaPages().find(document) : nullptr;
    return page != nullptr ? page->page.controller : 0;
}

class Host final : public ControllerHost {
  public:
    bool post(WindowHandle window, std::uint32_t message, std::uintptr_t lParam) override {
        return postToWindow(window, message, lParam);
    }
    bool makesWay(std::function<void()> work) override { return othersWait() && runSoon(std::move(work)); }
    std::optional<ChosenMedia> lookUp(const MediaRequest& request, WindowHandle asked) override {
        const bool byProcess = asked == controllerWindows().process;
        const SharedListLock lock(OnTimeout::skip);
        if (!lock) return std::nullopt;
        const WindowHandle popup = selectedLinks().popup;
        static const SelectedLinks none;
        const bool closed = popup != 0 && !isOpen(popup);
        return chosenMedia(request, byProcess ? ChoiceOrigin::processController : ChoiceOrigin::pageController,
                           {requestLists(), mediaPages(), closed ? none : std::as_const(selectedLinks())});
    }
    WindowHandle replyWindow(const Choice& choice, WindowHandle asked, WindowHandle leaving) override {
        const WindowHandle ofPage = controllerOfPage(documentIdOf(choice.request.pageIdentity));
        for (const WindowHandle window : {choice.media.controller, ofPage, asked})
            if (window != leaving && isPageController(window)) return window;
        return controllerWindows().own;
    }
    std::unique_ptr<ChoiceSender> sender() override { return std::make_unique<Sender>(); }
    bool file(std::unique_ptr<MediaEntry> entry) override { return fileEntry(std::move(entry)); }
    void tell(ChoiceEnd end) override {
        end == ChoiceEnd::nothingThere ? reportNoMediaFound() : reportNoCallsNow();
    }
};

}  // namespace

ControllerWindows& controllerWindows() noexcept {
    static NeverDestroyed<ControllerWindows> windows;
    return windows.get();
}

Controllers& controllers() {
    static NeverDestroyed<Host> host;
    static NeverDestroyed<Controllers> all(host.get());
    return all.get();
}

}  // namespace zab
