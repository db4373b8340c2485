// The logins that the browser used in this session, by origin: Basic credentials seen in its requests.
//
// Requests are seen on the browser's main thread, transfers may ask from others: every operation takes a lock
// of its own for its short while and hands out copies. Logins are secrets: they go to the download manager and
// nowhere else.
#pragma once

#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

#include "web/encoding.h"
#include "web/web_address.h"

namespace zab {

class CLSPasswordsArray {
  public:
    /// More origins than a session meets; beyond it the one that was learnt first goes.
    static constexpr std::size_t kMostOrigins = 500;

    /// The last login of an origin holds. An address without an origin is not kept.
    void remember(std::string_view url, BasicCredentials login);

    /// From the value of a request's Authorization header; another scheme than Basic leaves the list as it was.
    void rememberAuthorization(std::string_view url, std::string_view headerValue);

    /// The login of the origin of `url`.
    std::optional<BasicCredentials> find(std::string_view url) const;

  private:
    struct Entry {
        Origin origin;
        BasicCredentials login;
    };

    mutable std::mutex mutex_;
    std::vector<Entry> entries_;  // in the order in which their origins were first seen
};

/// The process-wide list.
CLSPasswordsArray& passwords();

}  // namespace zab
