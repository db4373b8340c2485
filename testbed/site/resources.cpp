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

constexpr std::string_view kSessionMarkup =
    "<!DOCTYPE html>\n<title>Session</title>\n<p><a href=\"/session/archive.zip\">The archive of this "
    "session</a>\n"
    "<p><a href=\"/session/moved\">The same, moved</a>\n";
constexpr std::string_view kFrameMarkup = "<!DOCTYPE html>\n<title>Frame</title>\n<p>A page in a page.\n";
constexpr std::string_view kGzipMarkup =
    "<!DOCTYPE html>\n<title>Compressed</title>\n<p>This page travels compressed.\n";
constexpr std::string_view kFormResult = "<!DOCTYPE html>\n<title>Thanks</title>\n<p>Your form has arrived.\n";
constexpr std::string_view kStyle = "body { font-family: sans-serif; }\n";
constexpr std::string_view kScript = "document.documentElement.dataset.script = 'ran';\n";
constexpr std::string_view kDynamicMarkup = "<!DOCTYPE html>\n<title>Made by a program</title>\n<p>x is 1.\n";

constexpr std::string_view kHtml = "text/html; charset=utf-8";
constexpr std::string_view kZip = "application/zip";
constexpr std::string_view kOctets = "application/octet-stream";
constexpr std::string_view kUnknown = "application/x-something";  // in no table of MIME classes

constexpr Resource kResources[] = {
    // The start page is made from the list of exchanges.
    {.target = "/", .type = kHtml},
    {.target = "/page/style.css", .type = "text/css", .text = kStyle},
    {.target = "/page/script.js", .type = "text/javascript", .text = kScript},
    {.target = "/page/image.gif", .type = "image/gif", .text = kPixel},
    {.target = "/page/image.gif?name=photo.zip", .type = "image/gif", .text = kPixel},
    {.target = "/page/frame.html", .type = kHtml, .text = kFrameMarkup},
    {.target = "/page/clip.mp4", .type = "video/mp4", .size = 9000},

    {.target = "/files/archive.zip", .type = kZip, .size = 20000},
    {.target = "/files/UPPER.ZIP", .type = kZip},
    {.target = "/files/setup.exe", .type = "application/x-msdownload"},
    {.target = "/files/disc.iso", .type = kUnknown},
    {.target = "/files/missing.zip", .type = "text/plain", .text = "There is no such file.\n", .status = 404},

    {.target = kSessionPage, .type = kHtml, .text = kSessionMarkup, .setsSession = true},
    {.target = "/session/archive.zip", .type = kZip, .size = 12000, .guard = Guard::session},
    {.target = "/session/moved", .type = {}, .status = 302, .location = "/session/archive.zip?moved"},
    {.target = "/session/archive.zip?moved", .type = kZip, .guard = Guard::session},
    {.target = "/private/archive.zip", .type = kZip, .guard = Guard::basic},
    {.target = "/form/archive.php",
     .type = kZip,
     .disposition = "attachment; filename=\"form.zip\"",
     .guard = Guard::form},
    {.target = "/form/result.php", .type = kHtml, .text = kFormResult},

    {.target = "/moved/301", .type = {}, .status = 301, .location = "/moved/here.zip?301"},
    {.target = "/moved/302", .type = {}, .status = 302, .location = "/moved/here.zip?302"},
    {.target = "/moved/303", .type = {}, .status = 303, .location = "/moved/here.zip?303"},
    {.target = "/moved/307", .type = {}, .status = 307, .location = "/moved/here.zip?307"},
    {.target = "/moved/here.zip?301", .type = kZip},
    {.target = "/moved/here.zip?302", .type = kZip},
    {.target = "/moved/here.zip?303", .type = kZip},
    {.target = "/moved/here.zip?307", .type = kZip},
    {.target = "/moved/ftp", .type = {}, .status = 302, .location = "ftp://127.0.0.1/pub/archive.zip"},
    {.target = "/moved/ftp-text", .type = {}, .status = 302, .location = "ftp://127.0.0.1/pub/readme.txt"},

    {.target = "/attach/quoted", .type = kUnknown, .disposition = "attachment; filename=\"a b.zip\""},
    {.target = "/attach/unquoted", .type = kUnknown, .disposition = "attachment; filename=plain.zip"},
    {.target = "/attach/parameters",
     .type = kUnknown,
     .disposition = "attachment; filename=first.zip; size=4000"},
    {.target = "/attach/encoded-word",
     .type = kUnknown,
     .disposition = "attachment; filename=\"=?UTF-8?B?w5xiZXIuemlw?=\""},
    {.target = "/attach/utf-8",
     .type = kUnknown,
     .disposition = "attachment; filename=\"Gr\xc3\xb6\xc3\x9f"
                    "e.zip\""},
    {.target = "/attach/latin-1",
     .type = kUnknown,
     .disposition = "attachment; filename=\"Gr\xf6\xdf"
                    "e.zip\""},
    {.target = "/attach/extended",
     .type = kUnknown,
     .disposition = "attachment; filename*=UTF-8''%C3%9Cber%20uns.zip"},
    {.target = "/attach/upper-case", .type = kUnknown, .disposition = "attachment; FILENAME=\"upper.zip\""},
    {.target = "/attach/inline", .type = kUnknown, .disposition = "inline; filename=\"inline.zip\""},
    {.target = "/attach/unclosed", .type = kUnknown, .disposition = "attachment; filename=\"unclosed.zip"},
    {.target = "/attach/unclosed.zip", .type = kUnknown, .disposition = "attachment; filename=\"unclosed.zip"},
    {.target = "/attach/notes", .type = "text/plain", .disposition = "attachment; filename=\"notes.txt\""},
    {.target = "/attach/type-name", .type = "application/octet-stream; name=\"named.zip\""},

    {.target = "/get/archive.zip?attachment", .type = kUnknown, .disposition = "attachment"},
    {.target = "/get/archive.zip?octets", .type = kOctets},
    {.target = "/get/archive.zip?class", .type = kZip},
    {.target = "/get/archive.zip?other-class", .type = "application/pdf"},
    {.target = "/get/archive.zip?text", .type = "text/plain", .size = 256001},
    {.target = "/get/archive.zip?short-text", .type = "text/plain", .size = 256000},
    {.target = "/get/archive.zip?unnamed", .type = kUnknown},
    {.target = "/get/file.php?x=1", .type = kHtml, .text = kDynamicMarkup},
    {.target = "/get/file.php?x=2", .type = kOctets, .disposition = "attachment"},
    {.target = "/get/file.php?x=3", .type = kOctets, .disposition = "attachment; filename=\"made.zip\""},

    {.target = "/parts/file.rar.001", .type = kOctets},
    {.target = "/parts/file.rar.0001", .type = kOctets},
    {.target = "/parts/volume", .type = kOctets, .disposition = "attachment; filename=\"volume.rar.02\""},

    {.target = "/gzip/archive.zip", .type = kZip, .gzip = true},
    {.target = "/gzip/page.html", .type = kHtml, .text = kGzipMarkup, .gzip = true},
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
