#include "web/html_tokenizer.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "binding/text.h"
#include "web/character_references.h"

namespace zab {
namespace {

constexpr std::string_view kCdataMark = "[CDATA[";
constexpr std::string_view kCommentMark = "--";
constexpr std::string_view kScript = "script";
// Of the bytes that are held back the first few decide; a longer name is none of ours.
constexpr std::size_t kMostHeld = 2 + ShortName::kMost;

// In the order of HtmlAttribute.
constexpr std::string_view kAttributeNames[] = {
    "href", "src",   "srcset", "poster", "data",   "action",     "content",    "http-equiv",
    "alt",  "title", "rel",    "type",   "method", "formaction", "formmethod", "xlink:href"};
constexpr std::string_view kEventPrefix = "on";
static_assert(std::size(kAttributeNames) == kHtmlAttributeCount);

constexpr bool namesFit() noexcept {
    for (const auto name : kAttributeNames)
        if (name.size() >= ShortName::kMost) return false;
    return true;
}
static_assert(namesFit());

constexpr bool isHtmlSpace(char c) noexcept { return isWhiteSpace(c) || c == '\f'; }

}  // namespace

/// A carriage return is a line feed, with the one behind it or alone.
void HtmlTokenizer::feed(std::string_view chunk) {
    while (!chunk.empty()) {
        if (std::exchange(behindReturn_, false) && chunk.front() == '\n') chunk.remove_prefix(1);
        const std::string_view line = upTo(chunk, '\r');
        feedLines(line);
        behindReturn_ = line.size() < chunk.size();
        if (behindReturn_) feedLines("\n");
        chunk.remove_prefix(line.size() + (behindReturn_ ? 1 : 0));
    }
}

void HtmlTokenizer::feedLines(std::string_view chunk) {
    while (!chunk.empty()) chunk = step(chunk);
}

/// In raw text NUL is replaced; elsewhere it is left to who builds a tree.
void HtmlTokenizer::giveRawText(std::string_view piece) {
    while (!piece.empty()) {
        const std::string_view text = upToNul(piece);
        if (!text.empty()) handler_.text(text);
        if (text.size() == piece.size()) return;
        handler_.text(kReplacement);
        piece.remove_prefix(text.size() + 1);
    }
}

void HtmlTokenizer::finish() {
    switch (state_) {
        case State::tagOpen:
        case State::endTagOpen:
        case State::rawLessThan:
        case State::rawEndTagName:
        case State::scriptEscapeStart:
        case State::scriptDoubleEscapeName: giveHeldAsText(); break;
        default: break;
    }
}

/// Reads at least one character, or changes the state; gives what is left. Long stretches are read at once.
std::string_view HtmlTokenizer::step(std::string_view rest) {
    switch (state_) {
        case State::data: return textStep(rest);
        case State::rawText: return rawTextStep(rest);
        case State::plaintext: giveRawText(rest); return {};
        case State::attributeValueQuoted: return quotedStep(rest);
        case State::attributeValueUnquoted: return unquotedStep(rest);
        case State::comment: return commentStep(rest);
        case State::cdataSection: return cdataStep(rest);
        case State::bogusComment: return bogusStep(rest);
        default: return rest.substr(take(rest.front()) ? 1 : 0);
    }
}

// Each of these says whether it took the character; if not, the new state takes it.
bool HtmlTokenizer::take(char c) {
    switch (state_) {
        case State::tagOpen:
        case State::endTagOpen: return takeTagOpen(c);
        case State::rawLessThan: return takeRawLessThan(c);
        case State::rawEndTagName: return takeRawEndTagName(c);
        case State::scriptEscapeStart: return takeScriptEscapeStart(c);
        case State::scriptDoubleEscapeName: return takeDoubleEscapeName(c);
        case State::tagName: return takeTagName(c);
        case State::attributeName: return takeAttributeName(c);
        case State::afterAttributeName: return takeAfterAttributeName(c);
        case State::beforeAttributeValue: return takeBeforeAttributeValue(c);
        case State::selfClosingStartTag:
            if (c != '>') {
                state_ = State::beforeAttributeName;
                return false;
            }
            tag_.selfClosing = true;
            emitTag();
            return true;
        case State::markupDeclarationOpen: return takeMarkupDeclarationOpen(c);
        case State::commentEndBang:
            state_ = State::comment;
            dashes_ = c == '-' ? 1 : 0;
            if (c == '>') state_ = State::data;
            return true;
        // Behind a quoted value white space may be missing.
        case State::afterAttributeValueQuoted:
        default: return takeBeforeAttributeName(c);
    }
}

std::string_view HtmlTokenizer::textStep(std::string_view rest) {
    const std::string_view text = upTo(rest, '<');
    if (!text.empty()) handler_.text(text);
    if (text.size() == rest.size()) return {};
    state_ = State::tagOpen;
    held_.assign(1, '<');
    return rest.substr(text.size() + 1);
}

bool HtmlTokenizer::takeTagOpen(char c) {
    const bool isEnd = state_ == State::endTagOpen;
    if (isLetter(c)) {
        beginTag(isEnd);
        state_ = State::tagName;
        return false;
    }
    if (!isEnd && c == '/') {
        held_ += c;
        state_ = State::endTagOpen;
        return true;
    }
    if (isEnd) {
        state_ = c == '>' ? State::data : State::bogusComment;  // "</>" is nothing
        handler_.textEnds();
        return true;
    }
    if (c == '!') {
        handler_.textEnds();
        held_.clear();
        state_ = State::markupDeclarationOpen;
        return true;
    }
    if (c == '?') {
        handler_.textEnds();
        state_ = State::bogusComment;
        return true;
    }
    state_ = State::data;
    giveHeldAsText();
    return false;
}

bool HtmlTokenizer::takeMarkupDeclarationOpen(char c) {
    held_ += c;
    if (kCommentMark.starts_with(held_)) {
        if (held_.size() < kCommentMark.size()) return true;
        state_ = State::comment;
        onlyDashes_ = true;
        dashes_ = 0;
        return true;
    }
    if (handler_.allowsCdata() && kCdataMark.starts_with(held_)) {
        if (held_.size() < kCdataMark.size()) return true;
        state_ = State::cdataSection;
        dashes_ = 0;
        return true;
    }
    // A document type too: whatever stands in it, it ends at the first ">".
    state_ = State::bogusComment;
    return false;
}

std::string_view HtmlTokenizer::bogusStep(std::string_view rest) {
    const auto end = rest.find('>');
    if (end == std::string_view::npos) return {};
    state_ = State::data;
    return rest.substr(end + 1);
}

/// "-->" and "--!>" end a comment, ">" and "->" one that is still empty.
std::string_view HtmlTokenizer::commentStep(std::string_view rest) {
    std::size_t at = 0;
    if (!onlyDashes_ && dashes_ == 0) at = std::min(rest.find('-'), rest.size());
    for (; at < rest.size(); ++at) {
        const char c = rest[at];
        if (c == '-') {
            ++dashes_;
            continue;
        }
        if (c == '>' && (onlyDashes_ || dashes_ >= 2)) {
            state_ = State::data;
            return rest.substr(at + 1);
        }
        const bool mayEnd = c == '!' && dashes_ >= 2;
        onlyDashes_ = false;
        dashes_ = 0;
        if (mayEnd) state_ = State::commentEndBang;
        return rest.substr(at + 1);
    }
    return {};
}

/// "]]>" ends the section; its text is text, but nobody reads links in it.
std::string_view HtmlTokenizer::cdataStep(std::string_view rest) {
    for (std::size_t at = dashes_ == 0 ? std::min(rest.find(']'), rest.size()) : 0; at < rest.size(); ++at) {
        const char c = rest[at];
        if (c == ']') {
            ++dashes_;
            continue;
        }
        if (c == '>' && dashes_ >= 2) state_ = State::data;
        dashes_ = 0;
        return rest.substr(at + 1);
    }
    return {};
}

// Raw elements.

void HtmlTokenizer::noteScriptDashes(std::string_view piece) noexcept {
    const auto other = piece.find_last_not_of('-');
    dashes_ = other == std::string_view::npos ? dashes_ + piece.size() : piece.size() - other - 1;
}

std::string_view HtmlTokenizer::rawTextStep(std::string_view rest) {
    // In an escaped script "-->" counts too.
    const std::string_view marks = escape_ == ScriptEscape::none ? "<" : "<>";
    const auto end = std::min(rest.find_first_of(marks), rest.size());
    const std::string_view text = rest.substr(0, end);
    if (escape_ != ScriptEscape::none) noteScriptDashes(text);
    giveRawText(text);
    if (end == rest.size()) return {};
    if (rest[end] == '<') {
        state_ = State::rawLessThan;
        held_.assign(1, '<');
    } else {
        if (dashes_ >= 2) escape_ = ScriptEscape::none;
        handler_.text(">");
    }
    dashes_ = 0;
    return rest.substr(end + 1);
}

bool HtmlTokenizer::takeRawLessThan(char c) {
    const bool isScript = content_ == HtmlContent::script;
    attribute_.clear();
    if (c == '/') {
        held_ += c;
        state_ = escape_ == ScriptEscape::doubleEscaped ? State::scriptDoubleEscapeName : State::rawEndTagName;
        return true;
    }
    if (isScript && escape_ == ScriptEscape::none && c == '!') {
        held_ += c;
        state_ = State::scriptEscapeStart;
        return true;
    }
    state_ = isScript && escape_ == ScriptEscape::escaped && isLetter(c) ? State::scriptDoubleEscapeName
                                                                         : State::rawText;
    if (state_ == State::rawText) giveHeldAsText();
    return false;
}

bool HtmlTokenizer::takeRawEndTagName(char c) {
    if (isLetter(c) && held_.size() < kMostHeld) {
        attribute_.add(toLower(c));
        held_ += c;
        return true;
    }
    const bool isOurs = attribute_.view() == rawName_.view() && (isHtmlSpace(c) || c == '/' || c == '>');
    if (!isOurs) {
        state_ = State::rawText;
        giveHeldAsText();
        return false;
    }
    beginTag(true);
    tag_.name = rawName_;
    state_ = State::tagName;
    return false;
}

/// Behind "<!" in a script: two dashes make it a comment that may hide the script's end.
bool HtmlTokenizer::takeScriptEscapeStart(char c) {
    if (c == '-') {
        held_ += c;
        if (held_ != "<!--") return true;
        escape_ = ScriptEscape::escaped;
        dashes_ = 2;
    }
    state_ = State::rawText;
    giveHeldAsText();
    return c == '-';
}

/// Behind "<" in an escaped script, or "</" in a doubly escaped one: the name "script" changes which it is.
bool HtmlTokenizer::takeDoubleEscapeName(char c) {
    if (isLetter(c) && held_.size() < kMostHeld) {
        attribute_.add(toLower(c));
        held_ += c;
        return true;
    }
    if (attribute_.view() == kScript && (isHtmlSpace(c) || c == '/' || c == '>'))
        escape_ = escape_ == ScriptEscape::escaped ? ScriptEscape::doubleEscaped : ScriptEscape::escaped;
    state_ = State::rawText;
    giveHeldAsText();
    return false;
}

void HtmlTokenizer::giveHeldAsText() { handler_.text(held_); }

// Tags and their attributes.

void HtmlTokenizer::beginTag(bool isEnd) {
    isEndTag_ = isEnd;
    tag_.name.clear();
    tag_.selfClosing = false;
    tag_.seen_.fill(false);
    tag_.eventCode_.clear();
}

bool HtmlTokenizer::takeTagName(char c) {
    if (isHtmlSpace(c)) {
        state_ = State::beforeAttributeName;
    } else if (c == '/') {
        state_ = State::selfClosingStartTag;
    } else if (c == '>') {
        emitTag();
    } else {
        tag_.name.addLetter(toLower(c));
    }
    return true;
}

bool HtmlTokenizer::takeBeforeAttributeName(char c) {
    if (isHtmlSpace(c)) {
        state_ = State::beforeAttributeName;
        return true;
    }
    if (c == '/' || c == '>') {
        state_ = State::afterAttributeName;
        return false;
    }
    attribute_.clear();
    value_ = nullptr;
    state_ = State::attributeName;
    if (c != '=') return false;
    attribute_.add(c);  // a name may begin with "="
    return true;
}

bool HtmlTokenizer::takeAttributeName(char c) {
    if (isHtmlSpace(c) || c == '/' || c == '>') {
        nameAttribute();
        state_ = State::afterAttributeName;
        return false;
    }
    if (c == '=') {
        nameAttribute();
        state_ = State::beforeAttributeValue;
    } else {
        attribute_.addLetter(toLower(c));
    }
    return true;
}

bool HtmlTokenizer::takeAfterAttributeName(char c) {
    if (isHtmlSpace(c)) return true;
    if (c == '/') {
        state_ = State::selfClosingStartTag;
    } else if (c == '=') {
        state_ = State::beforeAttributeValue;
    } else if (c == '>') {
        emitTag();
    } else {
        state_ = State::beforeAttributeName;
        return false;
    }
    return true;
}

bool HtmlTokenizer::takeBeforeAttributeValue(char c) {
    if (isHtmlSpace(c)) return true;
    if (c == '>') {
        emitTag();
        return true;
    }
    if (c == '"' || c == '\'') {
        quote_ = c;
        state_ = State::attributeValueQuoted;
        return true;
    }
    state_ = State::attributeValueUnquoted;
    return false;
}

/// Finds out whether the attribute whose name was read is kept; of a repeated one the first is.
void HtmlTokenizer::nameAttribute() noexcept {
    value_ = nullptr;
    if (isEndTag_) return;
    if (attribute_.view().starts_with(kEventPrefix)) {
        value_ = &event_;
        event_.clear();
        return;
    }
    const auto row = std::find(std::begin(kAttributeNames), std::end(kAttributeNames), attribute_.view());
    if (row == std::end(kAttributeNames)) return;
    const auto index = static_cast<std::size_t>(row - std::begin(kAttributeNames));
    if (tag_.seen_[index]) return;
    tag_.seen_[index] = true;
    value_ = &tag_.values_[index];
    value_->clear();
}

void HtmlTokenizer::addToValue(std::string_view piece) {
    if (value_ != nullptr) value_->append(piece);
}

std::string_view HtmlTokenizer::quotedStep(std::string_view rest) {
    const std::string_view piece = upTo(rest, quote_);
    addToValue(piece);
    if (piece.size() == rest.size()) return {};
    endAttribute();
    state_ = State::afterAttributeValueQuoted;
    return rest.substr(piece.size() + 1);
}

std::string_view HtmlTokenizer::unquotedStep(std::string_view rest) {
    const auto end = std::min(rest.find_first_of(" \t\r\n\f>"), rest.size());
    addToValue(rest.substr(0, end));
    if (end == rest.size()) return {};
    endAttribute();
    if (rest[end] == '>') {
        emitTag();
    } else {
        state_ = State::beforeAttributeName;
    }
    return rest.substr(end + 1);
}

void HtmlTokenizer::endAttribute() {
    if (value_ == nullptr) return;
    if (value_->find('&') != std::string::npos)
        *value_ = decodeCharacterReferences(*value_, ReferencePlace::attribute);
    // In one pass: a value of nothing but NULs must not cost more than its length.
    if (value_->find('\0') != std::string::npos) {
        std::string replaced;
        for (const char c : *value_) c == '\0' ? replaced += kReplacement : replaced += c;
        value_->swap(replaced);
    }
    if (value_ == &event_) tag_.eventCode_.append(event_).append("\n");
    value_ = nullptr;
}

void HtmlTokenizer::emitTag() {
    state_ = State::data;
    content_ = HtmlContent::markup;
    if (isEndTag_) {
        handler_.endTag(tag_.name.view());
        return;
    }
    content_ = handler_.startTag(tag_);
    escape_ = ScriptEscape::none;
    dashes_ = 0;
    rawName_ = tag_.name;
    if (content_ == HtmlContent::markup) return;
    state_ = content_ == HtmlContent::plain ? State::plaintext : State::rawText;
}

}  // namespace zab
