// Lists of servers that the user exempts: host patterns with "*", and the test of a URL against them.
//
// Narrow text. Entries are separated by space, tab and CR; letter case (ASCII) is ignored. A pattern is
// anchored at the start of the host only: "*.example.com" also lists "www.example.com.mirror.net", and "down*"
// lists every host that begins with "down". An entry without a star is one host, whole.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace zab {

/// Whether one pattern names `host`.
bool matchesHostPattern(std::string_view pattern, std::string_view host) noexcept;

/// One list, as it stood when the object was made.
class CExceptionServersList {
  public:
    CExceptionServersList() noexcept = default;  // lists nothing
    explicit CExceptionServersList(std::string list) noexcept : list_(std::move(list)) {}

    /// Whether the URL's host matches an entry. The host is what stands two characters behind the first ":", up
    /// to the next ":" or "/"; without it, or with more than 255 characters, a URL is never listed.
    [[nodiscard]] bool IsListed(std::string_view url) const noexcept;

    [[nodiscard]] const std::string& text() const noexcept { return list_; }

  private:
    std::string list_;
};

}  // namespace zab
