// The module's owned strings: a copy that is exactly as long as its text, and that a reader never sees as null.
//
// Empty text is a null buffer and length 0; everything else is one buffer of length + 1 characters, terminated.
// Text ends at its first NUL. Out of memory is silent: the string is then empty.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "binding/text.h"

namespace zab {

template <class C>
class OwnedString {
  public:
    OwnedString() noexcept = default;
    virtual ~OwnedString() = default;
    OwnedString(const OwnedString&) = delete;
    OwnedString& operator=(const OwnedString&) = delete;
    OwnedString(OwnedString&& other) noexcept
        : data_(std::move(other.data_)), length_(std::exchange(other.length_, 0)) {}
    OwnedString& operator=(OwnedString&& other) noexcept {
        data_ = std::move(other.data_);
        length_ = std::exchange(other.length_, 0);
        return *this;
    }

    /// Null is empty text. `text` may lie in the string itself.
    void Set(const C* text) noexcept {
        Set(text == nullptr ? std::basic_string_view<C>{} : std::basic_string_view<C>(text));
    }
    void Set(std::basic_string_view<C> text) noexcept {
        const auto kept = upToNul(text);
        auto copy = copyOf(kept);
        length_ = copy ? static_cast<std::uint32_t>(kept.size()) : 0;
        data_ = std::move(copy);
    }

    /// Terminated; valid until the string changes or ends.
    [[nodiscard]] const C* Get() const noexcept { return length_ != 0 ? data_.get() : &emptyText_; }
    [[nodiscard]] std::uint32_t length() const noexcept { return length_; }
    [[nodiscard]] bool empty() const noexcept { return length_ == 0; }
    [[nodiscard]] std::basic_string_view<C> view() const noexcept { return {Get(), length_}; }

  private:
    static std::unique_ptr<C[]> copyOf(std::basic_string_view<C> text) noexcept {
        if (text.empty() || text.size() > std::numeric_limits<std::uint32_t>::max()) return nullptr;
        std::unique_ptr<C[]> copy(new (std::nothrow) C[text.size() + 1]);
        if (!copy) return nullptr;
        text.copy(copy.get(), text.size());
        copy[text.size()] = C(0);
        return copy;
    }

    std::unique_ptr<C[]> data_;
    std::uint32_t length_ = 0;  // characters, without the terminator
    const C emptyText_ = C(0);
};

/// Narrow text: ANSI or UTF-8, as its user says.
class MyStrClass : public OwnedString<char> {};

/// UTF-16 text.
class MyWStrClass : public OwnedString<char16_t> {};

}  // namespace zab
