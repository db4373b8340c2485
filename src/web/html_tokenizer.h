// HTML cut into tags and text (HTML standard, section "Tokenization"), fed in pieces of any size.
//
// Only the tokens are the standard's; there is no tree. A handful of attributes is kept, with their values
// decoded, and the code of event handlers; everything else is passed over. Line ends become one line feed. How
// the page is cut never shows, except that text comes in more pieces. Time is linear in the page, memory is
// that of the attributes of one tag.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zab {

inline constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD, for NUL

/// The attributes that are kept.
enum class HtmlAttribute : std::uint8_t {
    href,
    src,
    srcset,
    poster,
    data,
    action,
    content,
    httpEquiv,
    alt,
    title,
    rel,
    type,
    method,
    formAction,
    formMethod,
    xlinkHref,
    count
};
inline constexpr std::size_t kHtmlAttributeCount = static_cast<std::size_t>(HtmlAttribute::count);

/// A name in lower case, as far as it matters: a longer one equals no other name.
class ShortName {
  public:
    static constexpr std::size_t kMost = 16;  // no name that we look for is as long

    void clear() noexcept { size_ = 0; }
    void add(char c) noexcept {
        if (size_ < kMost) text_[size_++] = c;
    }
    /// NUL is U+FFFD, as everywhere in a page.
    void addLetter(char c) noexcept {
        if (c != '\0') return add(c);
        for (const char byte : kReplacement) add(byte);
    }
    [[nodiscard]] std::string_view view() const noexcept { return {text_.data(), size_}; }

  private:
    std::array<char, kMost> text_{};
    std::size_t size_ = 0;
};

struct HtmlTag {
    ShortName name;
    bool selfClosing = false;

    [[nodiscard]] bool has(HtmlAttribute attribute) const noexcept { return seen_[index(attribute)]; }
    /// UTF-8 where references were decoded, else the page's bytes; of a repeated attribute the first. Empty
    /// when absent.
    [[nodiscard]] std::string_view operator[](HtmlAttribute attribute) const noexcept {
        return has(attribute) ? std::string_view(values_[index(attribute)]) : std::string_view{};
    }

    /// The values of all attributes whose names begin with "on", a line for each: the code of event handlers.
    [[nodiscard]] std::string_view eventCode() const noexcept { return eventCode_; }

  private:
    friend class HtmlTokenizer;
    static constexpr std::size_t index(HtmlAttribute attribute) noexcept {
        return static_cast<std::size_t>(attribute);
    }

    std::array<std::string, kHtmlAttributeCount> values_;
    std::array<bool, kHtmlAttributeCount> seen_{};
    std::string eventCode_;
};

/// What follows a start tag.
enum class HtmlContent : std::uint8_t {
    markup,
    raw,     // text up to the end tag of the same name
    script,  // the same, but comments in it may hide an end tag
    plain,   // text up to the end of the page
};

class HtmlHandler {
  public:
    virtual HtmlContent startTag(const HtmlTag& tag) = 0;
    virtual void endTag(std::string_view name) = 0;
    /// Undecoded; the content of a raw element too. A token may come in several pieces.
    virtual void text(std::string_view piece) = 0;
    /// A comment, or whatever else is neither tag nor text, parts the text before it from that behind it.
    virtual void textEnds() = 0;
    /// Whether "<![CDATA[" opens a section here; in HTML's own elements it is a comment.
    [[nodiscard]] virtual bool allowsCdata() const noexcept = 0;

  protected:
    ~HtmlHandler() = default;
};

class HtmlTokenizer {
  public:
    /// The handler outlives this.
    explicit HtmlTokenizer(HtmlHandler& handler) noexcept : handler_(handler) {}
    HtmlTokenizer(const HtmlTokenizer&) = delete;
    HtmlTokenizer& operator=(const HtmlTokenizer&) = delete;

    void feed(std::string_view chunk);
    /// The page ends here; a tag that is not closed never was one.
    void finish();

  private:
    // In the standard's order and with its names, without "state".
    enum class State : std::uint8_t {
        data,
        rawText,
        rawLessThan,
        rawEndTagName,
        scriptEscapeStart,
        scriptDoubleEscapeName,
        plaintext,
        tagOpen,
        endTagOpen,
        tagName,
        beforeAttributeName,
        attributeName,
        afterAttributeName,
        beforeAttributeValue,
        attributeValueQuoted,
        attributeValueUnquoted,
        afterAttributeValueQuoted,
        selfClosingStartTag,
        bogusComment,
        markupDeclarationOpen,
        comment,
        commentEndBang,
        cdataSection,
    };
    /// How deep a script stands in a comment that hides its end tag.
    enum class ScriptEscape : std::uint8_t { none, escaped, doubleEscaped };

    void feedLines(std::string_view chunk);
    void giveRawText(std::string_view piece);
    std::string_view step(std::string_view rest);
    std::string_view textStep(std::string_view rest);
    std::string_view rawTextStep(std::string_view rest);
    std::string_view quotedStep(std::string_view rest);
    std::string_view unquotedStep(std::string_view rest);
    std::string_view commentStep(std::string_view rest);
    std::string_view cdataStep(std::string_view rest);
    std::string_view bogusStep(std::string_view rest);
    bool take(char c);
    bool takeTagOpen(char c);
    bool takeRawLessThan(char c);
    bool takeRawEndTagName(char c);
    bool takeScriptEscapeStart(char c);
    bool takeDoubleEscapeName(char c);
    bool takeTagName(char c);
    bool takeBeforeAttributeName(char c);
    bool takeAttributeName(char c);
    bool takeAfterAttributeName(char c);
    bool takeBeforeAttributeValue(char c);
    bool takeMarkupDeclarationOpen(char c);

    void beginTag(bool isEnd);
    void nameAttribute() noexcept;
    void addToValue(std::string_view piece);
    void endAttribute();
    void emitTag();
    void giveHeldAsText();
    void noteScriptDashes(std::string_view piece) noexcept;

    HtmlHandler& handler_;
    State state_ = State::data;
    HtmlContent content_ = HtmlContent::markup;
    ScriptEscape escape_ = ScriptEscape::none;
    bool isEndTag_ = false;
    bool onlyDashes_ = false;  // since a comment's start
    char quote_ = '"';         // of the value being read
    std::size_t dashes_ = 0;   // in a row, up to here: of a comment, or brackets of a CDATA section
    HtmlTag tag_;
    ShortName attribute_;           // name being read
    std::string* value_ = nullptr;  // of the attribute being read; null: passed over
    std::string event_;             // a value that is code
    bool behindReturn_ = false;     // a line feed belongs to the carriage return before it
    ShortName rawName_;             // of the raw element being read
    std::string held_;              // bytes that are text unless they turn out to be markup; a few at most
};

}  // namespace zab
