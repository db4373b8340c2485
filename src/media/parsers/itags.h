// Itags, YouTube's format numbers: what each one carries, what it is called, and which belong together.
//
// Everything is looked up in one table (itags.cpp); nothing is allocated and nothing can fail. A number that
// the table does not know is an ordinary answer.
#pragma once

#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>
#include <type_traits>

namespace zab {

/// What the download manager is ready to take.
struct ItagWishes {
    bool adaptive = false;  // video without sound, to be joined with an audio track
    bool skipFlv = false;
    bool webm = false;
};

struct ItagDescription {
    std::u16string_view extension;
    std::string_view container;
    std::string_view label;  // picture quality, as the menu shows it
};

/// The container word of a known itag ("MP4", "FLV", "WEBM", "MKV", "3GP"), or nothing.
[[nodiscard]] std::optional<std::string_view> itagContainer(std::uint32_t itag) noexcept;

/// Whether the format is offered. Fields that the table does not hold for this itag stay as they were; some
/// formats are described though they are never offered.
bool itagDescribe(std::uint32_t itag, const ItagWishes& wishes, ItagDescription& description) noexcept;

/// 1 for video without sound, 0 for sound without video, `otherwise` for every other itag.
[[nodiscard]] int isAdaptiveVideo(std::uint32_t itag, int otherwise) noexcept;

/// Whether the progressive format shows the same picture as the adaptive one. An adaptive itag of which nothing
/// is known counts as having every progressive format for a twin.
[[nodiscard]] bool hasTwin(std::uint32_t progressive, std::uint32_t adaptive) noexcept;

/// Picks the audio track for one video: offer() every candidate in order until done().
///
/// Opus (249 to 251) serves the high-resolution WebM videos 303, 308, 313 and 315 alone and is then preferred
/// to AAC (139 to 141); every other video, WebM too, is paired with AAC.
class AudioPairing {
  public:
    explicit AudioPairing(std::uint32_t videoItag) noexcept;

    /// True: this candidate is the choice now, in place of any earlier one.
    bool offer(std::uint32_t audioItag) noexcept;
    [[nodiscard]] bool done() const noexcept { return done_; }

  private:
    std::uint32_t video_;
    std::uint32_t chosen_ = 0;
    bool opusAllowed_;
    bool done_ = false;
};

/// The element of `entries` whose sound goes with `videoItag`, or null. `itagOf(entry)` is the entry's itag; 0
/// passes it over.
template <class Entries, class ItagOf>
auto pickAudio(Entries& entries, std::uint32_t videoItag, ItagOf itagOf)
    -> std::remove_reference_t<decltype(*std::begin(entries))>* {
    std::remove_reference_t<decltype(*std::begin(entries))>* chosen = nullptr;
    AudioPairing pairing(videoItag);
    for (auto& entry : entries) {
        if (pairing.offer(itagOf(entry))) chosen = &entry;
        if (pairing.done()) break;
    }
    return chosen;
}

}  // namespace zab
