// The body of one response, gathered chunk by chunk, up to where it counts for its kind.
//
// A body is read once, when it is complete: at its known length, at the kind's cap, at a mark behind which
// nothing counts, or when the response ends. So the chunks that it came in never show in the result, and the
// work is one pass over the bytes, however small they come. Memory: the bytes kept, never more than the length
// or cap. Fragments of HDS streams, whose size is nobody's choice, are counted and not kept.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "intercept/kinds.h"

namespace zab {

class BodyCollector {
  public:
    /// A body that claims more is not read.
    static constexpr std::int64_t kMostKnownBytes = 64 << 20;

    /// Wants nothing, and has no body that may be looked at.
    BodyCollector() noexcept = default;
    /// `contentLength` in bytes; 0 or less: unknown.
    BodyCollector(MediaKind kind, std::int64_t contentLength) noexcept;

    /// False: further bytes are not asked for, and would be dropped.
    [[nodiscard]] bool wantsMore() const noexcept { return state_ == State::collecting; }

    /// Takes the next chunk and gives the part of it that counts. When there is no memory for it,
    /// std::bad_alloc flies and the chunk is dropped.
    std::string_view add(std::string_view chunk);

    /// All that counts of the body, when nothing more comes; nothing when it may not be looked at: its length
    /// was not reached, or it was longer than a body of its kind is.
    [[nodiscard]] std::optional<std::string_view> whole() const noexcept;

  private:
    enum class State : std::uint8_t {
        collecting,
        complete,
        cut,      // of unknown length, and longer than what is kept
        refused,  // claims too much, or was not asked for
    };

    void keep(std::string_view bytes);
    [[nodiscard]] std::string_view kept() const noexcept { return {body_.data(), body_.size()}; }
    void lookForEnd(std::size_t from);

    MediaKind kind_ = MediaKind::none;
    State state_ = State::refused;
    bool lengthIsKnown_ = false;
    std::uint64_t limit_ = 0;     // bytes that count
    std::uint64_t received_ = 0;  // of these
    std::vector<char> body_;      // a string would take more than it is told to
};

}  // namespace zab
