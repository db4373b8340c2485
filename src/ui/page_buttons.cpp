#include "ui/page_buttons.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "binding/browser_text_win32.h"
#include "binding/never_destroyed.h"
#include "binding/utf.h"
#include "page/module_state.h"
#include "settings/message_texts.h"
#include "settings/shared_list_lock.h"
#include "web/file_name.h"

namespace zab {
namespace {

std::u16string textOfNarrow(std::string_view text) {
    return isCompleteUtf8(text) ? utf16FromUtf8(text) : utf16FromAnsi(text);
}

/// Where the browser has not said which tab is in front, the page that is loading is taken for it.
bool isInView(DocumentId document) {
    const DocumentId selected = moduleState().selectedDocument;
    return selected == 0 || selected == document;
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

void PageButtons::selectDocument(DocumentId document) noexcept {
    for (const auto& button : buttons_) button->wantShown(button->document().id == document);
}

void PageButtons::forget(const DocumentKey& document) {
    while (auto button = buttons_.find(document)) {
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
    const std::vector<std::shared_ptr<CDownloadMediaBtn>> buttons(buttons_.begin(), buttons_.end());
    if (buttons.empty()) return;
    IZABButtonManager* const manager = buttonManager();
    if (manager == nullptr) return;
    for (const auto& button : buttons) button->settle(*manager);
}

void PageButtons::mediaChanged(nsISupports* document, const OpenPage& page) {
    if (document == nullptr || page.browserWindow == 0 || page.controller == 0) return;
    const auto entries = entriesOf(page.document.id);
    IZABButtonManager* const manager = buttonManager();
    if (!entries || entries->empty() || manager == nullptr) return;
    auto button = buttons_.find(page.document);
    if (!button) {
        button = std::make_shared<CDownloadMediaBtn>(document, page);
        if (!button->open(*manager) || !add(button)) return;
        button->wantShown(isInView(page.document.id));
    }
    button->setMenu(*manager, mediaMenu(*entries, messageTexts(), textOfNarrow));
    button->settle(*manager);
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
