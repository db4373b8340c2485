// Plain HTTP for the stand-in browser: one request at a time, redirects left to the caller, no cookies or
// logins of its own.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "browser/world.h"

namespace zab::testbed {

/// An answer whose body is still to be read; given up when it goes.
class WebAnswer {
  public:
    ~WebAnswer();
    std::uint32_t status = 0;
    Headers headers;

    /// The whole body, as it was sent. Throws std::runtime_error.
    std::string body();

  private:
    friend std::unique_ptr<WebAnswer> fetch(const Request& request, std::string_view form,
                                            const std::string& server);
    void* connection_ = nullptr;
    void* request_ = nullptr;
};

/// Sends a request and waits for the answer's headers. `server` ("host:port") is asked in place of the one that
/// the address names, unless empty. Throws std::runtime_error.
std::unique_ptr<WebAnswer> fetch(const Request& request, std::string_view form, const std::string& server = {});

/// Lower-case hexadecimal digits.
std::string sha256Of(std::string_view bytes);

/// A redirect's target as a whole URL.
std::string resolved(const std::string& base, const std::string& location);

}  // namespace zab::testbed
