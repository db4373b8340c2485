#include "exchanges.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <stdexcept>

#include "content.h"
#include "media.h"

namespace zab::site {
namespace {

// The browser's own request to this address ends a redirect that was taken over.
constexpr std::string_view kSentinel = "http://www.mozilla.org/thisrequestistransferredtozab.stop";
constexpr std::string_view kExceptedHost = kMediaHost;
constexpr std::string_view kCaughtHost = "127.0.0.1";
constexpr std::string_view kForm = "name=A+visitor&kind=zip&note=%E2%82%AC";
constexpr std::size_t kOversizedForm = 50001;

enum class Outcome { browser, transfer, cancel };
enum class Load { top, frame, embedded };
enum class Sends { plain, session, basic, form, oversizedForm, range, acceptsGzip };

// Transfer flags, as the download manager reads them.
constexpr std::uint32_t kOrdinary = 8, kNamed = 0x1008, kEarly = 0x804, kWithoutBody = 0x1000008;

struct Exchange {
    std::string_view target;  // of the site; or a whole URL that is only followed
    Outcome outcome;
    std::string_view why;
    std::uint32_t flags = 0;
    std::string_view fileName = {};
    Load load = Load::top;
    Sends sends = Sends::plain;
    std::string_view key = {};  // held during the exchange
    std::string_view host = kCaughtHost;
    std::string_view closes = {};  // what the user closes before the answer: "tab" or "window", with its page
    bool followed = false;         // no request of its own: the redirect of the row before leads here
};

constexpr Exchange stays(std::string_view target, std::string_view why, Load load = Load::top) {
    return {.target = target, .outcome = Outcome::browser, .why = why, .load = load};
}
constexpr Exchange taken(std::string_view target, std::string_view why, Load load = Load::top) {
    return {.target = target, .outcome = Outcome::transfer, .why = why, .flags = kOrdinary, .load = load};
}
constexpr Exchange named(std::string_view target, std::string_view fileName, std::string_view why) {
    return {.target = target, .outcome = Outcome::transfer, .why = why, .flags = kNamed, .fileName = fileName};
}
constexpr Exchange followed(Exchange row) {
    row.followed = true;
    return row;
}
constexpr Exchange sending(Sends sends, Exchange row) {
    row.sends = sends;
    return row;
}
constexpr Exchange closing(std::string_view what, Exchange row) {
    row.closes = what;
    return row;
}
constexpr Exchange holding(std::string_view key, Exchange row) {
    row.key = key;
    return row;
}

// UTF-8 names travel as narrow text of the ANSI code page (1252), so each of their bytes arrives as one
// character.
constexpr std::string_view kEncodedWordName = "utf-8''\u00c3\u0153ber.zip";          // Über.zip
constexpr std::string_view kRawUtf8Name = "utf-8''Gr\u00c3\u00b6\u00c3\u0178e.zip";  // Größe.zip

constexpr Exchange kExchanges[] = {
    stays("/", "a page"),
    stays("/page/style.css", "a style", Load::embedded),
    stays("/page/script.js", "a script", Load::embedded),
    stays("/page/image.gif", "an image", Load::embedded),
    stays("/page/image.gif?name=photo.zip", "an image with an archive's name in its query", Load::embedded),
    stays("/page/clip.mp4", "a video inside a page", Load::embedded),
    stays("/page/frame.html", "a page in a frame", Load::frame),

    taken("/files/archive.zip", "a link to an archive"),
    taken("/files/UPPER.ZIP", "an extension in upper case"),
    taken("/files/setup.exe", "a link to a program"),
    stays("/files/archive.zip", "an archive that a script fetches for its page", Load::embedded),
    {.target = "/files/archive.zip",
     .outcome = Outcome::browser,
     .why = "an excepted server",
     .host = kExceptedHost},
    stays("/files/disc.iso", "an extension that is not in the list"),
    stays("/files/missing.zip", "nothing there"),
    holding("alt", stays("/files/archive.zip", "the prevent key is held")),
    holding("ctrl", {.target = "/files/disc.iso",
                     .outcome = Outcome::transfer,
                     .why = "the force key is held",
                     .flags = kEarly}),

    sending(Sends::session, stays(kSessionPage, "the page that sets the session's cookie")),
    sending(Sends::session, taken("/session/archive.zip", "needs cookie, referrer and user agent")),
    sending(Sends::session, stays("/session/moved", "the same behind a redirect")),
    followed(
        sending(Sends::session, taken("/session/archive.zip?moved", "the redirect keeps cookie and referrer"))),
    stays("/private/archive.zip", "credentials are asked for"),
    sending(Sends::basic, taken("/private/archive.zip", "needs Basic credentials")),
    sending(Sends::form, named("/form/archive.php", "form.zip", "the answer to a form")),
    sending(Sends::oversizedForm, {.target = "/form/archive.php",
                                   .outcome = Outcome::transfer,
                                   .why = "the form is too large to be captured; nothing can repeat it",
                                   .flags = kWithoutBody,
                                   .fileName = "form.zip"}),
    sending(Sends::form, stays("/form/result.php", "a page in answer to a form")),

    stays("/moved/301", "moved permanently"),
    followed(taken("/moved/here.zip?301", "where 301 leads")),
    stays("/moved/302", "found elsewhere"),
    followed(taken("/moved/here.zip?302", "where 302 leads")),
    stays("/moved/303", "see other"),
    followed(taken("/moved/here.zip?303", "where 303 leads")),
    stays("/moved/307", "moved for now"),
    followed(taken("/moved/here.zip?307", "where 307 leads")),
    {.target = "/moved/ftp",
     .outcome = Outcome::transfer,
     .why = "a redirect to an FTP archive",
     .flags = kEarly},
    {.target = kSentinel, .outcome = Outcome::cancel, .why = "the browser's side of it ends", .followed = true},
    stays("/moved/ftp-text", "a redirect to an FTP file that is not in the list"),
    followed(stays("ftp://127.0.0.1/pub/readme.txt", "where it leads")),

    named("/attach/quoted", "a b.zip", "quoted name"),
    named("/attach/unquoted", "plain.zip", "unquoted name"),
    named("/attach/parameters", "first.zip", "a name before further parameters"),
    named("/attach/encoded-word", kEncodedWordName, "RFC 2047 encoded word"),
    named("/attach/utf-8", kRawUtf8Name, "raw UTF-8"),
    named("/attach/latin-1", "Gr\u00f6\u00dfe.zip", "raw Latin-1"),
    named("/attach/extended", "UTF-8''%C3%9Cber%20uns.zip", "RFC 5987 extended parameter"),
    named("/attach/upper-case", "upper.zip", "the parameter's name in upper case"),
    named("/attach/inline", "inline.zip", "inline, but named as an archive"),
    stays("/attach/unclosed", "an unclosed quote names nothing, and the URL has no extension"),
    taken("/attach/unclosed.zip", "an unclosed quote, but the URL has an extension"),
    stays("/attach/notes", "an attachment that is not in the list"),
    {.target = "/attach/type-name",
     .outcome = Outcome::transfer,
     .why = "named by its Content-Type",
     .flags = kOrdinary,
     .fileName = "named.zip"},

    taken("/get/archive.zip?attachment", "an unnamed attachment; the URL before the query decides",
          Load::embedded),
    taken("/get/archive.zip?octets", "a generic type", Load::embedded),
    taken("/get/archive.zip?class", "a type that equals the extension", Load::embedded),
    stays("/get/archive.zip?other-class", "a type that contradicts the extension", Load::embedded),
    taken("/get/archive.zip?text", "plain text of 256,001 bytes", Load::embedded),
    stays("/get/archive.zip?short-text", "plain text of 256,000 bytes", Load::embedded),
    taken("/get/archive.zip?unnamed", "a click, whatever the type"),
    stays("/get/file.php?x=1", "a page made by a program"),
    stays("/get/file.php?x=2", "an attachment that only a program's name describes"),
    named("/get/file.php?x=3", "made.zip", "a program that names its file"),

    taken("/parts/file.rar.001", "a numbered part"),
    stays("/parts/file.rar.0001", "four digits number no part"),
    named("/parts/volume", "volume.rar.02", "a numbered part by name"),

    sending(Sends::acceptsGzip,
            taken("/gzip/archive.zip", "compressed on its way: the length is not the file's")),
    sending(Sends::acceptsGzip, stays("/gzip/page.html", "a page, compressed on its way")),
    closing("tab", taken("/files/archive.zip", "a click, then its tab is closed before the answer")),
    closing("tab", stays("/page/clip.mp4", "a video whose page goes before the answer", Load::embedded)),
    closing("window", taken("/files/archive.zip", "a click, then its window is closed")),
    closing("window", stays("/page/frame.html", "a frame whose window is closed", Load::frame)),

    sending(Sends::range, taken("/range/archive.zip", "206: the browser has a part, the manager fetches all")),
};

constexpr bool isOfSite(const Exchange& row) { return row.target.front() == '/'; }

// --- The request of a row
// ------------------------------------------------------------------------------------------

struct Origin {
    std::string host;  // with its port
    explicit Origin(const Exchange& row, int port) : host(std::string(row.host) + ":" + std::to_string(port)) {}
    std::string url(std::string_view target) const { return "http://" + host + std::string(target); }
};

// The site's HTTP library refuses URL-encoded forms of this size, so the large one goes as text.
std::string_view formTypeOf(Sends sends) { return sends == Sends::oversizedForm ? "text/plain" : kFormType; }

std::string formOf(Sends sends) {
    if (sends == Sends::form) return std::string(kForm);
    if (sends == Sends::oversizedForm) return "note=" + std::string(kOversizedForm - 5, 'x');
    return {};
}

nlohmann::json headersOf(const Exchange& row, const Origin& origin) {
    nlohmann::json headers{{"User-Agent", kUserAgent},
                           {"Referer", origin.url(row.sends == Sends::session ? kSessionPage : "/")}};
    if (row.sends == Sends::session) headers["Cookie"] = "theme=dark; " + std::string(kSessionCookie);
    if (row.sends == Sends::basic) headers["Authorization"] = kBasicAuthorization;
    if (row.sends == Sends::range) headers["Range"] = "bytes=1000-";
    if (row.sends == Sends::acceptsGzip) headers["Accept-Encoding"] = "gzip";
    return headers;
}

nlohmann::json requestOf(const Exchange& row, const Origin& origin) {
    constexpr std::string_view kLoads[] = {"top", "document", "embedded"};
    nlohmann::json request{{"name", std::to_string(&row - kExchanges) + " " + std::string(row.target)},
                           {"url", origin.url(row.target)},
                           {"headers", headersOf(row, origin)},
                           {"load", kLoads[static_cast<std::size_t>(row.load)]},
                           {"expected", nlohmann::json::array()}};
    if (const std::string form = formOf(row.sends); !form.empty()) {
        request["body"] = form;
        request["bodyType"] = formTypeOf(row.sends);
    }
    // A page that goes away is one of its own: the others go on without it.
    const auto pageId = row.closes.empty() ? 1 : 1000 + (&row - kExchanges);
    if (row.load != Load::top || !row.closes.empty())
        request["page"] = {{"id", pageId}, {"url", origin.url("/")}, {"title", "The test site"}};
    if (!row.closes.empty()) request["closes"] = row.closes;
    if (!row.key.empty()) request["key"] = row.key;
    return request;
}

const Resource& resourceOf(const Exchange& row) {
    if (const Resource* resource = findResource(row.target)) return *resource;
    throw std::logic_error("the site does not hold " + std::string(row.target));
}

// --- What must come of it
// --------------------------------------------------------------------------------------------

std::string bodyOf(const Exchange& row, const Origin& origin, std::string_view form) {
    nlohmann::json headers = headersOf(row, origin);
    headers["Host"] = origin.host;
    headers["Content-Type"] = formTypeOf(row.sends);
    return replyTo(resourceOf(row), {[&](const char* name) { return headers.value(name, ""); }, form}).body;
}

std::string managerSha256(const Exchange& row, const Origin& origin) {
    if (row.outcome != Outcome::transfer || !resourceOf(row).location.empty()) return {};
    // A form that was not captured cannot be sent again: the file is the answer to a request without it.
    return sha256Of(bodyOf(row, origin, row.sends == Sends::oversizedForm ? "" : formOf(row.sends)));
}

std::string browserSha256(const Exchange& row, const Origin& origin) {
    if (row.outcome != Outcome::browser || !isOfSite(row)) return {};
    const std::string body = bodyOf(row, origin, formOf(row.sends));
    if (body.empty()) return {};
    return sha256Of(resourceOf(row).gzip ? gzipOf(body) : body);
}

nlohmann::json expectedOf(const Exchange& row, const Origin& origin) {
    constexpr std::string_view kOutcomes[] = {"browser", "transfer", "cancel"};
    return {{"url", isOfSite(row) ? origin.url(row.target) : std::string(row.target)},
            {"outcome", kOutcomes[static_cast<std::size_t>(row.outcome)]},
            {"flags", row.flags},
            {"fileName", row.fileName},
            {"sha256", managerSha256(row, origin)},
            {"lacks", row.sends == Sends::oversizedForm ? "form" : ""},
            {"browserSha256", browserSha256(row, origin)},
            {"why", row.why}};
}

nlohmann::json cookieOf(std::string_view host, std::string_view pair) {
    const auto equals = pair.find('=');
    return {{"host", host}, {"name", pair.substr(0, equals)}, {"value", pair.substr(equals + 1)}};
}

}  // namespace

nlohmann::json exchangeList(int port) {
    nlohmann::json exchanges = nlohmann::json::array();
    for (const Exchange& row : kExchanges) {
        const Origin origin(row, port);
        if (!row.followed) exchanges.push_back(requestOf(row, origin));
        exchanges.back()["expected"].push_back(expectedOf(row, origin));
    }
    for (auto& exchange : mediaExchanges(port)) exchanges.push_back(std::move(exchange));
    return {{"settings",
             {{"Extensions", "zip rar 7z gz exe msi"},
              {"ExceptionServers", kExceptedHost},
              {"SpecialKeys\\UseKeyToPrevent", 1},
              {"SpecialKeys\\AltP", 1},
              {"SpecialKeys\\UseKeyToForce", 1},
              {"SpecialKeys\\CtrlF", 1}}},
            {"cookies", {cookieOf(kCaughtHost, kSessionCookie), cookieOf(kMediaHost, kViewerCookie)}},
            {"exchanges", exchanges},
            {"offers", mediaOffers(port)}};
}

std::string startPage() {
    std::string page =
        "<!DOCTYPE html>\n<title>The test site</title>\n<link rel=\"stylesheet\" href=\"/page/style.css\">\n"
        "<script src=\"/page/script.js\"></script>\n"
        "<p><img src=\"/page/image.gif\" alt=\"\"><img src=\"/page/image.gif?name=photo.zip\" alt=\"\">\n"
        "<video src=\"/page/clip.mp4\" muted></video><iframe src=\"/page/frame.html\"></iframe>\n"
        "<form method=\"post\" action=\"/form/archive.php\"><input name=\"name\" value=\"A visitor\">"
        "<input name=\"kind\" value=\"zip\"><button>Make my archive</button></form>\n<ul>\n";
    for (const Exchange& row : kExchanges) {
        const bool isClick = isOfSite(row) && row.load == Load::top && !row.followed &&
                             row.host == kCaughtHost && row.key.empty() && row.closes.empty() &&
                             formOf(row.sends).empty();
        if (!isClick) continue;
        page.append("<li><a href=\"").append(row.target).append("\">").append(row.why).append("</a>\n");
    }
    return page += "</ul>\n";
}

}  // namespace zab::site
