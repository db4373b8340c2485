// The buttons that pages have over their media: in each top-level window that of the page in front is seen.
//
// The list of buttons is changed under the shared-list lock; everything that a change asks of the browser, the
// button library or a window waits for settle(), because none of those may be called under it. All of it on the
// browser's main thread.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "binding/pointer_array.h"
#include "page/document_id.h"
#include "ui/front_pages.h"
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

    /// The document came to the front of its window; 0: a tab without a document did.
    void selectDocument(DocumentId document) noexcept { selected_ = document; }
    /// Takes a document's button out of the list.
    void forget(const DocumentKey& document);
    void forgetAll();

    // Not under the lock.

    /// Shows, hides, moves and closes what the changes of the list have asked for.
    void settle();
    /// The page has new entries, and its button may show them; makes the button when there is none. `document`
    /// is the page's own.
    void mediaChanged(nsISupports* document, const OpenPage& page);
    /// Of the windows that are still there: their buttons that are not were closed by the user.
    void noteClosed() noexcept;

  private:
    using Buttons = std::vector<std::shared_ptr<CDownloadMediaBtn>>;

    [[nodiscard]] Buttons all() const { return {buttons_.begin(), buttons_.end()}; }
    bool add(const std::shared_ptr<CDownloadMediaBtn>& button);
    void bringToFront(IZABButtonManager* manager, DocumentId document);
    /// The page is in this window now.
    void move(IZABButtonManager& manager, CDownloadMediaBtn& button, WindowHandle window);

    CDownloadButtonsArray buttons_;
    Buttons leaving_;  // out of the list, still to be closed
    FrontPages fronts_;
    std::optional<DocumentId> selected_;  // told, and not yet brought to the front
    WindowHandle lastWindow_ = 0;         // of the last selection
};

PageButtons& pageButtons();

/// The browser shuts down: closes all buttons and ends the button library's manager. On the browser's main
/// thread.
void endButtons();

}  // namespace zab
