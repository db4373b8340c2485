#include "page/documents.h"

#include "binding/interfaces/helpers.h"
#include "page/module_state.h"

namespace zab {
namespace {

bool refreshByHelper11() noexcept {
    const auto helper = service<iZABHelper11>();
    return helper && !failed(helper->Refresh());
}

}  // namespace

void forgetDocument(const DocumentKey& document) {
    {
        const SharedListLock lock(OnTimeout::goOn);
        for (const DocumentList& list : documentLists())
            if (lock.held() || list.onTimeout == OnTimeout::goOn) list.forget(document);
    }
    settleDocumentLists();
}

void clearSelection() {
    moduleState().selectedTabHelper.reset();
    moduleState().selectedDocument = 0;
}

bool refreshSelectedTab() {
    if (refreshByHelper11()) return true;
    const auto helper = service<iZABHelper>();
    if (!helper) return false;
    nsISupports* tab = nullptr;
    if (failed(helper->GetSelectedTab(&tab))) return false;
    moduleState().selectedTabHelper.reset(tab);
    return true;
}

}  // namespace zab
