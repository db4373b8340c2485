// A media entry: one stream of a page that the download manager can be asked for.
//
// Plain values. Texts are bytes, UTF-8 where their source is; an unknown text is empty, an unknown number 0.
#pragma once

#include <algorithm>
#include <cstdint>
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
};

struct MediaEntry {
    std::string link;       // an address, or one behind a scheme of link_schemes.h
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
    EntryPage page;
};

inline constexpr std::string_view kAudioExtensions[] = {"mp3", "wav", "m4a", "aac", "ra", "rm", "wma"};

constexpr EntryKind entryKindOf(std::string_view extension) noexcept {
    return isOneOfIgnoringCase(extension, kAudioExtensions) ? EntryKind::audio : EntryKind::video;
}

/// A number of an entry: beyond 32 bits, the limit.
constexpr std::uint32_t entryNumber(std::uint64_t value) noexcept {
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(value, UINT32_MAX));
}

/// The decimal digits at the start of `text`; 0 without any.
constexpr std::uint32_t entryNumber(std::string_view text) noexcept {
    return static_cast<std::uint32_t>(leadingDigits(text, UINT32_MAX).value_or(0));
}

}  // namespace zab
