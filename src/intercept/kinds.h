// Which responses get a body listener, and of which kind: one table, in order of priority.
//
// Names, types and URLs are tested on views; only the page kind asks for a setting, and only when all else is
// right for it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "settings/settings_view.h"

namespace zab {

enum class MediaKind : std::uint8_t {
    none,
    page,
    linkText,
    youtubeVideoInfo,
    youtubeWatchPage,
    fragmentManifest,
    hls,
    vimeoPlayer,
    hds,
    youtubeDash,
    dash,
    facebook,
    hdsFragment,
    sniff,
};
inline constexpr std::size_t kMediaKindCount = static_cast<std::size_t>(MediaKind::sniff) + 1;

/// What the kinds are chosen by. `rest`, `path` and `host` are parts of `url`.
struct KindFacts {
    std::string_view url;
    std::string_view host;
    std::string_view rest;  // behind host and port
    std::string_view path;
    std::string_view contentType;
    std::string_view nameExtension;  // of the file name, else of the path
    std::string_view classCode;      // of the content type
    std::int64_t contentLength = 0;  // 0: unknown, below every limit
    std::uint32_t status = 0;
    std::uint32_t loadFlags = 0;
};

/// The kind of the first row that applies, or none. Does not look at the servers that get no listener.
MediaKind mediaKindOf(const KindFacts& facts, const SettingsView& settings);

/// Whether the body is a video site's own data about its films.
constexpr bool isSiteKind(MediaKind kind) noexcept {
    return kind == MediaKind::youtubeVideoInfo || kind == MediaKind::youtubeWatchPage ||
           kind == MediaKind::youtubeDash || kind == MediaKind::vimeoPlayer || kind == MediaKind::facebook;
}

std::string_view mediaKindName(MediaKind kind) noexcept;

/// How many bytes of a body of unknown length are read: a listener that holds more is done. 0: no cap, the kind
/// needs a known length.
std::uint32_t mediaKindCapBytes(MediaKind kind) noexcept;

/// A request of the video CDN for a part of a stream that a catalogue may list. It is no download of its own.
bool isVideoPlayback(const KindFacts& facts) noexcept;

/// Whether this is the address of one of YouTube's DASH manifests.
bool isYouTubeManifest(std::string_view url) noexcept;

/// The name "Seg" number "-Frag" number in the last segment of a path: where it begins and ends.
struct HdsFragmentName {
    std::size_t begin, end;
};
std::optional<HdsFragmentName> findHdsFragmentName(std::string_view segment) noexcept;

}  // namespace zab
