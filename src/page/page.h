// The page that a load belongs to, as the extension tells it.
#pragma once

#include <string>

#include "binding/interface_ptr.h"
#include "binding/interfaces/helpers.h"
#include "page/document_id.h"
#include "page/platform.h"

namespace zab {

/// Narrow texts; a title that does not fit the ANSI code page is UTF-8. All empty for a load without a page.
struct Page {
    InterfacePtr<nsISupports> document;
    std::string url;
    std::string title;
    std::string titleUtf8;
};

Page pageOf(iZABHelper5& helper, nsISupports* channel);
Page pageOfDocument(iZABHelper5& helper, InterfacePtr<nsISupports> document);

/// The top-level browser window that shows a document: as the extension tells it, else as the document's own
/// window does; 0: neither.
WindowHandle browserWindowOf(iZABHelper5& helper, nsISupports* document) noexcept;

}  // namespace zab
