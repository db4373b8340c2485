// The page of one response, as its extension tells it, and its place in the list of pages.
//
// Main thread only; the shared-list lock is taken for each look at the list, and at no other time.
#pragma once

#include <vector>

#include "binding/interface_ptr.h"
#include "media/capture/capture_run.h"
#include "media/capture/media_capture.h"
#include "page/media_pages.h"
#include "page/object_requests.h"

namespace zab {

class BrowserPage final : public CapturePage {
  public:
    /// The document of a load inside a page is known now; a top-level load becomes a page only later, and is
    /// asked for it when an entry first needs it.
    explicit BrowserPage(const KeptResponse& response);

    const EntryPage* identity() override;
    bool ask(const std::function<bool(const OfferedMedia&)>& question) override;
    void change(const std::function<void(OfferedMedia&)>& change) override;

    /// The page went away, when it is this one: there is none from now on.
    void forget(const DocumentKey& document) noexcept;

    /// Files the entries of a run, and tells the page's button when it may show one of them. `asMessages`:
    /// through the window of the page's panel controller, when it has one.
    void take(std::vector<MediaEntry> entries, bool asMessages);

  private:
    enum class State : std::uint8_t { toBeAsked, documentKnown, known, none };

    void findDocument();
    void readIdentity();
    void findWindows();
    /// Makes sure that the list has this page, and that the response counts as examined; false when the lists
    /// cannot be had.
    bool open(const MediaEntry& first);

    State state_ = State::toBeAsked;
    InterfacePtr<nsISupports> channel_;  // while the document is to be asked for
    InterfacePtr<nsISupports> document_;
    OpenPage page_;
    bool windowsKnown_ = false;
    bool changed_ = false;  // what is known of the page's media
    EntryPage identity_;
    OBJECTREQUESTSARRAY_ITEM examined_;  // the response
};

}  // namespace zab
