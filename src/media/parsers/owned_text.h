// A parser's own copy of a text body. The records of a parse hold views into it instead of strings of their
// own: a playlist of 24,000 segments costs one allocation for its text, not 48,000.
//
// The copy ends at the body's first NUL. It stays where it is when its owner is moved, and every view into it
// ends with the owner.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "binding/text.h"

namespace zab {

class OwnedText {
  public:
    /// False when there is no memory for the copy; the text is empty then.
    [[nodiscard]] bool assign(std::string_view body) noexcept {
        const std::string_view text = upToNul(body);
        text_.reset(text.empty() ? nullptr : new (std::nothrow) char[text.size()]);
        size_ = text_ == nullptr ? 0 : text.size();
        if (size_ != 0) std::memcpy(text_.get(), text.data(), size_);
        return size_ == text.size();
    }

    [[nodiscard]] std::string_view view() const noexcept { return {text_.get(), size_}; }

  private:
    std::unique_ptr<char[]> text_;
    std::size_t size_ = 0;
};

}  // namespace zab
