// The two object-request lists of the process: what was requested, and what was examined as media and is still
// on a live page. Whoever touches them holds the shared-list lock.
#pragma once

#include <string_view>

#include "page/document_id.h"
#include "page/object_requests.h"

namespace zab {

struct RequestLists {
    CObjectRequestsArray requested;
    CObjectRequestsArray examined;

    /// A redirected request goes on under its new URL.
    void rename(std::string_view from, std::string_view to);
    void forget(const DocumentKey& document) noexcept;
};

RequestLists& requestLists();

}  // namespace zab
