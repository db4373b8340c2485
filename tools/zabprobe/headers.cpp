// headers, visit, mime, catch, excepted, normalize: the rules for headers and addresses, one by one.

#include <algorithm>

#include "binding/text.h"
#include "binding/utf.h"
#include "intercept/catch_list.h"
#include "intercept/header_capture.h"
#include "intercept/header_line.h"
#include "intercept/mime_classes.h"
#include "settings/exception_servers.h"
#include "web/url.h"
#include "zabprobe/command.h"

namespace zabprobe {
namespace {

constexpr Option kUrl{"URL", "The address", &Arguments::text, kRequired};

/// Hands each line of the file, its line end included, to `take`.
template <class Take>
void forEachLine(std::string_view text, Take take) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        const std::string_view line = text.substr(0, end == std::string_view::npos ? text.size() : end + 1);
        take(line);
        text.remove_prefix(line.size());
    }
}

std::string_view withoutLineEnd(std::string_view line) {
    if (line.ends_with('\n')) line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

Answer runHeaders(const Arguments& arguments) {
    zab::ResponseHeaderInfo info;
    bool handled = false;
    forEachLine(arguments.bytes(),
                [&](std::string_view line) { handled |= zab::ParseResponseHeaderLine(info, line); });
    return {handled,
            {{"fileName", zab::wellFormedUtf8(info.fileName)},
             {"contentTypeName", zab::wellFormedUtf8(info.contentTypeName)},
             {"contentType", zab::wellFormedUtf8(info.contentType)},
             {"isAttachment", info.isAttachment ? 1 : 0},
             {"contentLength", info.contentLength}}};
}

constexpr Option kVisitOptions[] = {
    kFile,
    {"--request", "The headers are those of a request", &Arguments::request},
};

Answer runVisit(const Arguments& arguments) {
    zab::CapturedHeaders record;
    record.visitRequestHeaders = arguments.request;
    bool visited = false;
    forEachLine(arguments.bytes(), [&](std::string_view line) {
        line = withoutLineEnd(line);
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) return;
        visited = true;
        zab::visitHeader(record, line.substr(0, colon),
                         zab::trimLeft(line.substr(colon + 1), zab::kSpaceAndTab));
    });
    Json json = {{"isAttachment", record.isAttachment ? 1 : 0},
                 {"isInline", record.isInline ? 1 : 0},
                 {"isGzip", record.isGzip ? 1 : 0},
                 {"lengthFromRange", record.lengthFromRange ? 1 : 0},
                 {"fileName", zab::wellFormedUtf8(record.fileName)},
                 {"contentTypeName", zab::wellFormedUtf8(record.contentTypeName)},
                 {"contentType", zab::wellFormedUtf8(record.contentType)},
                 {"contentLength", record.contentLength}};
    if (arguments.request) {
        json["referer"] = zab::wellFormedUtf8(record.referer);
        json["cookie"] = zab::wellFormedUtf8(record.cookie);
        json["userAgent"] = zab::wellFormedUtf8(record.userAgent);
        json["authorization"] = zab::wellFormedUtf8(record.authorization);
    }
    return {visited, std::move(json)};
}

constexpr Option kMimeOptions[] = {{"TYPE", "The MIME type", &Arguments::text, kRequired}};

Answer runMime(const Arguments& arguments) {
    const std::string_view code = zab::ClassifyMimeType(arguments.text);
    return {!code.empty(), {{"known", code.empty() ? 0 : 1}, {"classCode", code}}};
}

constexpr Option kCatchOptions[] = {
    {"TEXT", "The text in which the extensions are looked for", &Arguments::text, kRequired}, kExtensions};

Answer runCatch(const Arguments& arguments) {
    const bool matched = zab::MatchExtensionList(arguments.extensions, arguments.text);
    return {matched, {{"matched", matched ? 1 : 0}}};
}

constexpr Option kExceptedOptions[] = {
    kUrl,
    {"--list", "The excepted servers, separated by blanks", &Arguments::list},
};

Answer runExcepted(const Arguments& arguments) {
    const bool listed = zab::CExceptionServersList(arguments.list).IsListed(arguments.text);
    return {listed, {{"listed", listed ? 1 : 0}}};
}

constexpr Option kNormalizeOptions[] = {kUrl};

Answer runNormalize(const Arguments& arguments) {
    std::string url = arguments.text;
    zab::NormalizeDefaultPort(url);
    return {true, {{"url", zab::wellFormedUtf8(url)}}};
}

constexpr Command kCommands[] = {
    {"headers", "What raw response-header lines say about the body", kFileAlone, runHeaders},
    {"visit", "What headers, as the browser gives them one by one, say", kVisitOptions, runVisit},
    {"mime", "The file type that a MIME type stands for", kMimeOptions, runMime},
    {"catch", "Whether a list of extensions matches a text", kCatchOptions, runCatch},
    {"excepted", "Whether a list of excepted servers names a URL's server", kExceptedOptions, runExcepted},
    {"normalize", "A URL without its default port", kNormalizeOptions, runNormalize},
};

}  // namespace

std::span<const Command> headerCommands() { return kCommands; }

}  // namespace zabprobe
