// Which navigations the download manager was asked to take already, so that none is handed over twice, and one
// that it could not be told of is not tried again.
//
// One navigation passes several hooks: the content policy knows its address only; the request, and the response
// in its three forms, know its channel. What the policy tried is matched by address, once, by the next
// top-level load that starts soon after; from then on, and for what is tried later, the channel says which
// navigation it is. A redirect leads to another channel, which is matched like that too. Whatever starts anew
// (the policy asked again, another request) is another navigation and is tried again.
//
// For the browser's main thread. Channels are compared, never called.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class nsISupports;

namespace zab {

class HandedOver {
  public:
    using Time = std::chrono::steady_clock::time_point;

    /// What was tried without a channel goes on as a request within this time.
    static constexpr std::chrono::seconds kPatience{5};
    /// More than are ever under way, in number and in bytes of their addresses; beyond either the oldest are
    /// forgotten. The newest always stays: the browser's own limit for one address is 1 MiB.
    static constexpr std::size_t kMost = 64;
    static constexpr std::size_t kMostBytes = 1 << 20;

    /// The policy is asked about a load of `url`: a new navigation, whatever was before. Empty: it could not be
    /// read, so it may be any.
    void policyAsked(std::string_view url) noexcept;

    /// A channel is new, whatever stood at its address before. To be called before anything about it can fail.
    void channelStarts(const nsISupports* channel) noexcept;
    enum class State : std::uint8_t {
        notYet,
        underWay,  // the call into the download manager, which may bring the next notification, has not ended
        made,
        failed,  // the user is told: the browser keeps it
    };
    /// A top-level document load starts, and `channel` stands for it from now on; gives what was tried before.
    [[nodiscard]] State loadStarts(const nsISupports* channel, std::string_view url, Time now) noexcept;

    /// A navigation that failed goes on as a load of `location`.
    void redirected(const nsISupports* channel, std::string_view url, std::string_view location, Time now);

    /// The request or its response is being handed over, or, with a null channel, what the policy was asked
    /// about. All memory is taken here: ends() says how it went, when nothing may fail any more.
    void begins(const nsISupports* channel, std::string_view url);
    void ends(const nsISupports* channel, std::string_view url, bool made, Time now) noexcept;
    [[nodiscard]] State stateOf(const nsISupports* channel, std::string_view url) noexcept;

  private:
    struct Navigation {
        const nsISupports* channel;  // null: no request of it was seen yet
        std::string url;             // without its fragment
        Time at;                     // since when it is without a channel
        State state;
    };
    using Navigations = std::vector<Navigation>;  // oldest first; takes no memory while it is empty

    void add(Navigation navigation);
    [[nodiscard]] Navigations::iterator find(const nsISupports* channel, std::string_view url) noexcept;

    Navigations navigations_;
};

/// The process-wide record.
HandedOver& handedOver() noexcept;

}  // namespace zab
