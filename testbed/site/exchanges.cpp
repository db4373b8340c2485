#include "resources.h"

#include <cstdint>
#include <stdexcept>

#include "fingerprint.h"
#include "media.h"

namespace zab::site {

using nlohmann::json;

namespace {

// The browser's own request to this address ends a redirect that was taken over.
constexpr std::string_view kSentinel = "http://www.mozilla.org/thisrequestistransferredtozab.stop";
constexpr std::string_view kExceptedHost = kMediaHost;
constexpr std::string_view kForm = "name=A+visitor&kind=zip&note=%E2%82%AC";
constexpr std::size_t kOversizedForm = 50001;

// Outcomes.
constexpr std::string_view kBrowser = "browser", kTransfer = "transfer", kCancel = "cancel";
enum Load : std::uint32_t { top = 0x90000, frame = 0x10000, embedded = 0 };  // flags of the channel
enum class Sends { plain, session, basic, form, oversizedForm, range, acceptsGzip };

constexpr int kControl = 0x11, kAlt = 0x12;

// Transfer flags, as the download manager reads them.
constexpr std::uint32_t kOrdinary = 8, kNamed = 0x1008, kEarly = 0x804, kWithoutBody = 0x1000008;

struct Exchange {
    std::string_view target;  // of the site; or a whole URL that is only followed
    std::string_view outcome;
    std::string_view why;
    std::uint32_t flags = 0;
    std::string_view fileName = {};
    Load load = top;
    Sends sends = Sends::plain;
    int key = 0;  // code of the one that is held during the exchange
    std::string_view host = kSiteHost;
    std::string_view closes = {};  // what the user closes before the answer: "tab" or "window", with its page
    const MediaPage* page = nullptr;  // that is shown; else the site's first page
    bool isFollowed = false;          // no request of its own: the redirect of the row before leads here

    constexpr Exchange sending(Sends what) const { return with(&Exchange::sends, what); }
    constexpr Exchange holding(int code) const { return with(&Exchange::key, code); }
    constexpr Exchange at(std::string_view name) const { return with(&Exchange::host, name); }
    constexpr Exchange closing(std::string_view what) const { return with(&Exchange::closes, what); }
    constexpr Exchange flagged(std::uint32_t how) const { return with(&Exchange::flags, how); }
    constexpr Exchange named(std::string_view name) const { return with(&Exchange::fileName, name); }
    constexpr Exchange followed() const { return with(&Exchange::isFollowed, true); }

  private:
    template <class T>
    constexpr Exchange with(T Exchange::*member, T value) const {
        Exchange row = *this;
        row.*member = value;
        return row;
    }
};

constexpr Exchange stays(std::string_view target, std::string_view why, Load load = top) {
    return {.target = target, .outcome = kBrowser, .why = why, .load = load};
}
constexpr Exchange taken(std::string_view target, std::string_view why, Load load = top) {
    return {.target = target, .outcome = kTransfer, .why = why, .flags = kOrdinary, .load = load};
}
constexpr Exchange named(std::string_view target, std::string_view fileName, std::string_view why) {
    return taken(target, why).flagged(kNamed).named(fileName);
}
constexpr Exchange plays(const MediaPage& page, std::string_view target, std::string_view why,
                         std::string_view host = kSiteHost) {
    Exchange row = stays(target, why, embedded).at(host);
    row.page = &page;
    return row;
}

// UTF-8 names travel as narrow text of the ANSI code page (1252), so each of their bytes arrives as one
// character.
constexpr std::string_view kEncodedWordName = "utf-8''\u00c3\u0153ber.zip";          // Über.zip
constexpr std::string_view kRawUtf8Name = "utf-8''Gr\u00c3\u00b6\u00c3\u0178e.zip";  // Größe.zip

const Exchange kExchanges[] = {
    stays("/", "a page"),
    stays("/page/style.css", "a style", embedded),
    stays("/page/script.js", "a script", embedded),
    stays("/page/image.gif", "an image", embedded),
    stays("/page/image.gif?name=photo.zip", "an image with an archive's name in its query", embedded),
    stays("/page/clip.mp4", "a video inside a page", embedded),
    stays("/page/frame.html", "a page in a frame", frame),

    taken("/files/archive.zip", "a link to an archive"),
    taken("/files/UPPER.ZIP", "an extension in upper case"),
    taken("/files/setup.exe", "a link to a program"),
    stays("/files/archive.zip", "an archive that a script fetches for its page", embedded),
    stays("/files/archive.zip", "an excepted server").at(kExceptedHost),
    stays("/files/disc.iso", "an extension that is not in the list"),
    stays("/files/missing.zip", "nothing there"),
    stays("/files/archive.zip", "the prevent key is held").holding(kAlt),
    taken("/files/disc.iso", "the force key is held").flagged(kEarly).holding(kControl),

    stays(kSessionPage, "the page that sets the session's cookie").sending(Sends::session),
    taken("/session/archive.zip", "needs cookie, referrer and user agent").sending(Sends::session),
    stays("/session/moved", "the same behind a redirect").sending(Sends::session),
    taken("/session/archive.zip?moved", "the redirect keeps cookie and referrer")
        .sending(Sends::session)
        .followed(),
    stays("/private/archive.zip", "credentials are asked for"),
    taken("/private/archive.zip", "needs Basic credentials").sending(Sends::basic),
    named("/form/archive.php", "form.zip", "the answer to a form").sending(Sends::form),
    named("/form/archive.php", "form.zip", "the form is too large to be captured; nothing can repeat it")
        .sending(Sends::oversizedForm)
        .flagged(kWithoutBody),
    stays("/form/result.php", "a page in answer to a form").sending(Sends::form),

    stays("/moved/301", "moved permanently"),
    taken("/moved/here.zip?301", "where 301 leads").followed(),
    stays("/moved/302", "found elsewhere"),
    taken("/moved/here.zip?302", "where 302 leads").followed(),
    stays("/moved/303", "see other"),
    taken("/moved/here.zip?303", "where 303 leads").followed(),
    stays("/moved/307", "moved for now"),
    taken("/moved/here.zip?307", "where 307 leads").followed(),
    taken("/moved/ftp", "a redirect to an FTP archive").flagged(kEarly),
    Exchange{kSentinel, kCancel, "the browser's side of it ends"}.followed(),
    stays("/moved/ftp-text", "a redirect to an FTP file that is not in the list"),
    stays("ftp://127.0.0.1/pub/readme.txt", "where it leads").followed(),

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
    taken("/attach/type-name", "named by its Content-Type").named("named.zip"),

    taken("/get/archive.zip?attachment", "an unnamed attachment; the URL before the query decides", embedded),
    taken("/get/archive.zip?octets", "a generic type", embedded),
    taken("/get/archive.zip?class", "a type that equals the extension", embedded),
    stays("/get/archive.zip?other-class", "a type that contradicts the extension", embedded),
    taken("/get/archive.zip?text", "plain text of 256,001 bytes", embedded),
    stays("/get/archive.zip?short-text", "plain text of 256,000 bytes", embedded),
    taken("/get/archive.zip?unnamed", "a click, whatever the type"),
    stays("/get/file.php?x=1", "a page made by a program"),
    stays("/get/file.php?x=2", "an attachment that only a program's name describes"),
    named("/get/file.php?x=3", "made.zip", "a program that names its file"),

    taken("/parts/file.rar.001", "a numbered part"),
    stays("/parts/file.rar.0001", "four digits number no part"),
    named("/parts/volume", "volume.rar.02", "a numbered part by name"),

    taken("/gzip/archive.zip", "compressed on its way: the length is not the file's")
        .sending(Sends::acceptsGzip),
    stays("/gzip/page.html", "a page, compressed on its way").sending(Sends::acceptsGzip),
    taken("/files/archive.zip", "a click, then its tab is closed before the answer").closing("tab"),
    stays("/page/clip.mp4", "a video whose page goes before the answer", embedded).closing("tab"),
    taken("/files/archive.zip", "a click, then its window is closed").closing("window"),
    stays("/page/frame.html", "a frame whose window is closed", frame).closing("window"),

    taken("/range/archive.zip", "206: the browser has a part, the manager fetches all").sending(Sends::range),

    plays(kFilmPage, "/media/film/master.m3u8", "an HLS master playlist"),
    plays(kPlayPage, "/media/play/master.m3u8", "an HLS playlist of a film on the media host"),
    plays(kPlayPage, "/media/play/720/film.m3u8", "its picture, as the host's visitor gets it", kMediaHost),
    plays(kPlayPage, "/media/play/720/1.mp4", "a segment as large as a film", kMediaHost),
    plays(kPlayPage, "/media/play/en/film.m3u8", "its English sound", kMediaHost),
    plays(kPlayPage, "/media/play/en/1.mp4", "a segment of the sound", kMediaHost),
    plays(kPlayPage, "/media/play/de/film.m3u8", "its German sound", kMediaHost),
    plays(kPlayPage, "/media/play/text/film.m3u8", "its subtitles, which are no film", kMediaHost),
    plays(kPlayPage, "/media/play/trailer.mp4", "a file beside the stream"),
    plays(kLecturePage, "/media/lecture/film.mpd", "a DASH manifest"),
    plays(kLecturePage, "/media/lecture/v2/1.m4s", "a segment in its folder"),
    plays(kConcertPage, "/media/concert.f4m", "an HDS manifest"),
    plays(kHolidayPage, "/media/holiday.mp4", "a video inside a page"),
    plays(kSongPage, "/watch?v=song", "the data of a watch page", "www.youtube.com"),
    plays(kShortPage, "/video/1234", "the page of a player", "player.vimeo.com"),
};

constexpr bool isOfSite(const Exchange& row) { return row.target.front() == '/'; }

// --- The request of a row ---

/// With the port where the name is one of the site's.
std::string serverOf(std::string_view host, int port) {
    std::string server(host);
    if (host == kSiteHost || host == kMediaHost) server.append(":").append(std::to_string(port));
    return server;
}

std::string originOf(std::string_view host, int port) { return "http://" + serverOf(host, port); }

std::string urlOf(const Exchange& row, int port) {
    return (isOfSite(row) ? originOf(row.host, port) : "") + std::string(row.target);
}

// The site's HTTP library refuses URL-encoded forms of this size, so the large one goes as text.
std::string_view formTypeOf(Sends sends) { return sends == Sends::oversizedForm ? "text/plain" : kFormType; }

std::string formOf(Sends sends) {
    if (sends == Sends::form) return std::string(kForm);
    if (sends == Sends::oversizedForm) return "note=" + std::string(kOversizedForm - 5, 'x');
    return {};
}

json headersOf(const Exchange& row, int port) {
    json headers{
        {"User-Agent", kUserAgent},
        {"Referer", originOf(kSiteHost, port) + std::string(row.sends == Sends::session ? kSessionPage : "/")}};
    if (row.sends == Sends::session) headers["Cookie"] = "theme=dark; " + std::string(kSessionCookie);
    if (row.page != nullptr && row.host == kSiteHost) headers["Cookie"] = kSessionCookie;
    if (row.page != nullptr && row.host == kMediaHost) headers["Cookie"] = kViewerCookie;
    if (row.sends == Sends::basic) headers["Authorization"] = kBasicAuthorization;
    if (row.sends == Sends::range) headers["Range"] = "bytes=1000-";
    if (row.sends == Sends::acceptsGzip) headers["Accept-Encoding"] = "gzip";
    return headers;
}

json pageOf(int id, std::string_view title, bool isShown, int port) {
    return {{"id", id}, {"url", originOf(kSiteHost, port) + "/"}, {"title", title}, {"shown", isShown}};
}

json requestOf(const Exchange& row, int port) {
    json request{{"url", urlOf(row, port)},   {"headers", headersOf(row, port)},
                 {"loadFlags", row.load},     {"closes", row.closes},
                 {"body", formOf(row.sends)}, {"bodyType", formTypeOf(row.sends)}};
    if (row.key != 0) request["keys"] = {row.key};
    // A page that goes away is one of its own: the others go on without it.
    const int pageId = row.closes.empty() ? 1 : 1000 + static_cast<int>(&row - kExchanges);
    if (row.page != nullptr)
        request["page"] = pageOf(row.page->id, row.page->title, true, port);
    else if (row.load != top || !row.closes.empty())
        request["page"] = pageOf(pageId, "The test site", false, port);
    if (serverOf(row.host, port) == row.host) request["connect"] = serverOf(kSiteHost, port);
    return request;
}

// --- What must come of it ---

const Resource& resourceOf(std::string_view target) {
    if (const Resource* resource = findResource(target)) return *resource;
    throw std::logic_error("the site does not hold " + std::string(target));
}

std::string bodyOf(const Exchange& row, int port, std::string_view form) {
    json headers = headersOf(row, port);
    headers["Host"] = serverOf(row.host, port);
    headers["Content-Type"] = formTypeOf(row.sends);
    return replyTo(resourceOf(row.target), {[&](const char* name) { return headers.value(name, ""); }, form})
        .body;
}

/// Fingerprint of what the download manager gets.
std::string managerFile(const Exchange& row, int port) {
    if (row.outcome != kTransfer || !resourceOf(row.target).location.empty()) return {};
    // A form that was not captured cannot be sent again: the file is the answer to a request without it.
    return fingerprintOf(bodyOf(row, port, row.sends == Sends::oversizedForm ? "" : formOf(row.sends)));
}

std::string browserFile(const Exchange& row, int port) {
    const std::string body =
        row.outcome == kBrowser && isOfSite(row) ? bodyOf(row, port, formOf(row.sends)) : "";
    return body.empty() ? "" : fingerprintOf(resourceOf(row.target).gzip ? gzipOf(body) : body);
}

json expectedOf(const Exchange& row, int port) {
    return {{"url", urlOf(row, port)},
            {"outcome", row.outcome},
            {"flags", row.flags},
            {"fileName", row.fileName},
            {"file", managerFile(row, port)},
            {"lacks", row.sends == Sends::oversizedForm ? "form" : ""},
            {"browserFile", browserFile(row, port)},
            {"shown", row.page != nullptr},
            {"why", row.why}};
}

/// An act of the user, and the one download that must come of it.
json stepOf(const Act& act, int port) {
    std::string bytes;
    for (const std::string_view file : act.files)
        bytes += bodyOf(plays(act.page, file, {}, kMediaHost), port, {});
    const std::string url = withOrigins(act.link, std::to_string(port));
    return {{act.kind, withOrigins(act.what, std::to_string(port))},
            {"url", url},
            {"cookies", kSessionCookie},
            {"page", pageOf(act.page.id, act.page.title, true, port)},
            {"expected",
             {{{"url", url},
               {"outcome", "transfer"},
               {"flags", 0},
               {"file", fingerprintOf(bytes)},
               {"shown", true},
               {"why", act.why}}}}};
}

json offersOf(int port) {
    json offers = json::array();
    for (const Entry& entry : mediaEntries()) {
        if (offers.empty() || offers.back()["page"] != entry.page.id)
            offers.push_back(
                {{"page", entry.page.id}, {"title", entry.page.title}, {"entries", json::array()}});
        offers.back()["entries"].push_back(
            {{"link", withOrigins(entry.link, std::to_string(port))}, {"label", entry.label}});
    }
    return offers;
}

json cookieOf(std::string_view host, std::string_view pair) {
    const auto equals = pair.find('=');
    return {{"host", host}, {"name", pair.substr(0, equals)}, {"value", pair.substr(equals + 1)}};
}

}  // namespace

json exchangeList(int port) {
    json exchanges = json::array();
    for (const Exchange& row : kExchanges) {
        if (!row.isFollowed) exchanges.push_back(requestOf(row, port));
        exchanges.back()["expected"].push_back(expectedOf(row, port));
    }
    for (const Act& act : mediaActs()) exchanges.push_back(stepOf(act, port));
    return {{"settings",
             {{"Extensions", "zip rar 7z gz exe msi"},
              {"ExceptionServers", kExceptedHost},
              {"SpecialKeys\\UseKeyToPrevent", 1},
              {"SpecialKeys\\AltP", 1},
              {"SpecialKeys\\UseKeyToForce", 1},
              {"SpecialKeys\\CtrlF", 1}}},
            {"cookies", {cookieOf(kSiteHost, kSessionCookie), cookieOf(kMediaHost, kViewerCookie)}},
            {"exchanges", exchanges},
            {"offers", offersOf(port)}};
}

std::string startPage() {
    std::string page =
        "<!DOCTYPE html>\n<title>The test site</title>\n<iframe src=\"/page/frame.html\"></iframe>\n<ul>\n";
    for (const Exchange& row : kExchanges)
        if (isOfSite(row) && row.load == top && row.sends == Sends::plain && !row.isFollowed)
            page.append("<li><a href=\"").append(row.target).append("\">").append(row.why).append("</a>\n");
    return page += "</ul>\n";
}

}  // namespace zab::site
