// Which page is in front in each of the browser's top-level windows.
//
// The browser names the document that comes to the front, not its window. Where nothing tells that window it is
// guessed, and put right as soon as the page itself is seen somewhere. Plain values.
#pragma once

#include <map>
#include <optional>

#include "page/document_id.h"
#include "page/platform.h"

namespace zab {

class FrontPages {
  public:
    /// A document came to the front of a window; document 0: a tab without one. Window 0: somewhere.
    void select(DocumentId document, WindowHandle window, bool guessed);
    /// A page is seen in a window.
    void seen(DocumentId document, WindowHandle window);
    /// A page that gets its button: until a window is told its front page, the last of them is taken for it.
    void loading(DocumentId document, WindowHandle window);
    /// A document went away: no page is in front where it was, until the next selection.
    void ended(DocumentId document);
    /// Drops the windows that are not `open` (WindowHandle -> bool).
    template <class Open>
    void keepWindows(Open open) {
        std::erase_if(fronts_, [&](const auto& row) { return !open(row.first); });
        std::erase_if(loading_, [&](const auto& row) { return !open(row.first); });
    }

    [[nodiscard]] bool isFront(DocumentId document, WindowHandle window) const;

  private:
    struct Front {
        DocumentId document = 0;                // 0: none
        bool guessed = false;                   // that it is this window
        std::optional<DocumentId> before = {};  // what stood here before the guess
    };

    void leaveOthers(DocumentId document, WindowHandle window);

    std::map<WindowHandle, Front> fronts_;
    std::map<WindowHandle, DocumentId> loading_;
    std::optional<DocumentId> somewhere_;  // selected, in a window that could not even be guessed
};

}  // namespace zab
