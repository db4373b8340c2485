// Host names with letters outside ASCII, as they travel: in "xn--" labels (RFC 5891).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zab {

/// `host` (UTF-8) in ASCII; nothing when Windows refuses it or cannot tell.
std::optional<std::string> asciiHostOf(std::string_view host);

}  // namespace zab
