// The links behind the popup of the user's last selection.
//
// Set on the browser's main thread when the popup is made, read when a choice of it arrives; both under the
// shared-list lock.
#pragma once

#include <string>
#include <vector>

#include "page/document_id.h"
#include "page/platform.h"

namespace zab {

struct SelectedLinks {
    DocumentId document = 0;  // of the page in which they were selected
    std::string pageUrl;      // narrow
    /// The page controller of that page's top-level window, which transfers what is chosen. The popup itself
    /// was made with the process controller as its controller window: that is how a choice in it is told from
    /// one in the page's own menu.
    WindowHandle controller = 0;
    std::vector<std::string> links;  // UTF-8, in menu order
    WindowHandle popup = 0;          // the links count as long as it is open
};

SelectedLinks& selectedLinks() noexcept;

}  // namespace zab
