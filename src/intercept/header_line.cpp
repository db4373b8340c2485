#include "intercept/header_line.h"

#include <algorithm>

#include "binding/text.h"
#include "web/file_name.h"

namespace zab {
namespace {

constexpr std::string_view kAttachment = "attachment";
constexpr std::string_view kFileNameParameter = "filename";
constexpr std::string_view kQuotes = "\"'";

/// Where the line ends: at its first CR LF, else at its first LF, else nowhere.
std::size_t lineEndOf(std::string_view text) noexcept {
    const auto both = text.find("\r\n");
    return both != std::string_view::npos ? both : text.find('\n');
}

void readDisposition(ResponseHeaderInfo& info, std::string_view value) {
    info.isAttachment = contains(value, kAttachment);
    info.fileName.clear();
    const auto parameter = value.find(kFileNameParameter);
    if (parameter == std::string_view::npos) return;
    const auto equals = value.find('=', parameter + kFileNameParameter.size());
    if (equals == std::string_view::npos) return;
    std::string_view name = value.substr(equals + 1);
    if (name.starts_with('\r') || name.starts_with('\n')) return;
    name = trimLeft(name, kBlanks);
    if (name.empty()) return;
    if (name.front() == '"') {
        if (const auto quoted = quotedTextOf(name)) return storeFileName(*quoted, info.fileName);
    }
    // A name whose quote is never closed goes the same way, quote and all.
    const auto end = lineEndOf(name);
    if (end == std::string_view::npos) return;
    storeFileName(upTo(name.substr(0, end), ';'), info.fileName);
}

void readContentType(ResponseHeaderInfo& info, std::string_view text) {
    const std::string_view rest = trimLeft(text, kBlanks);
    const std::string_view value = rest.substr(0, lineEndOf(rest));
    info.contentType.assign(upTo(value, ';'));
    const auto name = nameParameterOf(value, kBlanks);
    if (!name) return;
    if (name->empty() || !contains(kQuotes, name->substr(0, 1))) {
        info.contentTypeName.assign(upTo(*name, ';'));
    } else if (const auto quoted = quotedTextOf(*name)) {
        info.contentTypeName.assign(*quoted);
    }
}

void readContentLength(ResponseHeaderInfo& info, std::string_view value) {
    scanContentLength(value, info.contentLength);
}

struct HandledHeader {
    std::string_view name;  // with its ":"
    void (*read)(ResponseHeaderInfo& info, std::string_view value);
};

constexpr HandledHeader kHandledHeaders[] = {
    {"content-length:", readContentLength},
    {"Content-Disposition:", readDisposition},
    {"Content-Type:", readContentType},
};

}  // namespace

void scanContentLength(std::string_view text, std::int64_t& contentLength) noexcept {
    if (scanInt64(text, contentLength)) contentLength = std::max<std::int64_t>(contentLength, 0);
}

bool ParseResponseHeaderLine(ResponseHeaderInfo& info, std::string_view line) {
    line = trimLeft(upToNul(line), kBlanks);
    for (const HandledHeader& header : kHandledHeaders) {
        if (!startsWithIgnoringCase(line, header.name)) continue;
        header.read(info, line.substr(header.name.size()));
        return true;
    }
    return false;
}

}  // namespace zab
