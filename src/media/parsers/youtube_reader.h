// Where a watch page, a player response or a video-info reply keeps its streams and its title.
//
// Two shapes: the older stream maps, lists of streams whose fields are joined by "&" (written "\u0026" in a
// page), and the newer streaming data, JSON that may stand in a string (each quote behind a backslash) or be
// URL-encoded. A text is searched, not parsed, so that a page which changes around its streams is still read.
// Every search goes on where the last one ended: each costs one pass.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "media/parsers/url_unescape.h"

namespace zab {

class CYoutubeParser;

/// How a URL was written where it was found.
struct UrlCleaning {
    bool cutAtEscapedAmpersand;  // else each "\u0026" becomes "&"
    bool unescapeBackslashes;    // each "\\" becomes "\", before that
};

/// Every "\/" becomes "/", then `cleaning`; the URL ends at its first ",".
[[nodiscard]] std::u16string cleanStreamUrl(std::u16string url, const UrlCleaning& cleaning);

class YoutubeReader {
  public:
    /// Reads `text` up to its first NUL; what is found goes into `catalogue`. Both must outlive the reader.
    YoutubeReader(std::u16string_view text, CYoutubeParser& catalogue) noexcept;

    /// Every stream map of a page behind this marker.
    void readStreamMap(std::u16string_view marker, bool adaptive);
    /// Every stream map that a reply has as its parameter of this name.
    void readReplyMap(std::u16string_view name, bool adaptive);
    /// The streaming data behind any of its markers, tried until one gives a stream.
    void readStreamingData();

    // The title; nothing when it has no end.
    [[nodiscard]] std::optional<std::u16string> pageTitle();
    /// As pageTitle(), or from JSON that stands in a string.
    [[nodiscard]] std::optional<std::u16string> pageTitleInAnyForm();
    [[nodiscard]] std::optional<std::u16string> replyTitle();

    [[nodiscard]] bool names(std::u16string_view word) const noexcept { return text_.find(word) != text_.npos; }

  private:
    void readPieces(std::u16string_view map, std::u16string_view ampersand, bool adaptive);
    void readPiece(std::u16string_view piece, std::u16string_view ampersand, bool adaptive);
    void readStreamingDataBehind(std::u16string_view marker, bool encoded);
    void addStreamingUrl(std::u16string_view written);
    std::u16string plainUrl(std::u16string_view written, const UrlCleaning& cleaning);
    std::optional<std::u16string> titleBetween(std::u16string_view opening, std::u16string_view closing);

    std::u16string_view text_;
    CYoutubeParser& catalogue_;
    UrlUnescaper unescaper_;
};

/// The digits right behind the first "&itag=" of a URL; 0 without any.
[[nodiscard]] std::uint32_t itagInUrl(std::u16string_view url) noexcept;

}  // namespace zab
