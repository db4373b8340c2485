#include "entry/page.h"

#include "binding/browser_string.h"
#include "binding/browser_text_win32.h"

namespace zab {

Page pageOf(iZABHelper5& helper, nsISupports* channel) {
    Page page;
    nsISupports* raw = nullptr;
    if (failed(helper.GetChannelDocument(channel, &raw)) || raw == nullptr) return page;
    page.document.reset(raw);
    NarrowContainer url;
    WideContainer title;
    if (!url.ready() || !title.ready()) return page;
    if (failed(helper.GetPageInfo(page.document.get(), url.get(), title.get()))) return page;
    page.url = url.view();
    page.title = narrowPreferringAnsi(title.view()).value_or("");
    return page;
}

}  // namespace zab
