// The popup for the links that the user has selected by dragging over a page: a button at the cursor whose menu
// lists them. One at a time.
//
// All of it on the browser's main thread, and not under the shared-list lock unless said otherwise.
#pragma once

#include <string_view>

#include "binding/interface_ptr.h"
#include "binding/interfaces/helpers.h"
#include "page/document_id.h"

namespace zab {

/// Opens the popup over the page of `document`, unless the user wants none for these links or there is no
/// library.
void openLinkPopup(iZABHelper5& helper, const InterfacePtr<nsISupports>& document, std::u16string_view lines);

/// Closes it, if it is open; its links are forgotten.
void closeLinkPopup() noexcept;

/// Its page goes: its links are forgotten, and settleLinkPopup() closes it. Under the shared-list lock where it
/// could be had.
void forgetLinkPopup(const DocumentKey& document);
void settleLinkPopup() noexcept;

}  // namespace zab
