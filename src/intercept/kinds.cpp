#include "intercept/kinds.h"

#include <algorithm>
#include <iterator>

#include "binding/text.h"
#include "intercept/load_types.h"
#include "web/url.h"

namespace zab {
namespace {

constexpr std::string_view kYouTube = "youtube.com";
constexpr std::string_view kVideoCdn = "googlevideo.com";
constexpr std::string_view kManifestHost = "manifest.googlevideo.com";
constexpr std::string_view kVimeoPlayer = "player.vimeo.com";
constexpr std::string_view kFacebook = "facebook.com";

constexpr std::string_view kVideoInfoPath = "/get_video_info?";
constexpr std::string_view kVideoInfoApiPath = "/api_video_info?";
constexpr std::string_view kWatchPath = "/watch?";
constexpr std::string_view kPlaybackPath = "/videoplayback?";
constexpr std::string_view kManifestPath = "/api/manifest/";
constexpr std::string_view kVimeoVideoPath = "/video";
constexpr std::string_view kFacebookPath = "/ajax/";
constexpr std::string_view kHlsEnding = ".m3u8";

constexpr std::uint32_t kOk = 200;
constexpr std::int64_t kLinkTextLimitBytes = 2'048;
constexpr std::int64_t kSmallManifestLimitBytes = 100'001;  // fragment manifests, HDS, XML of unknown kind
constexpr std::int64_t kDashLimitBytes = 3'000'001;
constexpr std::int64_t kSniffLimitBytes = 499'001;

constexpr std::string_view kLinkTextExtensions[] = {"ram", "rpm", "pls", "asx", "wax", "wvx"};
constexpr std::string_view kLinkTextTypes[] = {
    "audio/x-scpls", "audio/x-pn-realaudio", "video/x-ms-asf", "video/x-ms-wvx", "audio/x-ms-wax",
};
constexpr std::string_view kHlsTypes[] = {
    "audio/mpegurl",   "application/x-mpegURL", "application/vnd.apple.mpegurl",
    "audio/x-mpegurl", "application/mpegurl",   "video/x-mpegurl",
    "video/mpegurl",
};
constexpr std::string_view kDashTypes[] = {"application/dash+xml", "video/vnd.mpeg.dash.mpd"};
/// What a page is made of, and what a sniffer for media cannot tell more about.
constexpr std::string_view kTypesNotSniffed[] = {
    "text/html",
    "text/css",
    "text/plain",
    "text/javascript",
    "application/javascript",
    "application/x-javascript",
    "application/ecmascript",
    "application/json",
    "application/octet-stream",
    "binary/octet-stream",
    "application/pdf",
    "application/zip",
    "application/x-zip-compressed",
    "application/x-gzip",
    "application/gzip",
    "application/x-shockwave-flash",
    "application/wasm",
    "application/font",
    "application/x-font",
    "font/",
    "image/",
};

/// Whether the name or the content type has this extension.
bool hasExtension(const KindFacts& facts, std::string_view extension) noexcept {
    return equalsIgnoringCase(facts.nameExtension, extension) || equalsIgnoringCase(facts.classCode, extension);
}

bool isOn(const KindFacts& facts, std::string_view host) noexcept { return isHostOrBelow(facts.host, host); }

bool isOnYouTubeOrCdn(const KindFacts& facts) noexcept {
    return isOn(facts, kYouTube) || isOn(facts, kVideoCdn);
}

bool isVimeoVideo(const KindFacts& facts) noexcept {
    return facts.rest.starts_with(kVimeoVideoPath) && isOn(facts, kVimeoPlayer);
}

bool isPage(const KindFacts& facts) {
    return (facts.loadFlags & kTopLevelLoad) != 0 && facts.status == kOk &&
           startsWithIgnoringCase(facts.contentType, "text/html");
}

bool isLinkText(const KindFacts& facts) {
    return facts.contentLength < kLinkTextLimitBytes &&
           (startsWithOneOf(facts.contentType, kLinkTextTypes) ||
            isOneOfIgnoringCase(facts.nameExtension, kLinkTextExtensions));
}

bool isYouTubeVideoInfo(const KindFacts& facts) {
    const bool plain = facts.rest.starts_with(kVideoInfoPath);
    if (!plain && !facts.rest.starts_with(kVideoInfoApiPath)) return false;
    return isOnYouTubeOrCdn(facts) && !(plain && queryParameter(facts.url, "el") == "adunit");
}

bool isYouTubeWatchPage(const KindFacts& facts) {
    return facts.rest.starts_with(kWatchPath) && isOnYouTubeOrCdn(facts) &&
           startsWithIgnoringCase(facts.contentType, "application/json") &&
           (contains(facts.url, "?v=") || contains(facts.url, "&v=") || contains(facts.url, "&spf="));
}

bool isFragmentManifest(const KindFacts& facts) {
    return startsWithIgnoringCase(facts.contentType, "application/vnd.lumberjack.manifest") &&
           facts.contentLength < kSmallManifestLimitBytes;
}

bool isHls(const KindFacts& facts) {
    return hasExtension(facts, "m3u") || hasExtension(facts, "m3u8") ||
           startsWithOneOf(facts.contentType, kHlsTypes) ||
           (isVimeoVideo(facts) && endsWithIgnoringCase(facts.path, kHlsEnding) &&
            !startsWithIgnoringCase(facts.contentType, "text/plain"));
}

bool isVimeoPlayer(const KindFacts& facts) {
    return isVimeoVideo(facts) && !endsWithIgnoringCase(facts.path, kHlsEnding);
}

bool isHds(const KindFacts& facts) {
    return facts.contentLength < kSmallManifestLimitBytes && hasExtension(facts, "f4m");
}

bool isYouTubeDash(const KindFacts& facts) { return isYouTubeManifest(facts.url); }

bool isDash(const KindFacts& facts) {
    return facts.contentLength < kDashLimitBytes &&
           (hasExtension(facts, "mpd") || startsWithOneOf(facts.contentType, kDashTypes));
}

bool isFacebook(const KindFacts& facts) {
    return facts.rest.starts_with(kFacebookPath) && isOn(facts, kFacebook);
}

bool isHdsFragment(const KindFacts& facts) { return findHdsFragmentName(lastSegmentOf(facts.url)).has_value(); }

bool isXml(std::string_view type) noexcept {
    // "text/xml" is one of the types with "/xml".
    return findIgnoringCase(type, "/xml") != std::string_view::npos ||
           findIgnoringCase(type, "+xml") != std::string_view::npos;
}

bool isToBeSniffed(const KindFacts& facts) {
    if (startsWithOneOf(facts.contentType, kTypesNotSniffed) || isVideoPlayback(facts)) return false;
    return facts.contentLength < (isXml(facts.contentType) ? kSmallManifestLimitBytes : kSniffLimitBytes);
}

struct KindRow {
    MediaKind kind;
    std::string_view name;
    bool (*applies)(const KindFacts& facts);
    std::uint32_t capBytes;  // of a body of unknown length; 0: none
};

// The page and the link text come behind the kinds that know their bodies: only what none of those wants is
// read for links.
constexpr KindRow kKinds[] = {
    {MediaKind::youtubeVideoInfo, "YouTube video info", isYouTubeVideoInfo, 1'000'000},
    {MediaKind::youtubeWatchPage, "YouTube watch page", isYouTubeWatchPage, 2'000'000},
    {MediaKind::fragmentManifest, "fragment manifest", isFragmentManifest, 500'000},
    {MediaKind::hls, "HLS", isHls, 2'000'000},
    {MediaKind::vimeoPlayer, "Vimeo player", isVimeoPlayer, 2'000'000},
    {MediaKind::hds, "HDS", isHds, 500'000},
    {MediaKind::youtubeDash, "YouTube DASH manifest", isYouTubeDash, 2'000'000},
    {MediaKind::dash, "DASH", isDash, 3'000'000},
    {MediaKind::facebook, "Facebook", isFacebook, 3'000'000},
    {MediaKind::hdsFragment, "HDS fragment", isHdsFragment, 0},
    {MediaKind::page, "page", isPage, 20'480},
    {MediaKind::linkText, "link text", isLinkText, 2'048},
    {MediaKind::sniff, "sniff", isToBeSniffed, 10'000},
};

constexpr bool everyKindHasOneRow() noexcept {
    for (std::size_t kind = 1; kind < kMediaKindCount; ++kind) {
        int rows = 0;
        for (const KindRow& row : kKinds) rows += row.kind == static_cast<MediaKind>(kind) ? 1 : 0;
        if (rows != 1) return false;
    }
    return std::size(kKinds) + 1 == kMediaKindCount;
}
static_assert(everyKindHasOneRow());

const KindRow* rowOf(MediaKind kind) noexcept {
    const auto row =
        std::find_if(std::begin(kKinds), std::end(kKinds), [=](auto& r) { return r.kind == kind; });
    return row == std::end(kKinds) ? nullptr : row;
}

std::size_t digitsAt(std::string_view text, std::size_t from) noexcept {
    std::size_t end = from;
    while (end < text.size() && isDigit(text[end])) ++end;
    return end - from;
}

}  // namespace

MediaKind mediaKindOf(const KindFacts& facts, const SettingsView& settings) {
    for (const KindRow& row : kKinds) {
        if (!row.applies(facts)) continue;
        if (row.kind != MediaKind::page || settings.panelViewFlag() == 1) return row.kind;
    }
    return MediaKind::none;
}

std::string_view mediaKindName(MediaKind kind) noexcept {
    const KindRow* row = rowOf(kind);
    return row == nullptr ? std::string_view{} : row->name;
}

std::uint32_t mediaKindCapBytes(MediaKind kind) noexcept {
    const KindRow* row = rowOf(kind);
    return row == nullptr ? 0 : row->capBytes;
}

bool isVideoPlayback(const KindFacts& facts) noexcept {
    return facts.rest.starts_with(kPlaybackPath) && contains(facts.rest, "itag=") && isOn(facts, kVideoCdn);
}

bool isYouTubeManifest(std::string_view url) noexcept {
    return behindHost(url).starts_with(kManifestPath) && isHostOrBelow(hostOf(url), kManifestHost);
}

std::optional<HdsFragmentName> findHdsFragmentName(std::string_view segment) noexcept {
    constexpr std::string_view kSeg = "Seg";
    constexpr std::string_view kFrag = "-Frag";
    std::size_t begin = segment.find(kSeg);
    while (begin != std::string_view::npos) {
        const std::size_t number = begin + kSeg.size();
        const std::size_t behindNumber = number + digitsAt(segment, number);
        if (behindNumber != number && segment.substr(behindNumber).starts_with(kFrag)) {
            const std::size_t fragment = behindNumber + kFrag.size();
            const std::size_t digits = digitsAt(segment, fragment);
            if (digits != 0) return HdsFragmentName{begin, fragment + digits};
        }
        begin = segment.find(kSeg, behindNumber);
    }
    return std::nullopt;
}

}  // namespace zab
