// A media entry: one stream of a page that the download manager can be asked for; its kinds, extensions and
// links.
//
// Plain values. Texts are bytes, UTF-8 where their source is; an unknown text is empty, an unknown number 0.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

#include "binding/text.h"

namespace zab {

enum class EntryKind : std::uint8_t { video, audio };

/// The page that an entry belongs to, and what a request for it needs.
struct EntryPage {
    std::uint64_t documentId = 0;  // 0: none
    std::string url;
    std::string title;
    std::string referrer;
    std::string cookies;
    std::string userAgent;
    std::string namedBy;  // the address of the response that named it, for whose host the cookies are
};

struct MediaEntry {
    std::string link;       // an address, or one behind a LinkScheme
    std::string secondUrl;  // the sound of `link`, or the base of an HDS rendition
    std::string extra;      // what the scheme needs beside its address
    std::string description;
    std::string extension;  // without dot
    EntryKind kind = EntryKind::video;
    std::uint64_t size = 0;      // bytes
    std::uint32_t duration = 0;  // seconds
    std::uint32_t width = 0;     // pixels
    std::uint32_t height = 0;
    std::uint32_t bitrate = 0;  // bits per second
    /// An HLS playlist of segments that no master playlist has named so far.
    bool isBarePlaylist = false;
    bool inMenu = true;  // of the page's button; else kept for the commands. Decided when it is filed
    EntryPage page;
};

// Files that are media by themselves, and those of them that are sound alone. Any letter case.

inline constexpr std::string_view kMediaExtensions[] = {
    "3gp", "aac", "asf", "avi", "flv", "m4a", "m4v",  "mkv", "mov", "mp3",  "mp4", "mpe", "mpeg",
    "mpg", "mpa", "ogg", "ogv", "ra",  "rm",  "rmvb", "ts",  "wav", "webm", "wma", "wmv",
};

constexpr bool isMediaExtension(std::string_view extension) noexcept {
    return isOneOfIgnoringCase(extension, kMediaExtensions);
}

inline constexpr std::string_view kFlvExtension = "flv", kMp4Extension = "mp4", kTsExtension = "ts";
inline constexpr std::string_view kAudioExtensions[] = {"mp3", "wav", "m4a", "aac", "ra", "rm", "wma"};

constexpr bool isAudioExtension(std::string_view extension) noexcept {
    return isOneOfIgnoringCase(extension, kAudioExtensions);
}

constexpr EntryKind entryKindOf(std::string_view extension) noexcept {
    return isAudioExtension(extension) ? EntryKind::audio : EntryKind::video;
}

/// A number of an entry: beyond 32 bits, the limit.
constexpr std::uint32_t entryNumber(std::uint64_t value) noexcept {
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(value, UINT32_MAX));
}

/// The decimal digits at the start of `text`; 0 without any.
constexpr std::uint32_t entryNumber(std::string_view text) noexcept {
    return static_cast<std::uint32_t>(leadingDigits(text, UINT32_MAX).value_or(0));
}

// The module's own link schemes: what the download manager fetches and joins itself. Case matters.

enum class LinkScheme : std::uint8_t {
    youtubePairing0,  // the stream as it stands, joined in one of three ways
    youtubePairing1,
    youtubePairing2,
    youtubeLive,  // sequence-numbered streams of picture and sound
    hls,
    hlsWithAudio,  // the audio playlist is the entry's second URL
    hds,
    hdsFragment,  // a stream known by one of its fragments
    dash,
    dashAudio,
};

/// In the order of the enumeration.
inline constexpr std::string_view kLinkSchemes[] = {
    "ytatozab://",  "yta2tozab://", "yta3tozab://", "yta5tozab://", "hlstozab://",
    "hls2tozab://", "dhstozab://",  "dhs2tozab://", "mpdtozab://",  "mpdatozab://",
};
static_assert(std::size(kLinkSchemes) == static_cast<std::size_t>(LinkScheme::dashAudio) + 1);

constexpr std::string_view textOf(LinkScheme scheme) noexcept {
    return kLinkSchemes[static_cast<std::size_t>(scheme)];
}

/// Stands for the name of a fragment in the links of the scheme for HDS fragments.
inline constexpr std::string_view kHdsFragmentPattern = "Seg%ld-Frag%ld";

/// The address in a link: what stands behind one of these schemes, else all of it.
constexpr std::string_view addressOf(std::string_view link) noexcept {
    for (const std::string_view scheme : kLinkSchemes)
        if (link.starts_with(scheme)) return link.substr(scheme.size());
    return link;
}

/// The download manager puts a stream's pieces together, instead of fetching one file.
constexpr bool isStream(const MediaEntry& entry) noexcept {
    return addressOf(entry.link).size() != entry.link.size();
}

}  // namespace zab
