// Where the entries of a page go: the button and the panel, as far as the capture needs them.
//
// The user interface implements it. Main thread only, and never under the shared-list lock.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "binding/interfaces/supports.h"
#include "page/media_entry.h"
#include "page/media_pages.h"
#include "page/platform.h"

namespace zab {

enum class EntryFate {
    dropped,
    kept,   // for the commands; the page gets no button because of it
    shown,  // kept, and the page's button shows it
};

class MediaDisplay {
  public:
    /// By the user's settings as they stand now. `size` in bytes; 0: unknown. Any thread.
    virtual EntryFate fateOf(std::string_view pageUrl, std::string_view extension, std::uint64_t size) = 0;

    /// The window that speaks for the pages of a top-level browser window, made on first use; 0: there is none.
    virtual WindowHandle controllerOf(WindowHandle browserWindow) = 0;

    /// Has the controller's thread file an entry (see fileEntry) and waits for its answer; an entry that nobody
    /// receives is gone. True: the page's button may show it.
    virtual bool sendEntry(WindowHandle controller, std::unique_ptr<MediaEntry> entry) = 0;

    /// The page has new entries, and its button may show them. `document` is the page's own.
    virtual void mediaChanged(nsISupports* document, const OpenPage& page) = 0;

  protected:
    ~MediaDisplay() = default;
};

MediaDisplay& mediaDisplay() noexcept;

}  // namespace zab
