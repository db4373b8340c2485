#include "entry/documents.h"

#include "media/capture/media_capture.h"
#include "page/documents.h"
#include "page/media_pages.h"
#include "page/request_lists.h"
#include "settings/shared_list_lock.h"
#include "ui/link_popup.h"
#include "ui/page_buttons.h"

namespace zab {
namespace {

/// One row per list that keeps something of a page.
constexpr DocumentList kDocumentLists[] = {
    {[](const DocumentKey& document) { forgetLinkPopup(document); }, OnTimeout::goOn},
    {[](const DocumentKey& document) { pageButtons().forget(document); }, OnTimeout::goOn},
    {[](const DocumentKey& document) { forgetListeners(document); }, OnTimeout::goOn},
    {[](const DocumentKey& document) { mediaPages().forget(document); }, OnTimeout::skip},
    {[](const DocumentKey& document) { requestLists().forget(document); }, OnTimeout::skip},
};

}  // namespace

std::span<const DocumentList> documentLists() noexcept { return kDocumentLists; }

void settleDocumentLists() {
    settleLinkPopup();
    pageButtons().settle();
}

void showDocument(DocumentId document) {
    {
        const SharedListLock lock(OnTimeout::goOn);
        pageButtons().selectDocument(document);
    }
    pageButtons().settle();
}

}  // namespace zab
