// The body of a POST request, read from the channel's upload stream without taking it away from the browser.
//
// Bodies of more than 50,000 bytes are never read, and neither is a stream that cannot be wound back: the
// browser would send what is left of it. Every call of the browser that fails ends the capture quietly with
// what is known so far.
#pragma once

#include <string>
#include <string_view>

#include "binding/interfaces/helpers.h"

namespace zab {

struct CapturedPost {
    std::string body;          // bytes behind the stream's own header block, or the whole stream without one
    std::string contentType;   // value of the Content-Type line of that block, whole; empty without one
    bool unavailable = false;  // there is a body, but it was not captured
};

/// While a response is examined: a stream that was sent already is wound back before it is read, and is left
/// where reading ends.
CapturedPost CapturePostBodyForResponse(iZABHelper5& helper, nsISupports* channel);

/// Before a request is sent: the stream is wound back behind reading, so that the browser can still send it.
/// `url` is the request's: a body for the storage host that cannot be read counts as unavailable.
CapturedPost CapturePostBodyForRequest(iZABHelper5& helper, nsISupports* channel, std::string_view url);

}  // namespace zab
