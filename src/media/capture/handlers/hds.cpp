// HDS manifests: one entry for each picture height. A protected stream is not offered.

#include "media/parsers/hds.h"

#include <algorithm>

#include "binding/interface_ptr.h"
#include "binding/text.h"
#include "media/capture/descriptions.h"
#include "media/capture/handlers/handlers.h"
#include "media/parsers/whole_number.h"
#include "page/media_entry.h"
#include "web/url_resolve.h"
#include "web/xml_text.h"

namespace zab {
namespace {

/// Begins with a tag, and has one that is a manifest by its first letters.
bool isManifest(std::string_view text) noexcept {
    constexpr std::string_view kManifest = "manifest";
    text = trimLeft(text);
    if (!text.starts_with('<')) return false;
    while (!text.empty()) {
        text = trimLeft(text.substr(1));
        if (startsWithIgnoringCase(text, kManifest)) return true;
        text = text.substr(std::min(text.find('<'), text.size()));
    }
    return false;
}

std::uint32_t secondsOf(std::string_view written) {
    double seconds = 0;
    scanDouble(written, seconds);
    const std::int64_t whole = wholePart(seconds).value_or(0);
    return entryNumber(static_cast<std::uint64_t>(std::max<std::int64_t>(whole, 0)));
}

std::string extraOf(const F4MMedia& media) {
    constexpr std::string_view kParts[] = {"<bootstrapInfo>", "</bootstrapInfo><metadata>", "</metadata>"};
    return std::string(kParts[0])
        .append(media.bootstrap)
        .append(kParts[1])
        .append(media.metadata)
        .append(kParts[2]);
}

}  // namespace

void offerHds(std::string_view body, CaptureRun& run) {
    if (!isManifest(upToNul(body))) return;
    const InterfacePtr<CF4MParser> parser(new CF4MParser);
    if (!parser->parse(body) || parser->hasDrm != 0 || parser->hasPv != 0) return;
    const std::string& url = run.context().url;
    const std::string base = parser->baseUrl.empty() ? url : resolveUrl(url, addressInXml(parser->baseUrl));
    const std::uint32_t duration = secondsOf(parser->duration);
    for (const F4MMedia& media : parser->media) {
        if (media.hidden != 0) continue;
        MediaEntry entry = run.entry();
        entry.link = std::string(textOf(LinkScheme::hds)).append(url);
        entry.secondUrl = resolveUrl(base, addressInXml(media.url));
        entry.extra = extraOf(media);
        const std::string name = std::string(media.height) + 'p';
        const std::string rate = media.bitrate.empty() ? "" : "bitrate " + std::string(media.bitrate);
        entry.description = joined({name, rate});
        entry.extension = kFlvExtension;
        entry.duration = duration;
        entry.height = entryNumber(media.height);
        entry.bitrate = entryNumber(leadingDigits(media.bitrate, UINT32_MAX).value_or(0) * 1000);
        if (!run.offer(std::move(entry))) return;
    }
}

}  // namespace zab
