// The popup for the links that the user has selected by dragging over a page: a button at the cursor whose menu
// lists them.
#pragma once

#include <string_view>

#include "binding/interface_ptr.h"
#include "binding/interfaces/helpers.h"
#include "page/platform.h"

namespace zab {

/// Opens the popup over the page of `document` and gives its window, which the caller closes; 0: the user wants
/// none for these links, or there is no library. On the browser's main thread, not under the shared-list lock.
WindowHandle openLinkPopup(iZABHelper5& helper, const InterfacePtr<nsISupports>& document,
                           std::u16string_view lines);

}  // namespace zab
