// A channel of the browser, read and steered through the extension's helper: its operations take the channel as
// their first argument.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "binding/interface_ptr.h"
#include "binding/interfaces/helpers.h"

namespace zab {

class Channel {
  public:
    /// Holds the channel, which the browser may let go while a call into another process dispatches its
    /// messages; the helper is the caller's, who holds it.
    Channel(iZABHelper5& helper, nsISupports* channel) noexcept
        : helper_(helper), channel_(referenceTo(channel)) {}

    [[nodiscard]] iZABHelper5& helper() const noexcept { return helper_; }
    [[nodiscard]] nsISupports* get() const noexcept { return channel_.get(); }

    /// Writes the URL as it stands; `url` keeps its memory.
    nsresult readUrl(std::string& url) const;
    nsresult readStatus(std::uint32_t& status) const noexcept;
    /// 0 when the helper cannot tell.
    [[nodiscard]] std::uint32_t loadFlags() const noexcept;
    [[nodiscard]] std::optional<std::string> responseHeader(std::string_view name) const;
    bool setResponseHeader(std::string_view name, std::string_view value) const noexcept;
    /// Ends the browser's own load; false when it goes on.
    bool cancel() const noexcept;

  private:
    iZABHelper5& helper_;
    InterfacePtr<nsISupports> channel_;
};

}  // namespace zab
