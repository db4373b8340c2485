// What becomes of a response that stays with the browser and is, or describes, media: its body is read, or it
// is an entry itself; entries go to their page.
//
// All of this happens on the browser's main thread. The lists of the pages are shared with the panel's thread:
// they are touched under the shared-list lock, which is held over no call of the browser and no call of another
// library. An entry whose page has no document ID, or has gone, is dropped.
#pragma once

#include <cstdint>
#include <memory>

#include "binding/interfaces/supports.h"
#include "intercept/decision.h"
#include "page/document_id.h"
#include "page/media_entry.h"

namespace zab {

struct KeptResponse {
    nsISupports* channel;
    const CapturedHeaders& headers;  // of request and response
    const Decision& decision;
    std::uint32_t loadFlags = 0;
};

/// Whether captureMedia() has anything to do: to be asked before the request's headers are visited for it.
bool isMediaOfPage(const Decision& decision, std::uint32_t loadFlags, std::string_view url) noexcept;

/// Attaches a listener to the response, or files what it offers by itself.
void captureMedia(const KeptResponse& response);

/// Puts an entry into the list of its page, when the panel gate lets it and the page is known there. True: the
/// page's button may show it.
bool fileEntry(std::unique_ptr<MediaEntry> entry);

/// Tells the listeners that a page went away: what they still find is dropped.
void forgetListeners(const DocumentKey& document) noexcept;

}  // namespace zab
