#include "resources.h"

#include <iterator>
#include <span>

#include "media.h"

namespace zab::site {
namespace {

// A picture of one transparent pixel (GIF89a).
constexpr std::string_view kPixel{
    "GIF89a\x01\x00\x01\x00\x80\x00\x00\xff\xff\xff\x00\x00\x00!\xf9\x04\x01\x00\x00\x00\x00,"
    "\x00\x00\x00\x00\x01\x00"
    "\x01\x00\x00\x02\x02"
    "D\x01\x00;",
    43};

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
    sentAs("attachment; filename=\"Gr\xc3\xb6\xc3\x9f"
           "e.zip\"",
           "/attach/utf-8"),
    sentAs("attachment; filename=\"Gr\xf6\xdf"
           "e.zip\"",
           "/attach/latin-1"),
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

constexpr bool noTargetTwice() {
    for (auto row = std::begin(kResources); row != std::end(kResources); ++row)
        for (auto later = row + 1; later != std::end(kResources); ++later)
            if (row->target == later->target) return false;
    return true;
}
static_assert(noTargetTwice());

}  // namespace

const Resource* findResource(std::string_view target) noexcept {
    for (const std::span<const Resource> table : {std::span<const Resource>(kResources), mediaResources()})
        for (const Resource& row : table)
            if (row.target == target) return &row;
    return nullptr;
}

}  // namespace zab::site
