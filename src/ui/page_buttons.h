// The buttons that pages have: one over their media, one for the links that the user selected.
//
// The interface through which the rest of the module reaches them. Nothing stands behind it yet: every
// operation does nothing, and no button appears.
#pragma once

#include <string_view>

#include "entry/document_key.h"
#include "media/capture/media_pages.h"

namespace zab {

class PageButtons {
  public:
    /// Shows the document's button and hides the others. Under the shared-list lock where it could be had.
    virtual void selectDocument(DocumentId document) = 0;
    /// Removes a document's button with its entries. Under the shared-list lock where it could be had.
    virtual void forget(const DocumentKey& document) = 0;
    /// The page has new entries, and its button may show them; makes the button when there is none. On the
    /// browser's main thread, not under the lock. `document` is the page's own.
    virtual void mediaChanged(nsISupports* document, const MediaPage& page) = 0;
    /// The user selected a part of a page that holds `links`, one per line.
    virtual void offerSelectedLinks(std::u16string_view links) = 0;

  protected:
    ~PageButtons() = default;
};

PageButtons& pageButtons() noexcept;

}  // namespace zab
