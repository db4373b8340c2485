#include "intercept/header_capture.h"

#include "binding/pieces.h"
#include "binding/text.h"
#include "intercept/header_line.h"
#include "web/file_name.h"

namespace zab {
namespace {

constexpr std::size_t kOrdinaryTextBytes = 4096;
constexpr std::string_view kAttachment = "attachment";
constexpr std::string_view kInline = "inline";
constexpr std::string_view kFileNameParameter = "filename";
constexpr std::string_view kGzip = "gzip";
constexpr std::string_view kNoCoding = "identity";
constexpr std::string_view kBasic = "Basic ";
constexpr std::string_view kBlankLine = "\r\n\r\n";
constexpr std::string_view kContentTypeLine = "Content-Type:";
constexpr std::string_view kStorageHost = "storage.live.com";

void clearText(std::string& text) noexcept {
    if (text.capacity() > kOrdinaryTextBytes)
        std::string{}.swap(text);
    else
        text.clear();
}

// Request headers.

void takeAuthorization(CapturedHeaders& record, std::string_view value) {
    if (startsWithIgnoringCase(value, kBasic)) record.authorization.assign(value);
}

template <std::string CapturedHeaders::*field>
void takeWhole(CapturedHeaders& record, std::string_view value) {
    (record.*field).assign(value);
}

// Response headers.

void takeContentLength(CapturedHeaders& record, std::string_view value) {
    if (!record.lengthFromRange) scanContentLength(value, record.contentLength);
}

void takeContentEncoding(CapturedHeaders& record, std::string_view value) {
    if (startsWithIgnoringCase(value, kGzip)) record.isGzip = true;
    const std::string_view codings = trim(value);
    if (!codings.empty() && !equalsIgnoringCase(codings, kNoCoding)) record.isEncoded = true;
}

/// The total of a partial response outweighs its content length, whichever comes first.
void takeContentRange(CapturedHeaders& record, std::string_view value) {
    const auto slash = value.find('/');
    std::int64_t total = 0;
    if (slash == std::string_view::npos || !scanInt64(value.substr(slash + 1), total) || total <= 0) return;
    record.contentLength = total;
    record.lengthFromRange = true;
}

void takeContentType(CapturedHeaders& record, std::string_view value) {
    record.contentType.assign(upTo(value, ';'));
    const auto name = nameParameterOf(value, kSpaceAndTab);
    if (!name) return;
    if (!name->starts_with('"')) {
        record.contentTypeName.assign(upTo(*name, ';'));
    } else if (const auto quoted = quotedTextOf(*name); quoted && !quoted->empty()) {
        record.contentTypeName.assign(*quoted);
    }
}

void takeContentDisposition(CapturedHeaders& record, std::string_view value) {
    const auto inlineAt = value.find(kInline);
    record.isAttachment = contains(value, kAttachment);
    record.isInline = inlineAt != std::string_view::npos;
    auto parameter = value.find(kFileNameParameter);
    if (parameter == std::string_view::npos) parameter = findIgnoringCase(value, kFileNameParameter);
    if (parameter == std::string_view::npos) return;
    if (parameter < inlineAt) record.isInline = false;  // the word belongs to the name
    const auto equals = value.find('=', parameter + kFileNameParameter.size());
    if (equals == std::string_view::npos) return;
    const std::string_view name = trimLeft(value.substr(equals + 1), kBlanks);
    if (name.empty()) return;
    if (name.front() != '"') {
        storeFileName(upTo(name, ';'), record.fileName);
    } else if (const auto quoted = quotedTextOf(name); quoted && !quoted->empty()) {
        storeFileName(*quoted, record.fileName);
    }
}

struct VisitedHeader {
    std::string_view name;
    void (*take)(CapturedHeaders& record, std::string_view value);
};

constexpr VisitedHeader kRequestHeaders[] = {
    {"Referer", takeWhole<&CapturedHeaders::referer>},
    {"Cookie", takeWhole<&CapturedHeaders::cookie>},
    {"User-Agent", takeWhole<&CapturedHeaders::userAgent>},
    {"Authorization", takeAuthorization},
};

constexpr VisitedHeader kResponseHeaders[] = {
    {"content-length", takeContentLength},
    {"Content-Encoding", takeContentEncoding},
    {"content-range", takeContentRange},
    {"Content-Type", takeContentType},
    {"Content-Disposition", takeContentDisposition},
};

template <std::size_t Count>
void take(const VisitedHeader (&headers)[Count], CapturedHeaders& record, std::string_view name,
          std::string_view value) {
    for (const VisitedHeader& header : headers)
        if (equalsIgnoringCase(name, header.name)) return header.take(record, value);
}

/// The value of the first Content-Type line of a header block.
std::string_view contentTypeLineOf(std::string_view block) noexcept {
    for (const std::string_view line : piecesOf(block, '\n')) {
        if (line.empty() || line == "\r") break;
        const std::string_view text = trimLeft(line, kBlanks);
        if (startsWithIgnoringCase(text, kContentTypeLine)) {
            const std::string_view value = trimLeft(text.substr(kContentTypeLine.size()), kBlanks);
            return value.ends_with('\r') ? value.substr(0, value.size() - 1) : value;
        }
    }
    return {};
}

}  // namespace

void CapturedHeaders::clear() noexcept {
    visitRequestHeaders = isAttachment = lengthFromRange = isInline = isGzip = isEncoded = postBodyUnavailable =
        false;
    contentLength = 0;
    for (std::string* text : {&url, &referer, &cookie, &authorization, &userAgent, &fileName, &contentTypeName,
                              &contentType, &postContentType})
        clearText(*text);
}

void visitHeader(CapturedHeaders& record, std::string_view name, std::string_view value) {
    name = upToNul(name);
    value = upToNul(value);
    if (record.visitRequestHeaders)
        take(kRequestHeaders, record, name, value);
    else
        take(kResponseHeaders, record, name, value);
}

PostStream splitPostStream(std::string_view bytes) noexcept {
    const auto blankLine = bytes.find(kBlankLine);
    if (blankLine == std::string_view::npos) return {false, bytes, {}};
    return {true, bytes.substr(blankLine + kBlankLine.size()), contentTypeLineOf(bytes.substr(0, blankLine))};
}

bool isOnStorageHost(std::string_view url) noexcept {
    const auto mark = url.find("://");
    return mark != std::string_view::npos && contains(upTo(url.substr(mark + 3), '/'), kStorageHost);
}

}  // namespace zab
