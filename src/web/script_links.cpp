#include "web/script_links.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "binding/text.h"
#include "binding/utf.h"
#include "web/json_text.h"
#include "web/url.h"
#include "web/url_resolve.h"

namespace zab {
namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::size_t kLongestExtension = 5;
constexpr std::size_t kLongestTarget = 64;  // of a member chain that is looked at

bool isWordCharacter(char c) noexcept {
    return isLetter(c) || isDigit(c) || c == '_' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

// Words behind which a value begins, so that "/" opens a regular expression.
constexpr std::string_view kOperatorWords[] = {"return", "typeof", "case", "in",   "of", "delete",
                                               "void",   "throw",  "new",  "else", "do", "instanceof"};

bool isOperatorWord(std::string_view word) noexcept {
    return std::find(std::begin(kOperatorWords), std::end(kOperatorWords), word) != std::end(kOperatorWords);
}

// Escapes.

/// "u{41}", or as JSON writes it; `text` loses what was read.
std::optional<char32_t> takeScriptEscape(std::string_view& text) noexcept {
    if (text.substr(1, 1) != "{") return takeUnicodeEscape(text);
    const auto end = text.substr(0, 12).find('}');
    if (end == npos || end < 3 || end > 8) return std::nullopt;
    const auto value = hexDigits(text.substr(2), end - 2);
    if (value) text.remove_prefix(end + 1);
    return value;
}

struct SimpleEscape {
    char written, meant;
};
constexpr SimpleEscape kSimpleEscapes[] = {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'b', '\b'},
                                           {'f', '\f'}, {'v', '\v'}, {'0', '\0'}};

/// `text` stands behind a "\" and is not empty. Gives what it takes of it.
std::size_t appendEscape(std::string& result, std::string_view text) {
    const char c = text.front();
    if (c == '\n') return 1;  // the literal goes on in the next line
    if (c == '\r') return text.substr(1, 1) == "\n" ? 2 : 1;
    if (c == 'u') {
        std::string_view rest = text;
        if (const auto character = takeScriptEscape(rest)) {
            appendUtf8(result, *character);
            return text.size() - rest.size();
        }
    }
    if (c == 'x')
        if (const auto value = hexDigits(text.substr(1), 2)) {
            appendUtf8(result, *value);
            return 3;
        }
    for (const auto& row : kSimpleEscapes)
        if (row.written == c) {
            result += row.meant;
            return 1;
        }
    result += c;
    return 1;
}

std::string unescaped(std::string_view raw) {
    std::string result;
    result.reserve(raw.size());
    while (true) {
        const std::string_view plain = upTo(raw, '\\');
        result += plain;
        if (raw.size() - plain.size() < 2) return result;
        raw.remove_prefix(plain.size() + 1);
        raw.remove_prefix(appendEscape(result, raw));
    }
}

// What is an address.

bool hasOnlyAddressCharacters(std::string_view text) noexcept {
    return std::none_of(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) <= ' ' || c == '<' || c == '>' || c == '"' || c == '`' ||
               c == '\x7F';
    });
}

bool isAbsolute(std::string_view text) noexcept {
    const std::string_view scheme = splitReference(text).scheme;
    return isWebScheme(scheme) && !hostOf(text).empty();
}

bool isHostAndPath(std::string_view text) noexcept {
    if (!text.starts_with("//")) return false;
    const std::string_view host = upTo(text.substr(2), '/');
    return !host.empty() && (isLetter(host.front()) || isDigit(host.front())) && contains(host, ".");
}

bool isPathToFile(std::string_view text) noexcept {
    const bool isPath =
        (text.starts_with('/') && !text.starts_with("//")) || text.starts_with("./") || text.starts_with("../");
    if (!isPath || text.find_first_of("*^|()[]{}\\,;") != npos) return false;
    const std::string_view extension = extensionOf(lastSegmentOf(text));
    return !extension.empty() && extension.size() <= kLongestExtension &&
           std::all_of(extension.begin(), extension.end(), [](char c) { return isLetter(c) || isDigit(c); }) &&
           std::any_of(extension.begin(), extension.end(), [](char c) { return isLetter(c); });
}

/// The member chain at the end of `code`, such as "window.location".
std::string_view chainBefore(std::string_view code) noexcept {
    code = trimRight(code);
    std::size_t begin = code.size();
    while (begin > 0 && code.size() - begin < kLongestTarget &&
           (isWordCharacter(code[begin - 1]) || code[begin - 1] == '.'))
        --begin;
    return code.substr(begin);
}

constexpr bool endsWithName(std::string_view chain, std::string_view name) noexcept {
    return chain.ends_with(name) &&
           (chain.size() == name.size() || chain[chain.size() - name.size() - 1] == '.');
}

constexpr std::string_view kCallsWithAddress[] = {"window.open", "location.assign", "location.replace"};
constexpr std::string_view kAssignedAddresses[] = {"location", "href", "src"};

/// Whether the literal behind `code` is what an address is expected to be.
bool usedAsAddress(std::string_view code) noexcept {
    code = trimRight(code);
    if (code.empty()) return false;
    const char mark = code.back();
    code.remove_suffix(1);
    const std::string_view chain = chainBefore(code);
    const auto isChain = [&](std::string_view name) { return endsWithName(chain, name); };
    if (mark == '(')
        return chain == "open" ||
               std::any_of(std::begin(kCallsWithAddress), std::end(kCallsWithAddress), isChain);
    return mark == '=' && std::any_of(std::begin(kAssignedAddresses), std::end(kAssignedAddresses), isChain);
}

}  // namespace

void CLinksInJavaParser::parse(const Sink& sink) {
    while (at_ < script_.size()) {
        const char c = script_[at_];
        if (c == '"' || c == '\'') {
            readString(sink);
        } else if (c == '`') {
            readTemplate(sink);
        } else if (c == '/') {
            readSlash();
        } else if (c == '<' && script_.substr(at_).starts_with("<!--")) {
            skipLine();  // how scripts were hidden from browsers that knew none
        } else if (isWordCharacter(c)) {
            readWord();
        } else {
            if (!isWhiteSpace(c)) behindValue_ = c == ')' || c == ']' || c == '}';
            ++at_;
        }
    }
}

void CLinksInJavaParser::readWord() noexcept {
    const std::size_t begin = at_;
    while (at_ < script_.size() && isWordCharacter(script_[at_])) ++at_;
    behindValue_ = !isOperatorWord(script_.substr(begin, at_ - begin));
}

/// A literal ends in its line; what does not was none, and reading goes on in the next line.
void CLinksInJavaParser::readString(const Sink& sink) {
    const char marks[] = {script_[at_], '\\', '\n', '\r'};
    const std::size_t begin = at_ + 1;
    std::size_t end = begin;
    while (true) {
        end = script_.find_first_of({marks, sizeof marks}, end);
        if (end == npos) {
            at_ = script_.size();
            return;
        }
        if (script_[end] != '\\') break;
        end = std::min(end + (script_.substr(end + 1, 2) == "\r\n" ? 3 : 2), script_.size());
    }
    at_ = end;
    behindValue_ = true;
    if (script_[end] != marks[0]) return;
    ++at_;
    give(begin, end, sink);
}

/// A template counts as a literal when nothing is put into it.
void CLinksInJavaParser::readTemplate(const Sink& sink) {
    const std::size_t begin = at_ + 1;
    std::size_t end = begin;
    behindValue_ = true;
    ++at_;
    if (!templatesEnd_) return;
    while (true) {
        end = script_.find_first_of("`\\", end);
        if (end == npos) {
            templatesEnd_ = false;
            return;
        }
        if (script_[end] == '`') break;
        end = std::min(end + 2, script_.size());
    }
    at_ = end + 1;
    if (!contains(script_.substr(begin, end - begin), "${")) give(begin, end, sink);
}

void CLinksInJavaParser::skipLine() noexcept {
    at_ = std::min(script_.find_first_of("\r\n", at_), script_.size());
}

/// A comment, a regular expression, or a division.
void CLinksInJavaParser::readSlash() {
    const std::string_view rest = script_.substr(at_);
    if (rest.starts_with("//")) return skipLine();
    if (rest.starts_with("/*")) {
        const auto end = script_.find("*/", at_ + 2);
        at_ = end == npos ? script_.size() : end + 2;
        return;
    }
    ++at_;
    if (behindValue_ || at_ <= noExpressionBefore_) {
        behindValue_ = false;
        return;
    }
    bool inClass = false;
    for (std::size_t i = at_; i < script_.size() && script_[i] != '\n'; ++i) {
        const char c = script_[i];
        if (c == '\\') {
            ++i;
        } else if (c == '/' && !inClass) {
            at_ = i + 1;
            behindValue_ = true;
            return;
        } else if (c == '[' || c == ']') {
            inClass = c == '[';
        }
    }
    // No end in this line: no other "/" of the line is asked again, so that a line costs one pass.
    noExpressionBefore_ = std::min(script_.find('\n', at_), script_.size());
}

/// A literal at which something is joined is a part of an address only.
void CLinksInJavaParser::give(std::size_t begin, std::size_t end, const Sink& sink) const {
    const std::string_view raw = script_.substr(begin, end - begin);
    const std::string value = contains(raw, "\\") ? unescaped(raw) : std::string(raw);
    if (value.empty() || !hasOnlyAddressCharacters(value)) return;
    const std::string_view code = trimRight(script_.substr(0, begin - 1));
    const std::string_view behind = trimLeft(script_.substr(end + 1));
    if (behind.starts_with('+')) return;
    const bool isWhole = !code.ends_with('+');
    if (isAbsolute(value) || isHostAndPath(value) || (isWhole && isPathToFile(value)) || usedAsAddress(code))
        sink(value);
}

}  // namespace zab
