// The published tokenizer tests (html5lib's format), where the folder with their files is named by
// ZAB_TOKENIZER_CASES.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "binding/text.h"
#include "binding/utf.h"
#include "web/character_references.h"
#include "web/html_tokenizer.h"

namespace zab {
namespace {

using nlohmann::json;

// In the order of HtmlAttribute.
constexpr const char* kNames[] = {"href",    "src",        "srcset",     "poster",    "data", "action",
                                  "content", "http-equiv", "alt",        "title",     "rel",  "type",
                                  "method",  "formaction", "formmethod", "xlink:href"};
static_assert(std::size(kNames) == kHtmlAttributeCount);

std::string named(std::string_view name) {
    ShortName shortName;
    for (const char c : name) shortName.add(c);
    return std::string(shortName.view());
}

/// What was read, in one line: tags with their kept attributes, and text; no comments.
class Reader final : public HtmlHandler {
  public:
    HtmlContent startTag(const HtmlTag& tag) override {
        textEnds();
        if (content != HtmlContent::markup && read.empty()) return content;  // the element around the test
        read.append("<").append(tag.name.view());
        for (std::size_t i = 0; i < kHtmlAttributeCount; ++i)
            if (const auto attribute = static_cast<HtmlAttribute>(i); tag.has(attribute))
                read.append(" ").append(kNames[i]).append("=").append(tag[attribute]);
        read += tag.selfClosing ? "/>" : ">";
        return HtmlContent::markup;
    }
    void endTag(std::string_view name) override {
        textEnds();
        read.append("</").append(name).append(">");
    }
    void text(std::string_view piece) override { run_ += piece; }
    void textEnds() override {
        read += decodes ? decodeCharacterReferences(run_, ReferencePlace::text) : run_;
        run_.clear();
    }
    [[nodiscard]] bool allowsCdata() const noexcept override { return false; }

    HtmlContent content = HtmlContent::markup;
    bool decodes = true;
    std::string read;

  private:
    std::string run_;
};

std::string inputOf(const json& text, bool escaped) {
    const auto whole = text.get<std::string>();
    if (!escaped) return whole;
    std::u16string units;
    std::string_view rest = whole;
    while (!rest.empty()) {
        if (rest.starts_with("\\u")) {
            units += static_cast<char16_t>(hexDigits(rest.substr(2), 4).value());
            rest.remove_prefix(6);
        } else {
            units += static_cast<char16_t>(rest.front());
            rest.remove_prefix(1);
        }
    }
    return utf8FromUtf16(units);
}

std::string expectedOf(const json& output, bool escaped) {
    std::string line;
    for (const json& token : output) {
        if (!token.is_array()) continue;  // a parse error
        const auto kind = token[0].get<std::string>();
        const auto text = [&](const json& value) { return inputOf(value, escaped); };
        if (kind == "Character") line += text(token[1]);
        if (kind == "EndTag") line += "</" + named(text(token[1])) + ">";
        if (kind != "StartTag") continue;
        line += "<" + named(text(token[1]));
        for (const char* name : kNames)
            if (token[2].contains(name)) line.append(" ").append(name).append("=").append(text(token[2][name]));
        line += token.size() > 3 && token[3].get<bool>() ? "/>" : ">";
    }
    return line;
}

std::string read(const json& test, const std::string& state, std::size_t chunk) {
    std::string markup = inputOf(test["input"], test.value("doubleEscaped", false));
    // The mark in front of a page belongs to its encoding, which is read before it is cut into tokens.
    if (markup.starts_with("\xEF\xBB\xBF")) markup.erase(0, 3);
    Reader reader;
    HtmlTokenizer tokenizer(reader);
    if (state != "Data state") {
        reader.content = state == "PLAINTEXT state" ? HtmlContent::plain : HtmlContent::raw;
        reader.decodes = state == "RCDATA state";
        tokenizer.feed("<" + test.value("lastStartTag", "plaintext") + ">");
    }
    for (std::size_t at = 0; at < markup.size(); at += chunk) tokenizer.feed(markup.substr(at, chunk));
    tokenizer.finish();
    reader.textEnds();
    return reader.read;
}

TEST(HtmlTokenizer, PassesThePublishedTests) {
    const char* folder = std::getenv("ZAB_TOKENIZER_CASES");
    if (folder == nullptr) GTEST_SKIP() << "ZAB_TOKENIZER_CASES names no folder";
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".test") continue;
        std::ifstream file(entry.path());
        const json all = json::parse(file);
        for (const json& test : all["tests"])
            for (const auto& state : test.value("initialStates", std::vector<std::string>{"Data state"}))
                for (const std::size_t chunk : {1, 1'000'000}) {
                    ++count;
                    EXPECT_EQ(read(test, state, chunk),
                              expectedOf(test["output"], test.value("doubleEscaped", false)))
                        << entry.path().filename() << ": " << test["description"] << ", " << state;
                }
    }
    RecordProperty("cases", static_cast<int>(count));
    EXPECT_GT(count, 10'000u);
}

}  // namespace
}  // namespace zab
