// "Where is the next such character, from here on?" over one text, each question in constant time whatever the
// order of the questions, so that nested or unclosed markup cannot make anyone search the same stretch again.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace zab {

class NextPlace {
  public:
    /// One pass over `text`, which must outlive this; an eighth of its size in memory.
    NextPlace(std::string_view text, char wanted)
        : text_(text), wanted_(wanted), fromBlock_(text.size() / kBlock + 1, std::string_view::npos) {
        for (std::size_t block = fromBlock_.size(); block-- > 0;) {
            const std::size_t within = inBlock(block * kBlock);
            const std::size_t behind = block + 1 < fromBlock_.size() ? fromBlock_[block + 1] : within;
            fromBlock_[block] = within != std::string_view::npos ? within : behind;
        }
    }

    /// The first place at or behind `from`, which lies in the text or at its end; npos: none.
    [[nodiscard]] std::size_t operator()(std::size_t from) const noexcept {
        const std::size_t within = inBlock(from);
        if (within != std::string_view::npos) return within;
        const std::size_t next = from / kBlock + 1;
        return next < fromBlock_.size() ? fromBlock_[next] : std::string_view::npos;
    }

  private:
    static constexpr std::size_t kBlock = 64;

    /// The first place from `from` to the end of its block.
    [[nodiscard]] std::size_t inBlock(std::size_t from) const noexcept {
        const std::size_t end = std::min(text_.size(), (from / kBlock + 1) * kBlock);
        const std::size_t at = text_.substr(from, end - from).find(wanted_);
        return at == std::string_view::npos ? at : from + at;
    }

    std::string_view text_;
    char wanted_;
    std::vector<std::size_t> fromBlock_;  // first place at or behind the start of each block
};

}  // namespace zab
