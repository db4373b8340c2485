// What the loopback site holds: one row per resource, found by the target of its request line; and what it
// answers to a request: pure, so that the server and the list of expectations cannot disagree.
//
// Bodies are made from the target alone, so every run, on every machine, serves the same bytes under the same
// hash. Texts are bytes as they go over the wire (a header may hold raw UTF-8 or Latin-1 on purpose).
#pragma once

#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace zab::site {

/// What a request must bring before it gets the real body. Who brings less gets a short text under the same
/// headers, so that a lost cookie, referrer or form shows as a wrong file and not as a failed request.
enum class Guard { none, session, basic, form, viewer };

struct Resource {
    std::string_view target;  // path and query
    std::string_view type;    // Content-Type, whole; empty for none
    std::string_view disposition = {};
    std::size_t size = 4000;     // bytes of the generated body, when `text` is empty
    std::string_view text = {};  // with the marks of withOrigins()
    Guard guard = Guard::none;
    int status = 200;
    std::string_view location = {};  // of a redirect: a target of this site, or a whole URL of another scheme
    bool gzip = false;               // sent with Content-Encoding gzip to whom accepts it
};

inline constexpr std::string_view kSessionCookie = "session=7f3a90c2";
inline constexpr std::string_view kSessionPage = "/session/";  // sets the cookie
inline constexpr std::string_view kSiteHost = "127.0.0.1";
/// The other name of the site. It knows its visitor by a cookie of its own, and none may come with that of the
/// session.
inline constexpr std::string_view kMediaHost = "localhost";
inline constexpr std::string_view kViewerCookie = "viewer=51c8e04d";
inline constexpr std::string_view kUserAgent =
    "Mozilla/5.0 (Windows NT 10.0; Win64; x64; rv:52.0) Gecko/20100101 Firefox/52.0";
inline constexpr std::string_view kBasicAuthorization =
    "Basic dmlzaXRvcjpvcGVuOnNlc2FtZQ==";  // visitor, open:sesame
inline constexpr std::string_view kFormType = "application/x-www-form-urlencoded";

/// The row of a request target, or null.
const Resource* findResource(std::string_view target) noexcept;

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

/// One gzip member (RFC 1952).
std::string gzipOf(std::string_view bytes);

// What a browser asks of the site, and what must come of it: one row per exchange, in the order that they are
// made. The expectations hold under the settings that stand there too. As JSON, the list is what the stand-in
// browser reads (testbed/demo/exchange_list.md); each exchange carries an "expected" array with one object per
// hop.

/// {"settings": {name: value}, "cookies": [...], "exchanges": [...],
/// "offers": [...]}. Each "expected" object holds `url`, `outcome`
/// ("browser", "transfer" or "cancel"), `flags` (of the transfer), `fileName` (as the download manager is told
/// it), `file` (fingerprint of what the download manager must get; "" where nothing can be fetched), `lacks`
/// (what that file is made without, because no transfer can carry it; "" for nothing), `browserFile` (of what
/// the browser reads; "" when it reads no body), `shown` (whether its page is shown, and may be held by the
/// module for its button) and `why`.
nlohmann::json exchangeList(int port);

/// The page at "/": a link to everything that a click can reach.
std::string startPage();

}  // namespace zab::site
