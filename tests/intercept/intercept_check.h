// What holds for every header, address and response, whoever wrote them; for the fuzz targets.
#pragma once

#include <string>
#include <string_view>

#include "binding/text.h"
#include "intercept/decision.h"
#include "intercept/header_line.h"
#include "media/parsers/must.h"
#include "web/url.h"

namespace zabtest {

/// The next field of an input: each ends at a byte 0x1F, or with the input.
inline std::string_view nextField(std::string_view& rest) {
    const std::string_view field = zab::upTo(rest, '\x1F');
    rest.remove_prefix(field.size() < rest.size() ? field.size() + 1 : field.size());
    return field;
}

inline bool isPlain(std::string_view text) { return text.find('\0') == std::string_view::npos; }

inline void checkHeaderLine(std::string_view line) {
    zab::ResponseHeaderInfo info;
    info.fileName = info.contentType = info.contentTypeName = "before";
    const bool handled = zab::ParseResponseHeaderLine(info, line);
    must(info.contentLength >= 0);
    must(isPlain(info.fileName) && isPlain(info.contentType) && isPlain(info.contentTypeName));
    must(info.contentType.find(';') == std::string::npos);
    if (!handled) must(info.fileName == "before" && info.contentType == "before" && !info.isAttachment);
}

/// The fields are names and values in turn; the first byte chooses the mode.
inline void checkHeaderVisitor(std::string_view bytes) {
    zab::CapturedHeaders record;
    record.visitRequestHeaders = bytes.starts_with('\1');
    const bool request = record.visitRequestHeaders;
    for (std::string_view rest = bytes.substr(request ? 1 : 0); !rest.empty();) {
        const std::string_view name = nextField(rest);
        zab::visitHeader(record, name, nextField(rest));
    }
    must(record.contentLength >= 0);
    for (const auto* text : {&record.referer, &record.cookie, &record.fileName, &record.contentType,
                             &record.contentTypeName, &record.authorization})
        must(isPlain(*text));
    if (request)
        must(record.fileName.empty() && record.contentType.empty() && !record.isAttachment);
    else
        must(record.cookie.empty() && record.referer.empty() && record.authorization.empty());
    if (record.lengthFromRange) must(record.contentLength > 0);

    must(bytes.ends_with(zab::splitPostStream(bytes).body));
}

inline bool liesIn(std::string_view part, std::string_view whole) {
    return part.empty() ||
           (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

inline void checkUrl(std::string_view url) {
    for (const std::string_view part :
         {zab::schemeOf(url), zab::hostOf(url), zab::behindHost(url), zab::pathOf(url), zab::lastSegmentOf(url),
          zab::extensionOf(url), zab::queryParameter(url, "el").value_or(std::string_view{})})
        must(liesIn(part, url));
    must(zab::behindHost(url).starts_with(zab::pathOf(url)));
    must(zab::pathOf(url).ends_with(zab::lastSegmentOf(url)));

    std::string normal(url);
    zab::NormalizeDefaultPort(normal);
    must(normal.size() == url.size() || normal.size() + 3 == url.size() || normal.size() + 4 == url.size());
    if (normal.size() != url.size()) must(zab::hostOf(normal).size() <= zab::hostOf(url).size());
}

/// Two bytes of choices, then URL, content type, file name, the type's name, and extension list.
inline void checkDecide(std::string_view bytes) {
    if (bytes.size() < 2) return;
    const auto flags = static_cast<unsigned char>(bytes[0]);
    const auto size = static_cast<unsigned char>(bytes[1]);
    bytes.remove_prefix(2);
    zab::ResponseFacts facts;
    facts.status = (flags & 1) != 0 ? 200 : 206;
    facts.loadFlags = ((flags & 2) != 0 ? zab::kDocumentLoad : 0) | ((flags & 4) != 0 ? zab::kTopLevelLoad : 0);
    facts.isAttachment = (flags & 8) != 0;
    facts.isEncoded = (flags & 16) != 0;
    facts.postBodyUnavailable = (flags & 32) != 0;
    facts.contentLength = std::int64_t{size} << (size & 31);
    facts.url = nextField(bytes);
    facts.contentType = nextField(bytes);
    facts.fileName = nextField(bytes);
    facts.contentTypeName = nextField(bytes);

    zab::GivenSettings settings;
    settings.extensionList = std::string(nextField(bytes));
    const zab::Decision on = zab::decide(facts, settings);
    must((on.outcome == zab::Outcome::transfer) == (on.flags != 0));
    must((on.outcome == zab::Outcome::listen) == (on.listener != zab::MediaKind::none));
    must(!(on.offer && on.outcome != zab::Outcome::browser));
    must(on.contentLength == (facts.isEncoded ? 0 : facts.contentLength));
    must(!zab::sentenceOf(on).empty());

    settings.integration = false;
    const zab::Decision off = zab::decide(facts, settings);
    must(off.outcome != zab::Outcome::transfer);
    must(off.extension == on.extension);
    const zab::Decision failed = zab::afterFailedTransfer(facts, settings);
    must(failed.offer == off.offer && failed.listener == off.listener);
    if (on.outcome != zab::Outcome::transfer) must(on.offer == off.offer && on.listener == off.listener);
}

}  // namespace zabtest
