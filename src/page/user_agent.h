// The user agent by which this browser presents itself, as its last request showed it: for transfers of which
// no request was seen.
//
// Requests are seen on the browser's main thread, transfers may ask from others: both operations may be called
// on any thread.
#pragma once

#include <string>
#include <string_view>

namespace zab {

/// An empty text changes nothing: some requests name none.
void noteUserAgent(std::string_view headerValue);

/// Empty as long as no request named one.
std::string lastUserAgent();

}  // namespace zab
