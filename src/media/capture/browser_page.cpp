#include "media/capture/browser_page.h"

#include <utility>

#include "binding/interfaces/helpers.h"
#include "intercept/load_types.h"
#include "media/capture/media_display.h"
#include "page/page.h"
#include "page/request_lists.h"
#include "settings/shared_list_lock.h"
#include "transfer/cookies.h"

namespace zab {
namespace {

void noteExamined(OBJECTREQUESTSARRAY_ITEM record) {
    CObjectRequestsArray& examined = requestLists().examined;
    const auto* known = examined.find(record.url);
    if (known == nullptr || known->documentId != record.documentId) examined.add(std::move(record));
}

}  // namespace

BrowserPage::BrowserPage(const KeptResponse& response) : channel_(referenceTo(response.channel)) {
    identity_.referrer = response.headers.referer;
    identity_.userAgent = response.headers.userAgent;
    examined_.url = response.headers.url;
    examined_.cookies = response.headers.cookie;
    examined_.authorization = response.headers.authorization;
    if ((response.loadFlags & kTopLevelLoad) == 0) findDocument();
}

void BrowserPage::findDocument() {
    const auto helper = service<iZABHelper5>();
    if (!helper || failed(helper->GetChannelDocument(channel_.get(), document_.put())) || !document_) return;
    page_.document = {document_.get(), documentIdOf(document_.get())};
    state_ = State::documentKnown;
    channel_.reset();
}

/// What cannot be read of it stays empty.
void BrowserPage::readIdentity() {
    state_ = State::none;
    const auto helper = service<iZABHelper5>();
    if (!helper || page_.document.id == 0) return;
    state_ = State::known;
    Page page = pageOfDocument(*helper.get(), document_.another());
    identity_.url = page.url;
    identity_.title = std::move(page.titleUtf8);  // entries are UTF-8 throughout
    page_.url = std::move(page.url);
}

const EntryPage* BrowserPage::identity() {
    if (state_ == State::toBeAsked) findDocument();
    if (state_ == State::toBeAsked) state_ = State::none;
    if (state_ == State::documentKnown) readIdentity();
    identity_.documentId = page_.document.id;
    return state_ == State::known ? &identity_ : nullptr;
}

bool BrowserPage::ask(const std::function<bool(const OfferedMedia&)>& question) {
    if (identity() == nullptr) return false;
    const SharedListLock lock(OnTimeout::skip);
    const auto* record = lock ? mediaPages().find(page_.document.id) : nullptr;
    return record != nullptr && question(record->media);
}

void BrowserPage::change(const std::function<void(OfferedMedia&)>& change) {
    if (identity() == nullptr) return;
    findWindows();
    const SharedListLock lock(OnTimeout::skip);
    if (!lock || state_ != State::known) return;
    change(mediaPages().open(page_).media);
    changed_ = true;
}

void BrowserPage::forget(const DocumentKey& document) noexcept {
    if (document.names(page_.document.object, page_.document.id)) state_ = State::none;
}

void BrowserPage::findWindows() {
    if (windowsKnown_) return;
    windowsKnown_ = true;
    const auto helper = service<iZABHelper5>();
    if (!helper) return;
    page_.browserWindow = browserWindowOf(*helper.get(), document_.get());
    page_.controller = page_.browserWindow == 0 ? 0 : mediaDisplay().controllerOf(page_.browserWindow);
}

bool BrowserPage::open(const MediaEntry& first) {
    examined_.pageUrl = identity_.url;
    examined_.referrer = identity_.referrer;
    examined_.userAgent = identity_.userAgent;
    examined_.description = first.description;
    examined_.document = document_.get();
    examined_.documentId = page_.document.id;
    const SharedListLock lock(OnTimeout::skip);
    if (!lock || state_ != State::known) return false;
    mediaPages().open(page_);
    noteExamined(std::move(examined_));
    return true;
}

void BrowserPage::take(std::vector<MediaEntry> entries, bool asMessages) {
    if (identity() == nullptr) return;
    // A run without entries may have told the page more about those that it has.
    if (entries.empty()) {
        if (changed_) mediaDisplay().mediaChanged(document_.get(), page_);
        return;
    }
    findWindows();
    // Those of the browser are as they are now; the request's serve where there are none.
    std::string cookies = cookiesOf(examined_.url);
    if (cookies.empty()) cookies = examined_.cookies;
    examined_.cookies = cookies;
    if (!open(entries.front())) return;
    bool shown = false;
    for (MediaEntry& entry : entries) {
        entry.page.cookies = cookies;
        auto owned = std::make_unique<MediaEntry>(std::move(entry));
        const bool byMessage = asMessages && page_.controller != 0;
        shown |= byMessage ? mediaDisplay().sendEntry(page_.controller, std::move(owned))
                           : fileEntry(std::move(owned));
    }
    if (shown && state_ == State::known) mediaDisplay().mediaChanged(document_.get(), page_);
}

}  // namespace zab
