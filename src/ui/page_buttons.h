// The buttons that pages have over their media.
//
// The list of buttons is changed under the shared-list lock; everything that a change asks of the browser, the
// button library or a window waits for settle(), because none of those may be called under it. All of it on the
// browser's main thread.
#pragma once

#include <memory>
#include <vector>

#include "binding/pointer_array.h"
#include "page/document_id.h"
#include "ui/media_button.h"

namespace zab {

/// One button for each page that has media.
class CDownloadButtonsArray : public GrowingArray<std::shared_ptr<CDownloadMediaBtn>, 5> {
  public:
    [[nodiscard]] std::shared_ptr<CDownloadMediaBtn> find(const DocumentKey& document) const;
};

class PageButtons {
  public:
    // Under the shared-list lock where it could be had; settle() follows.

    /// The document's button is to be seen, the others are not.
    void selectDocument(DocumentId document) noexcept;
    /// Takes a document's button out of the list.
    void forget(const DocumentKey& document);
    void forgetAll();

    // Not under the lock.

    /// Shows, hides and closes what the changes of the list have asked for.
    void settle();
    /// The page has new entries, and its button may show them; makes the button when there is none. `document`
    /// is the page's own.
    void mediaChanged(nsISupports* document, const OpenPage& page);

  private:
    bool add(const std::shared_ptr<CDownloadMediaBtn>& button);

    CDownloadButtonsArray buttons_;
    std::vector<std::shared_ptr<CDownloadMediaBtn>> leaving_;  // out of the list, still to be closed
};

PageButtons& pageButtons();

/// The browser shuts down: closes all buttons and ends the button library's manager. On the browser's main
/// thread.
void endButtons();

}  // namespace zab
