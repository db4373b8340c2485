// The browser's content policy asks before it loads anything: a navigation can be taken here before there is a
// request, and the requests of a page's media and plug-ins are remembered for their responses.
//
// The browser asks for every image, so whatever is no page and no object costs one line to the debugger only.
#pragma once

#include <cstdint>
#include <string_view>

#include "page/document_id.h"

namespace zab {

/// Narrow texts as the browser has them, valid as long as the call.
struct PolicyQuestion {
    std::uint32_t type = 0;  // see intercept/load_types.h
    std::string_view url;
    std::string_view origin;  // the page that asks; empty: not known
    std::string_view mimeGuess;
    nsISupports* context = nullptr;  // compared, and asked for its document ID
    DocumentId document = 0;
    bool takesClicks = false;  // see PolicyFacts
};

/// kPolicyReject when the download manager has the load, else kPolicyAccept.
std::int32_t answerPolicy(const PolicyQuestion& question);

}  // namespace zab
