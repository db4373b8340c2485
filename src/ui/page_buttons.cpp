#include "ui/page_buttons.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "binding/browser_text_win32.h"
#include "binding/never_destroyed.h"
#include "binding/utf.h"
#include "settings/message_texts.h"
#include "settings/shared_list_lock.h"
#include "ui/button_windows.h"
#include "ui/panel_controller.h"
#include "web/file_name.h"

namespace zab {
namespace {

std::u16string textOfNarrow(std::string_view text) {
    return isCompleteUtf8(text) ? utf16FromUtf8(text) : utf16FromAnsi(text);
}

/// 0: the page is not known, or has no window that is still there. Needs no lock: pages come and go on this
/// thread alone.
WindowHandle windowOfPage(DocumentId document) {
    const MediaPages::Record* page = mediaPages().find(document);
    return page != nullptr && isOpen(page->page.browserWindow) ? page->page.browserWindow : 0;
}

/// A copy of a page's entries; nothing when there is no such page or the lock could not be had.
std::optional<std::vector<MediaEntry>> entriesOf(DocumentId document) {
    const SharedListLock lock(OnTimeout::skip);
    const MediaPages::Record* page = lock ? mediaPages().find(document) : nullptr;
    if (page == nullptr) return std::nullopt;
    return page->media.entries();
}

}  // namespace

std::shared_ptr<CDownloadMediaBtn> CDownloadButtonsArray::find(const DocumentKey& document) const {
    const auto found = std::find_if(begin(), end(), [&](const auto& button) {
        return document.names(button->document().object, button->document().id);
    });
    return found == end() ? nullptr : *found;
}

void PageButtons::forget(const DocumentKey& document) {
    fronts_.ended(document.id);
    while (auto button = buttons_.find(document)) {
        fronts_.ended(button->document().id);
        leaving_.push_back(button);
        buttons_.Remove(button);
    }
}

void PageButtons::forgetAll() {
    while (buttons_.count() != 0) {
        leaving_.push_back(buttons_[0]);
        buttons_.RemoveAt(0);
    }
}

void PageButtons::settle() {
    // Each call may lead back here: what is to be done is taken away first, and the list may change meanwhile.
    for (const auto& button : std::exchange(leaving_, {})) button->close();
    const auto selected = std::exchange(selected_, std::nullopt);
    IZABButtonManager* const manager = buttons_.begin() == buttons_.end() ? nullptr : buttonManager();
    if (selected) bringToFront(manager, *selected);
    if (manager == nullptr) return;
    for (const auto& button : all()) {
        button->noteClosed();
        if (button->isOrphan()) move(*manager, *button, button->pageWindow());
    }
    fronts_.keepWindows(isOpen);
    for (const auto& button : all()) {
        button->wantShown(fronts_.isFront(button->document().id, button->browserWindow()));
        button->settle(*manager);
    }
}

void PageButtons::bringToFront(IZABButtonManager* manager, DocumentId document) {
    WindowHandle window = 0;
    const auto button = document == 0 ? nullptr : buttons_.find({nullptr, document});
    if (button && manager != nullptr) {
        window = button->pageWindow();
        if (window != 0) move(*manager, *button, window);
        window = button->browserWindow();
    } else if (document != 0) {
        window = windowOfPage(document);
    }
    const bool guessed = window == 0;
    if (guessed) window = activeWindow();
    if (window == 0 && isOpen(lastWindow_)) window = lastWindow_;
    lastWindow_ = window;
    fronts_.select(document, window, guessed);
}

void PageButtons::move(IZABButtonManager& manager, CDownloadMediaBtn& button, WindowHandle window) {
    if (window == 0 || !isOpen(window) || window == button.browserWindow()) return;
    const WindowHandle controller = pageController(window);
    {
        const SharedListLock lock(OnTimeout::skip);
        if (MediaPages::Record* page = lock ? mediaPages().find(button.document().id) : nullptr) {
            page->page.browserWindow = window;
            page->page.controller = controller;
        }
    }
    button.moveTo(manager, window, controller);
    fronts_.seen(button.document().id, window);
}

void PageButtons::mediaChanged(nsISupports* document, const OpenPage& page) {
    if (document == nullptr || page.controller == 0) return;
    const auto entries = entriesOf(page.document.id);
    if (!entries) return;
    Menu menu = mediaMenu(*entries, messageTexts(), textOfNarrow);
    IZABButtonManager* const manager = menu.links.empty() ? nullptr : buttonManager();
    if (manager == nullptr) return;
    fronts_.seen(page.document.id, page.browserWindow);
    auto button = buttons_.find(page.document);
    if (!button) {
        button = std::make_shared<CDownloadMediaBtn>(document, page);
        if (!button->open(*manager) || !add(button)) return;
        fronts_.loading(page.document.id, page.browserWindow);
    } else {
        move(*manager, *button, page.browserWindow);
    }
    button->setMenu(*manager, std::move(menu));
    settle();
}

void PageButtons::noteClosed() noexcept {
    for (const auto& button : buttons_) button->noteClosed();
}

/// The page may have gone, or got another button, while this one was made.
bool PageButtons::add(const std::shared_ptr<CDownloadMediaBtn>& button) {
    const SharedListLock lock(OnTimeout::skip);
    const DocumentKey& document = button->document();
    if (!lock || mediaPages().find(document.id) == nullptr || buttons_.find(document)) return false;
    buttons_.Append(button);
    return true;
}

PageButtons& pageButtons() {
    static NeverDestroyed<PageButtons> buttons;
    return buttons.get();
}

void endButtons() {
    {
        const SharedListLock lock(OnTimeout::goOn);
        pageButtons().forgetAll();
    }
    pageButtons().settle();
    destroyButtonManager();
}

}  // namespace zab
