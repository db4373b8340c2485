// What the site answers to one request: pure, so that the server and the list of expectations cannot disagree.
#pragma once

#include <string>
#include <string_view>

#include "resources.h"

namespace zab::site {

/// The part of a request that a guard looks at; bytes as they came.
struct Visit {
    std::string_view host;  // as the Host header says it, with its port
    std::string_view cookie;
    std::string_view referer;
    std::string_view userAgent;
    std::string_view authorization;
    std::string_view formType;
    std::string_view formBody;
};

struct Reply {
    int status = 200;
    std::string body;  // before any Content-Encoding
};

Reply replyTo(const Resource& resource, const Visit& visit);

/// 64 lower-case hexadecimal digits.
std::string sha256Of(std::string_view bytes);

/// One gzip member (RFC 1952).
std::string gzipOf(std::string_view bytes);

}  // namespace zab::site
