// The media of all open pages, by document.
//
// The browser's main thread adds and forgets, the panel's thread reads: every call is made under the
// shared-list lock, and what find() gives stays valid only as long as it is held. A document without an ID has
// no place here.
#pragma once

#include <cstddef>
#include <list>
#include <string>

#include "page/document_id.h"
#include "page/offered_media.h"
#include "page/platform.h"

namespace zab {

/// What is known of a page that has media. Plain values: any thread may copy it.
struct OpenPage {
    DocumentKey document;            // its object is compared, never called
    std::string url;                 // narrow, as the browser gives it
    WindowHandle browserWindow = 0;  // top-level; 0: the page gets no button and no panel
    WindowHandle controller = 0;     // the page controller of that window; 0: none
};

class MediaPages {
  public:
    /// More pages than a user has open; the oldest go first.
    static constexpr std::size_t kMostPages = 500;

    struct Record {
        OpenPage page;
        OfferedMedia media;
    };

    /// The page's record, made when there is none.
    Record& open(const OpenPage& page);
    /// The record of a document, or null.
    [[nodiscard]] Record* find(DocumentId document) noexcept;
    void forget(const DocumentKey& document) noexcept;
    [[nodiscard]] std::size_t count() const noexcept { return records_.size(); }

  private:
    std::list<Record> records_;
};

MediaPages& mediaPages() noexcept;

}  // namespace zab
