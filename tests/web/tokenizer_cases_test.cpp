// The published tokenizer tests (html5lib's format), where the folder with their files is named by
// ZAB_TOKENIZER_CASES.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "web/character_references.h"
#include "web/html_tokenizer.h"
#include "web/json_text.h"

using namespace zab;
using nlohmann::json;

namespace {

/// What was read, in one line: tags and text; no attributes, of which the tests name none that is kept.
class Reader final : public HtmlHandler {
  public:
    HtmlContent startTag(const HtmlTag& tag) override {
        textEnds();
        if (content != HtmlContent::markup && read.empty()) return content;  // the element around the test
        read.append("<").append(tag.name.view()).append(tag.selfClosing ? "/>" : ">");
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

std::string textOf(const json& test, const json& text) {
    const auto whole = text.get<std::string>();
    return test.value("doubleEscaped", false) ? withoutJsonEscapes(whole) : whole;
}

std::string expectedOf(const json& test) {
    std::string line;
    for (const json& token : test["output"]) {
        const std::string kind = token.is_array() ? token[0] : "a parse error";
        if (kind == "Character") line += textOf(test, token[1]);
        if (!kind.ends_with("Tag")) continue;
        line += kind == "EndTag" ? "</" : "<";
        line += textOf(test, token[1]).substr(0, ShortName::kMost) + (token.size() > 3 ? "/>" : ">");
    }
    return line;
}

std::string readingOf(const json& test, const std::string& state, std::size_t chunk) {
    std::string markup = textOf(test, test["input"]);
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
                    EXPECT_EQ(readingOf(test, state, chunk), expectedOf(test))
                        << entry.path().filename() << ": " << test["description"] << ", " << state;
                }
    }
    EXPECT_GT(count, 10'000u);
}

}  // namespace
