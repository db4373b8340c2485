// The module's own link schemes: what the download manager fetches and joins itself. Case matters.
#pragma once

#include <cstdint>
#include <iterator>
#include <string_view>

namespace zab {

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

}  // namespace zab
