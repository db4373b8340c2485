#include "media/capture/body_collector.h"

#include <algorithm>

#include "binding/text.h"

namespace zab {
namespace {

constexpr std::string_view kEndOfHtml = "</html>";
constexpr std::string_view kEndOfPlaylist = "#EXT-X-ENDLIST";

constexpr bool isKept(MediaKind kind) noexcept { return kind != MediaKind::hdsFragment; }

/// Of a body of unknown length.
std::uint64_t mostBytesOf(MediaKind kind) noexcept {
    const std::uint32_t cap = mediaKindCapBytes(kind);
    return cap == 0 ? UINT64_MAX : cap;
}

}  // namespace

BodyCollector::BodyCollector(MediaKind kind, std::int64_t contentLength) noexcept
    : kind_(kind),
      state_(State::collecting),
      // Of a page the first bytes are read, whatever its length.
      lengthIsKnown_(contentLength > 0 && kind != MediaKind::page),
      limit_(lengthIsKnown_ ? static_cast<std::uint64_t>(contentLength) : mostBytesOf(kind)) {
    if (lengthIsKnown_ && contentLength > kMostKnownBytes && isKept(kind)) state_ = State::refused;
}

std::string_view BodyCollector::add(std::string_view chunk) {
    if (!wantsMore()) return {};
    const std::string_view counts =
        chunk.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(chunk.size(), limit_ - received_)));
    if (isKept(kind_)) keep(counts);
    received_ += counts.size();
    if (lengthIsKnown_ && received_ == limit_) state_ = State::complete;
    if (!lengthIsKnown_ && counts.size() < chunk.size()) state_ = State::cut;
    if (kind_ == MediaKind::facebook) lookForEnd(body_.size() - counts.size());
    return counts;
}

/// Doubles the memory where it must grow, but never beyond the limit.
void BodyCollector::keep(std::string_view bytes) {
    const std::size_t needed = body_.size() + bytes.size();
    const std::uint64_t doubled = std::min<std::uint64_t>(limit_, body_.capacity() * 2);
    if (needed > body_.capacity()) body_.reserve(std::max(needed, static_cast<std::size_t>(doubled)));
    body_.insert(body_.end(), bytes.begin(), bytes.end());
}

void BodyCollector::lookForEnd(std::size_t from) {
    const auto mark = kept().find(kEndOfHtml, from - std::min(from, kEndOfHtml.size() - 1));
    if (mark == std::string_view::npos) return;
    body_.resize(mark + kEndOfHtml.size());
    state_ = State::complete;
}

std::optional<std::string_view> BodyCollector::whole() const noexcept {
    const bool isHls = kind_ == MediaKind::hls;
    bool counts = false;
    switch (state_) {
        case State::collecting: counts = !lengthIsKnown_ || isHls; break;
        case State::complete: counts = true; break;
        // A playlist that was cut tells too little, unless its end was among what was read.
        case State::cut: counts = !isHls || contains(upToNul(kept()), kEndOfPlaylist); break;
        case State::refused: break;
    }
    return counts ? std::optional(kept()) : std::nullopt;
}

}  // namespace zab
