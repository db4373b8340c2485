// The browser's content policy asks before it loads anything: a navigation can be taken here before there is a
// request, and the requests of a page's media and plug-ins are remembered for their responses.
//
// The browser asks for every image: what is no page and no object asks nobody, takes no memory and reads no
// setting.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "page/document_id.h"

namespace zab {

/// Narrow texts as the browser has them, valid as long as the call.
struct PolicyQuestion {
    std::uint32_t type = 0;  // see intercept/load_types.h
    std::string_view url;
    std::string_view origin;  // the page that asks; empty: not known
    std::string_view mimeGuess;
    nsISupports* context = nullptr;      // compared
    std::optional<DocumentId> document;  // absent: the context is asked, when it is needed
    bool takesClicks = false;            // see PolicyFacts
};

/// kPolicyReject when the download manager has the load, else kPolicyAccept.
std::int32_t answerPolicy(const PolicyQuestion& question);

}  // namespace zab
