#include "media/parsers/vimeo.h"

#include <gtest/gtest.h>

#include "media/parsers/generated.h"
#include "media/parsers/site_checks.h"

namespace zab {
namespace {

using namespace std::string_view_literals;

using zabtest::Lines;
using zabtest::vimeoRenditions;

TEST(Vimeo, ListsProgressiveMp4) {
    const struct {
        std::string_view objects;  // behind "progressive":
        Lines renditions;
        const char* why;
    } rows[] = {
        {R"([{"url":"u","quality":"720p","mime":"video/mp4"}])", {"u 720p"}, "as players write it"},
        {R"([{url:'u',quality:1,mime:video/mp4}])", {"u 1"}, "single quotes and bare"},
        {"[{ \t\"mime\"\r\n:\n\"video/mp4\",\n 'url' : \"u\",quality: 1}]", {"u 1"}, "white space"},
        {R"([{"url":"u","quality":1,"mime":"video/webm"}])", {}, "another type"},
        {R"([{"url":"u","quality":1,"mime":"video/mp4;x"}])", {}, "the type exactly"},
        {R"([{"url":"u","mime":"video/mp4"}])", {}, "a key is missing"},
        {R"([{"url":"","quality":1,"mime":"video/mp4"}])", {}, "an empty address"},
        {R"([{"URL":"u","quality":1,"mime":"video/mp4"}])", {}, "keys exactly"},
        {R"([{"url":"u","quality":1 ,"mime":"video/mp4"}])", {}, "white space before the comma ends it"},
        {R"([{"mime":"video/mp4","quality":1,"url":"u" x}])", {"u 1"}, "what was read before the end counts"},
        {R"([{"url":"u","url":"v","quality":1,"mime":"video/mp4"}])", {"v 1"}, "the last of a repeated key"},
        {R"([{"quality":1,"mime":"video/mp4","url":"u}])", {}, "a value without its end is none"},
        {R"([{"a":{"url":"u","quality":1,"mime":"video/mp4"}},{"url":"v","quality":2,"mime":"video/mp4"}])",
         {"u 1", "v 2"},
         "not the object that holds another, but the inner one"},
        {R"([{"mime":"video/mp4","quality":1,"url":"u}"}])", {}, "a brace ends the object, quoted or not"},
        {R"([{"url":"u","quality":1,"mime":"video/mp4"}],"x":[{"url":"v","quality":2,"mime":"video/mp4"}])",
         {"u 1"},
         "the array ends"},
        {R"([{"url":"u","quality":1,"mime":"video/mp4")", {"u 1"}, "no end: the rest is read"},
        {R"([{"url:"u","quality":1,"mime":"video/mp4"}])", {}, "a key that is not followed by a colon"},
        {R"([{url u:"u"},{:,"url":"v","quality":2,"mime":"video/mp4"}])", {"v 2"}, "an empty member"},
        {R"([{"mime":"video/mp4","quality":1,"url)", {}, "a key without its end"},
        {"", {}, "nothing"},
    };
    for (const auto& row : rows) {
        Lines expected = row.renditions;
        expected.insert(expected.begin(), "");
        EXPECT_EQ(vimeoRenditions("{url:0,\"progressive\":" + std::string(row.objects)), expected) << row.why;
    }
}

TEST(Vimeo, TakesTheTitleAsItStands) {
    const struct {
        std::string_view text;
        const char* title;
        const char* why;
    } rows[] = {
        {"<title>A &amp; B</title>", "A &amp; B", "undecoded"},
        {"<TITLE>A</TITLE>", "A", "upper case"},
        {"<TITLE>A</title></TITLE>", "A", "lower case goes first"},
        {"<TITLE>A</TITLE><title>B</title>", "B", "lower case goes first, though farther"},
        {"<title>A<title>", "", "no end"},
        {"</title><title>A", "", "an end before the start"},
        {"<Title>A</Title>", "", "mixed case"},
        {std::string_view("<title>A\0</title>", 17), "", "ends at NUL"},
    };
    for (const auto& row : rows) EXPECT_EQ(vimeoRenditions(row.text), Lines{row.title}) << row.why;
}

const auto kPieces = zabtest::pieces(
    "<title>~</title>~\"progressive\":~[~]~{~}~\"url\"~url~\"quality\"~\"mime\"~:~,~\"video/mp4\"~\"~'~"
    "u~ ~\n~\0"sv);

TEST(Vimeo, EveryPrefixOfGeneratedTextsKeepsItsBounds) {
    zabtest::Random random(67);
    for (int round = 0; round < 30; ++round) {
        const std::string text = "\"progressive\":" + zabtest::strungTogether(random, kPieces, 60);
        for (std::size_t size = 0; size <= text.size(); size += 1 + random() % 9)
            zabtest::onExactBlock(std::string_view(text).substr(0, size), zabtest::checkVimeo);
    }
}

}  // namespace
}  // namespace zab
