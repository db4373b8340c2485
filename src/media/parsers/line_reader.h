// Lines of a text: what stands before each line feed. What follows the last one is a line when it is not empty.
#pragma once

#include <string_view>

namespace zab {

class LineReader {
  public:
    constexpr explicit LineReader(std::string_view text) noexcept : rest_(text) {}

    /// The next line, without its line feed. False at the end; `line` stays as it was.
    constexpr bool next(std::string_view& line) noexcept {
        if (rest_.empty()) return false;
        line = rest_.substr(0, rest_.find('\n'));
        rest_.remove_prefix(line.size() < rest_.size() ? line.size() + 1 : line.size());
        return true;
    }

  private:
    std::string_view rest_;
};

}  // namespace zab
