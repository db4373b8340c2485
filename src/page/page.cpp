#include "page/page.h"

#include "binding/base_window.h"
#include "binding/browser_string.h"
#include "binding/browser_text_win32.h"
#include "binding/utf.h"

namespace zab {

Page pageOf(iZABHelper5& helper, nsISupports* channel) {
    nsISupports* document = nullptr;
    if (failed(helper.GetChannelDocument(channel, &document)) || document == nullptr) return {};
    return pageOfDocument(helper, InterfacePtr<nsISupports>(document));
}

Page pageOfDocument(iZABHelper5& helper, InterfacePtr<nsISupports> document) {
    Page page;
    page.document = std::move(document);
    NarrowContainer url;
    WideContainer title;
    if (!url.ready() || !title.ready()) return page;
    if (failed(helper.GetPageInfo(page.document.get(), url.get(), title.get()))) return page;
    page.url = url.view();
    page.title = narrowPreferringAnsi(title.view()).value_or("");
    page.titleUtf8 = utf8FromUtf16(title.view());
    return page;
}

WindowHandle browserWindowOf(iZABHelper5& helper, nsISupports* document) noexcept {
    std::uint32_t window = 0, tab = 0;
    std::uint64_t native = 0;
    if (!failed(helper.GetPageIdentity(document, &window, &tab, &native)) && native != 0)
        return static_cast<WindowHandle>(native);
    nsISupports* raw = nullptr;
    if (failed(helper.GetDocumentWindow(document, &raw))) return 0;
    const InterfacePtr<nsISupports> domWindow(raw);
    auto baseWindow = GetBaseWindow(domWindow.get());
    if (!baseWindow) baseWindow = GetBaseWindow(docShellOf(domWindow.get()).get());
    void* parent = nullptr;
    if (!baseWindow || failed(baseWindow->GetParentNativeWindow(&parent))) return 0;
    return reinterpret_cast<WindowHandle>(parent);
}

}  // namespace zab
