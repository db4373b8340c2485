#include "resources.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <span>
#include <stdexcept>
#include <utility>

#include "media.h"

namespace zab::site {
namespace {

// A picture of one transparent pixel (GIF89a).
constexpr std::string_view kPixel{
    "GIF89a\1\0\1\0\200\0\0\377\377\377\0\0\0!\371\4\1\0\0\0\0,\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 43};

constexpr std::string_view kHtml = "text/html; charset=utf-8";
constexpr std::string_view kZip = "application/zip";
constexpr std::string_view kOctets = "application/octet-stream";
constexpr std::string_view kUnknown = "application/x-something";  // in no table of MIME classes

constexpr Resource markup(std::string_view target, std::string_view text) {
    return {.target = target, .type = kHtml, .text = text};
}
constexpr Resource sentAs(std::string_view disposition, std::string_view target) {
    return {.target = target, .type = kUnknown, .disposition = disposition};
}
constexpr Resource moved(int status, std::string_view target, std::string_view location) {
    return {.target = target, .type = {}, .status = status, .location = location};
}
constexpr Resource guarded(Guard guard, Resource resource) {
    resource.guard = guard;
    return resource;
}
constexpr Resource gzipped(Resource resource) {
    resource.gzip = true;
    return resource;
}

constexpr Resource kResources[] = {
    // The start page is made from the list of exchanges.
    {.target = "/", .type = kHtml},
    {.target = "/page/style.css", .type = "text/css", .text = "body { font-family: sans-serif; }\n"},
    {.target = "/page/script.js",
     .type = "text/javascript",
     .text = "document.documentElement.dataset.script = 'ran';\n"},
    {.target = "/page/image.gif", .type = "image/gif", .text = kPixel},
    {.target = "/page/image.gif?name=photo.zip", .type = "image/gif", .text = kPixel},
    markup("/page/frame.html", "<!DOCTYPE html>\n<title>Frame</title>\n<p>A page in a page.\n"),
    {.target = "/page/clip.mp4", .type = "video/mp4", .size = 9000},

    {.target = "/files/archive.zip", .type = kZip, .size = 20000},
    {.target = "/files/UPPER.ZIP", .type = kZip},
    {.target = "/files/setup.exe", .type = "application/x-msdownload"},
    {.target = "/files/disc.iso", .type = kUnknown},
    {.target = "/files/missing.zip", .type = "text/plain", .text = "There is no such file.\n", .status = 404},

    markup(kSessionPage,
           "<!DOCTYPE html>\n<title>Session</title>\n<p><a href=\"/session/archive.zip\">The archive of "
           "this session</a>\n<p><a href=\"/session/moved\">The same, moved</a>\n"),
    guarded(Guard::session, {.target = "/session/archive.zip", .type = kZip, .size = 12000}),
    moved(302, "/session/moved", "/session/archive.zip?moved"),
    guarded(Guard::session, {.target = "/session/archive.zip?moved", .type = kZip}),
    guarded(Guard::basic, {.target = "/private/archive.zip", .type = kZip}),
    guarded(Guard::form,
            {.target = "/form/archive.php", .type = kZip, .disposition = "attachment; filename=\"form.zip\""}),
    markup("/form/result.php", "<!DOCTYPE html>\n<title>Thanks</title>\n<p>Your form has arrived.\n"),

    moved(301, "/moved/301", "/moved/here.zip?301"),
    moved(302, "/moved/302", "/moved/here.zip?302"),
    moved(303, "/moved/303", "/moved/here.zip?303"),
    moved(307, "/moved/307", "/moved/here.zip?307"),
    {.target = "/moved/here.zip?301", .type = kZip},
    {.target = "/moved/here.zip?302", .type = kZip},
    {.target = "/moved/here.zip?303", .type = kZip},
    {.target = "/moved/here.zip?307", .type = kZip},
    moved(302, "/moved/ftp", "ftp://127.0.0.1/pub/archive.zip"),
    moved(302, "/moved/ftp-text", "ftp://127.0.0.1/pub/readme.txt"),

    sentAs("attachment; filename=\"a b.zip\"", "/attach/quoted"),
    sentAs("attachment; filename=plain.zip", "/attach/unquoted"),
    sentAs("attachment; filename=first.zip; size=4000", "/attach/parameters"),
    sentAs("attachment; filename=\"=?UTF-8?B?w5xiZXIuemlw?=\"", "/attach/encoded-word"),
    sentAs("attachment; filename=\"Gr\303\266\303\237e.zip\"", "/attach/utf-8"),
    sentAs("attachment; filename=\"Gr\366\337e.zip\"", "/attach/latin-1"),
    sentAs("attachment; filename*=UTF-8''%C3%9Cber%20uns.zip", "/attach/extended"),
    sentAs("attachment; FILENAME=\"upper.zip\"", "/attach/upper-case"),
    sentAs("inline; filename=\"inline.zip\"", "/attach/inline"),
    sentAs("attachment; filename=\"unclosed.zip", "/attach/unclosed"),
    sentAs("attachment; filename=\"unclosed.zip", "/attach/unclosed.zip"),
    {.target = "/attach/notes", .type = "text/plain", .disposition = "attachment; filename=\"notes.txt\""},
    {.target = "/attach/type-name", .type = "application/octet-stream; name=\"named.zip\""},

    sentAs("attachment", "/get/archive.zip?attachment"),
    {.target = "/get/archive.zip?octets", .type = kOctets},
    {.target = "/get/archive.zip?class", .type = kZip},
    {.target = "/get/archive.zip?other-class", .type = "application/pdf"},
    {.target = "/get/archive.zip?text", .type = "text/plain", .size = 256001},
    {.target = "/get/archive.zip?short-text", .type = "text/plain", .size = 256000},
    {.target = "/get/archive.zip?unnamed", .type = kUnknown},
    markup("/get/file.php?x=1", "<!DOCTYPE html>\n<title>Made by a program</title>\n<p>x is 1.\n"),
    {.target = "/get/file.php?x=2", .type = kOctets, .disposition = "attachment"},
    {.target = "/get/file.php?x=3", .type = kOctets, .disposition = "attachment; filename=\"made.zip\""},

    {.target = "/parts/file.rar.001", .type = kOctets},
    {.target = "/parts/file.rar.0001", .type = kOctets},
    {.target = "/parts/volume", .type = kOctets, .disposition = "attachment; filename=\"volume.rar.02\""},

    gzipped({.target = "/gzip/archive.zip", .type = kZip}),
    gzipped(markup("/gzip/page.html",
                   "<!DOCTYPE html>\n<title>Compressed</title>\n<p>This page travels compressed.\n")),
    {.target = "/range/archive.zip", .type = kZip, .size = 5000},
};

static_assert(std::ranges::none_of(kResources, [](const Resource& row) {
    return std::ranges::count(kResources, row.target, &Resource::target) > 1;
}));

constexpr std::string_view kAnyBrowser = "Mozilla/5.0 (";

// Bytes that do not compress and depend on every byte of the seed; the same with every library.
std::string generated(std::string_view seed, std::size_t size) {
    std::seed_seq sequence(seed.begin(), seed.end());
    std::mt19937 engine(sequence);
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(engine() >> 24);
    return bytes;
}

// Names what the request lacks, so that a wrong file tells at once what was lost on the way; empty when nothing
// is.
std::string_view missing(Guard guard, const Visit& visit) {
    switch (guard) {
        case Guard::none: return {};
        case Guard::session:
            if (visit.header("Cookie").find(kSessionCookie) == std::string::npos)
                return "the cookie of the session";
            if (visit.header("Referer") != "http://" + visit.header("Host") + std::string(kSessionPage))
                return "the referrer";
            return visit.header("User-Agent").starts_with(kAnyBrowser) ? "" : "a browser's user agent";
        case Guard::viewer:
            return visit.header("Cookie") == kViewerCookie ? "" : "this host's own cookie, alone";
        case Guard::basic: return visit.header("Authorization") == kBasicAuthorization ? "" : "the credentials";
        case Guard::form:
            if (visit.formBody.empty()) return "the form";
            return visit.header("Content-Type").empty() ? "the form's content type" : "";
    }
    return {};
}

}  // namespace

const Resource* findResource(std::string_view target) noexcept {
    for (const std::span<const Resource> table : {std::span<const Resource>(kResources), mediaResources()})
        for (const Resource& row : table)
            if (row.target == target) return &row;
    return nullptr;
}

std::string withOrigins(std::string_view text, std::string_view port) {
    std::string whole(text);
    for (const auto& [mark, host] : {std::pair{"{site}", kSiteHost}, {"{media}", kMediaHost}})
        for (auto at = whole.find(mark); at != whole.npos; at = whole.find(mark, at))
            whole.replace(at, std::strlen(mark), "http://" + std::string(host) + ":" + std::string(port));
    return whole;
}

Reply replyTo(const Resource& resource, const Visit& visit) {
    if (!resource.location.empty()) return {resource.status, {}};
    if (const std::string_view lost = missing(resource.guard, visit); !lost.empty())
        return {resource.guard == Guard::basic ? 401 : resource.status,
                "This request came without " + std::string(lost) + ".\n"};
    if (resource.target == "/") return {resource.status, startPage()};
    if (!resource.text.empty()) {
        const std::string host = visit.header("Host");
        return {resource.status, withOrigins(resource.text, host.substr(host.find(':') + 1))};
    }
    std::string seed(resource.target);
    if (resource.guard == Guard::form)
        seed.append(1, '\n').append(visit.header("Content-Type")).append(1, '\n').append(visit.formBody);
    return {resource.status, generated(seed, resource.size)};
}

std::string gzipOf(std::string_view bytes) {
    // The deflated block stands in zlib's wrapper (2 bytes before it, 4 behind) and goes into that of gzip.
    const auto* plain = reinterpret_cast<const Bytef*>(bytes.data());
    uLongf size = compressBound(bytes.size());
    std::string packed(size, '\0'), member("\x1f\x8b\x08\0\0\0\0\0\2\xff", 10);
    if (compress(reinterpret_cast<Bytef*>(packed.data()), &size, plain, bytes.size()) != Z_OK)
        throw std::runtime_error("zlib does not pack");
    member.append(packed, 2, size - 6);
    const auto length = static_cast<uInt>(bytes.size());
    for (const auto word : {static_cast<uInt>(crc32(0, plain, length)), length})
        for (int bit = 0; bit < 32; bit += 8) member += static_cast<char>(word >> bit);
    return member;
}

}  // namespace zab::site
