// What the site answers to one request: pure, so that the server and the list of expectations cannot disagree.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "resources.h"

namespace zab::site {

struct Visit {
    std::function<std::string(const char* name)> header;  // of the request, as it came; empty without one
    std::string_view formBody = {};
};

struct Reply {
    int status = 200;
    std::string body;  // before any Content-Encoding
};

Reply replyTo(const Resource& resource, const Visit& visit);

/// Addresses of this site in a text: "{site}" and "{media}" stand for the origins of its two names.
std::string withOrigins(std::string_view text, std::string_view port);

/// 64 lower-case hexadecimal digits.
std::string sha256Of(std::string_view bytes);

/// One gzip member (RFC 1952).
std::string gzipOf(std::string_view bytes);

}  // namespace zab::site
