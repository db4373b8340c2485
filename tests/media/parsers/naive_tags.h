// The rules of the tag scanner, walked through step by step with no regard to cost: what the indexed scanner
// must agree with on every text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "binding/text.h"

namespace zabtest {

class NaiveTags {
  public:
    explicit NaiveTags(std::string_view text) : text_(text) {}

    static constexpr std::size_t kNone = std::string_view::npos;

    [[nodiscard]] std::size_t nextTag(std::size_t from) const { return text_.find('<', from); }
    [[nodiscard]] std::size_t skipSpace(std::size_t at) const {
        while (at < text_.size() && zab::isWhiteSpace(text_[at])) ++at;
        return at;
    }
    [[nodiscard]] bool hasName(std::size_t at, std::string_view name) const {
        return at <= text_.size() && zab::startsWithIgnoringCase(text_.substr(at), name);
    }
    /// Behind the name of a start tag at the "<" `at`, or kNone.
    [[nodiscard]] std::size_t behindStart(std::size_t at, std::string_view name) const {
        const std::size_t begin = skipSpace(at + 1);
        return hasName(begin, name) && endsName(begin + name.size()) ? begin + name.size() : kNone;
    }
    [[nodiscard]] bool isEnd(std::size_t at, std::string_view name) const {
        const std::size_t slash = skipSpace(at + 1);
        return has(slash, '/') && hasName(slash + 1, name) && endsName(slash + 1 + name.size());
    }

    /// Reads one attribute list; calls `take(name, value)` for each; gives where the reading ended.
    template <class Take>
    std::size_t attributes(std::size_t at, Take take) const {
        for (;;) {
            at = skipSpace(at);
            std::size_t end = at;
            while (end < text_.size() && isNameChar(text_[end], end == at)) ++end;
            const std::size_t equals = skipSpace(end);
            if (end == at || !has(equals, '=')) return at;
            std::size_t begin = skipSpace(equals + 1), behind, stop;
            if (has(begin, '"') || has(begin, '\'')) {
                stop = text_.find(text_[begin], begin + 1);
                if (stop == kNone) return at;
                ++begin;
                behind = stop + 1;
            } else {
                stop = begin;
                while (stop < text_.size() && !zab::isWhiteSpace(text_[stop]) && text_[stop] != '/' &&
                       text_[stop] != '>')
                    ++stop;
                behind = stop;
            }
            take(text_.substr(at, end - at), text_.substr(begin, stop - begin));
            at = behind;
        }
    }

    /// The content behind the first ">" from `from` on; false without one or without a close tag.
    bool content(std::size_t from, std::string_view name, std::string_view& result) const {
        const std::size_t begin = text_.find('>', from);
        if (begin == kNone) return false;
        for (auto at = text_.find("</", begin); at != kNone; at = text_.find("</", at + 1)) {
            const std::size_t close = skipSpace(at + 2);
            if (!hasName(close, name) || !has(skipSpace(close + name.size()), '>')) continue;
            result = text_.substr(begin + 1, at - begin - 1);
            return true;
        }
        return false;
    }

    [[nodiscard]] bool has(std::size_t at, char c) const { return at < text_.size() && text_[at] == c; }
    [[nodiscard]] std::string_view text() const { return text_; }

  private:
    static bool isNameChar(char c, bool first) {
        return zab::isLetter(c) || c == '_' || (!first && (zab::isDigit(c) || c == '-' || c == ':'));
    }
    [[nodiscard]] bool endsName(std::size_t at) const {
        return at < text_.size() && (text_[at] == '>' || zab::isWhiteSpace(text_[at]));
    }

    std::string_view text_;
};

}  // namespace zabtest
