// Text in the browser's own containers: an owner that finishes itself, and one reader for what the browser
// passes.
//
// A string that the browser passes may be an unterminated part of a larger buffer: always pointer and length,
// never a search for the terminator. A view is valid until the string is next changed.
#pragma once

#include <string>
#include <string_view>

#include "binding/runtime.h"

namespace zab {

/// Up to the terminator (of lengths), behind the end (of offsets).
inline constexpr std::uint32_t kAll = 0xFFFFFFFF;

/// What a string argument holds; empty for null or when the runtime cannot tell.
std::string_view viewOf(const nsACString* text) noexcept;
std::u16string_view viewOf(const nsAString* text) noexcept;

/// Writes a whole string; false when the runtime has no such operation or there is no string.
bool assign(nsACString* text, std::string_view value) noexcept;
bool assign(nsAString* text, std::u16string_view value) noexcept;

/// A narrow string container on the stack, empty at first. Where the runtime cannot make one, or not with the
/// text that it is to hold, it is not ready: it must not be passed to the browser.
class NarrowContainer {
  public:
    NarrowContainer() noexcept;
    explicit NarrowContainer(std::string_view text) noexcept : NarrowContainer() {
        holds_ = assign(get(), text);
    }
    ~NarrowContainer();
    NarrowContainer(const NarrowContainer&) = delete;
    NarrowContainer& operator=(const NarrowContainer&) = delete;

    [[nodiscard]] bool ready() const noexcept { return made_ && holds_; }
    /// The string as the browser takes it; null when not ready.
    [[nodiscard]] nsACString* get() noexcept;
    [[nodiscard]] std::string_view view() const noexcept;

  private:
    StringContainerStorage storage_{};
    bool made_ = false;
    bool holds_ = true;
};

/// The same for wide text.
class WideContainer {
  public:
    WideContainer() noexcept;
    explicit WideContainer(std::u16string_view text) noexcept : WideContainer() {
        holds_ = assign(get(), text);
    }
    ~WideContainer();
    WideContainer(const WideContainer&) = delete;
    WideContainer& operator=(const WideContainer&) = delete;

    [[nodiscard]] bool ready() const noexcept { return made_ && holds_; }
    [[nodiscard]] nsAString* get() noexcept;
    [[nodiscard]] std::u16string_view view() const noexcept;

  private:
    StringContainerStorage storage_{};
    bool made_ = false;
    bool holds_ = true;
};

}  // namespace zab
