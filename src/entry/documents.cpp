#include "entry/documents.h"

#include "media/capture/media_capture.h"
#include "page/documents.h"
#include "page/media_pages.h"
#include "page/module_state.h"
#include "page/request_lists.h"
#include "settings/shared_list_lock.h"
#include "ui/page_buttons.h"

namespace zab {
namespace {

/// One row per list that keeps something of a page.
constexpr DocumentList kDocumentLists[] = {
    {[](const DocumentKey& document) { pageButtons().forget(document); }, OnTimeout::goOn},
    {[](const DocumentKey& document) { forgetListeners(document); }, OnTimeout::goOn},
    {[](const DocumentKey& document) { mediaPages().forget(document); }, OnTimeout::skip},
    {[](const DocumentKey& document) { requestLists().forget(document); }, OnTimeout::skip},
};

}  // namespace

std::span<const DocumentList> documentLists() noexcept { return kDocumentLists; }

void settleDocumentLists() { pageButtons().settle(); }

void showSelectedDocument() {
    {
        const SharedListLock lock(OnTimeout::goOn);
        pageButtons().selectDocument(moduleState().selectedDocument);
    }
    pageButtons().settle();
}

}  // namespace zab
