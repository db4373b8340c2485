#include "entry/documents.h"

#include "binding/interfaces/helpers.h"
#include "media/capture/media_capture.h"
#include "page/media_pages.h"
#include "page/module_state.h"
#include "page/request_lists.h"
#include "settings/shared_list_lock.h"
#include "ui/page_buttons.h"

namespace zab {
namespace {

struct DocumentList {
    void (*forget)(const DocumentKey& document);
    OnTimeout onTimeout;  // whether the list may be touched when the lock could not be had
};

/// One row per list that keeps something of a page.
constexpr DocumentList kDocumentLists[] = {
    {[](const DocumentKey& document) { pageButtons().forget(document); }, OnTimeout::goOn},
    {[](const DocumentKey& document) { forgetListeners(document); }, OnTimeout::goOn},
    {[](const DocumentKey& document) { mediaPages().forget(document); }, OnTimeout::skip},
    {[](const DocumentKey& document) { requestLists().forget(document); }, OnTimeout::skip},
};

bool refreshByHelper11() noexcept {
    const auto helper = service<iZABHelper11>();
    return helper && !failed(helper->Refresh());
}

}  // namespace

void forgetDocument(const DocumentKey& document) {
    {
        const SharedListLock lock(OnTimeout::goOn);
        for (const DocumentList& list : kDocumentLists)
            if (lock.held() || list.onTimeout == OnTimeout::goOn) list.forget(document);
    }
    pageButtons().settle();
}

void showSelectedDocument() {
    {
        const SharedListLock lock(OnTimeout::goOn);
        pageButtons().selectDocument(moduleState().selectedDocument);
    }
    pageButtons().settle();
}

void clearSelection() noexcept {
    moduleState().selectedTabHelper.reset();
    moduleState().selectedDocument = 0;
}

bool refreshSelectedTab() noexcept {
    if (refreshByHelper11()) return true;
    const auto helper = service<iZABHelper>();
    if (!helper) return false;
    nsISupports* tab = nullptr;
    if (failed(helper->GetSelectedTab(&tab))) return false;
    moduleState().selectedTabHelper.reset(tab);
    return true;
}

}  // namespace zab
