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

/// A command whose only argument is a text, which may be empty.
void takesText(CLI::App& command, Arguments& arguments, const char* name) {
    command
        .add_option_function<std::string>(name,
                                          [&](const std::string& text) { arguments.words.assign({text}); })
        ->required();
}

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

void visitOptions(CLI::App& command, Arguments& arguments) {
    takesFile(command, arguments);
    command.add_flag("--request", arguments.request, "The headers are those of a request");
}

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

void mimeOptions(CLI::App& command, Arguments& arguments) { takesText(command, arguments, "TYPE"); }

Answer runMime(const Arguments& arguments) {
    const std::string_view code = zab::ClassifyMimeType(arguments.words.front());
    return {!code.empty(), {{"known", code.empty() ? 0 : 1}, {"classCode", code}}};
}

void catchOptions(CLI::App& command, Arguments& arguments) {
    takesText(command, arguments, "TEXT");
    command.add_option("--extensions", arguments.extensions, "The extensions to catch, separated by blanks");
}

Answer runCatch(const Arguments& arguments) {
    const bool matched = zab::MatchExtensionList(arguments.extensions, arguments.words.front());
    return {matched, {{"matched", matched ? 1 : 0}}};
}

void exceptedOptions(CLI::App& command, Arguments& arguments) {
    takesText(command, arguments, "URL");
    command.add_option("--list", arguments.list, "The excepted servers, separated by blanks");
}

Answer runExcepted(const Arguments& arguments) {
    const bool listed = zab::CExceptionServersList(arguments.list).IsListed(arguments.words.front());
    return {listed, {{"listed", listed ? 1 : 0}}};
}

void normalizeOptions(CLI::App& command, Arguments& arguments) { takesText(command, arguments, "URL"); }

Answer runNormalize(const Arguments& arguments) {
    std::string url = arguments.words.front();
    zab::NormalizeDefaultPort(url);
    return {true, {{"url", zab::wellFormedUtf8(url)}}};
}

constexpr Command kCommands[] = {
    {"headers", "What raw response-header lines say about the body", takesFile, runHeaders},
    {"visit", "What headers, as the browser gives them one by one, say", visitOptions, runVisit},
    {"mime", "The file type that a MIME type stands for", mimeOptions, runMime},
    {"catch", "Whether a list of extensions matches a text", catchOptions, runCatch},
    {"excepted", "Whether a list of excepted servers names a URL's server", exceptedOptions, runExcepted},
    {"normalize", "A URL without its default port", normalizeOptions, runNormalize},
};

}  // namespace

std::span<const Command> headerCommands() { return kCommands; }

}  // namespace zabprobe
