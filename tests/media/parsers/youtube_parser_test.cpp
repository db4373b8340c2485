#include "media/parsers/youtube_parser.h"

#include <gtest/gtest.h>

#include "media/parsers/generated.h"
#include "media/parsers/site_checks.h"

namespace zab {
namespace {

using namespace std::string_view_literals;

using zabtest::As;
using zabtest::Lines;
using zabtest::youtubeCatalogue;

struct Row {
    std::string_view text;
    Lines entries;
    const char* why;
};

template <std::size_t N>
void expectEntries(const Row (&rows)[N], As as, std::string_view prefix = {}) {
    for (const Row& row : rows) {
        Lines catalogue = youtubeCatalogue(std::string(prefix) + std::string(row.text), as);
        catalogue.erase(catalogue.begin());  // the title
        EXPECT_EQ(catalogue, row.entries) << row.why;
    }
}

TEST(YoutubeStreamMap, IsReadPieceByPiece) {
    const Row rows[] = {
        {R"(":"itag=22\u0026url=videoplayback?a,itag= 18\u0026url=videoplayback?b")",
         {"22 videoplayback?a", "18 videoplayback?b"},
         "one stream for each piece, blanks before the number"},
        {R"(:::  "" url=videoplayback\u0026itag=5x")",
         {"5 videoplayback"},
         "any marks before it, any order of keys"},
        {R"(":"url=http%3A%2F%2Fh%2Fvideoplayback%3Fa")", {"0 http://h/videoplayback?a"}, "URL-encoded"},
        {R"(":"url=http:\/\/h\/videoplayback%3Fa")", {"0 http://h/videoplayback%3Fa"}, "not when it has \\/"},
        {R"(":"url=videoplayback%252Ca%2Cb")", {"0 videoplayback%2Ca"}, "decoded once, then cut at the comma"},
        {R"(":"url=videoplayback%5Cu0026a")", {"0 videoplayback"}, "cut at an ampersand that decoding brought"},
        {R"(":"url=videoplayback%00a\u0026itag=5")", {"5 videoplayback"}, "cut at NUL"},
        {R"(":"url=videoplayback%C3%A9")", {"0 videoplayback\xC3\x83\xC2\xA9"}, "a unit for each byte"},
        {R"(":"url=videoplayback\\/\\\/")", {R"(0 videoplayback\/\\/)"}, "backslashes stay, one pass"},
        {R"(":"url=videoplayback\u0026sig=S%31\u0026x")", {"0 videoplayback&signature=S%31"}, "as it stands"},
        {R"(":"url=videoplayback?signature=R\u0026sig=S")", {"0 videoplayback?signature=R"}, "has one"},
        {R"(":"url=videoplayback\u0026sig=")", {"0 videoplayback&signature="}, "an empty one is one"},
        {R"(":"url=videoplayback\u0026s=S")", {"0 videoplayback"}, "scrambled: not appended"},
        {R"(":"url=videoplayback&itag=37\u0026itag=22")",
         {"37 videoplayback&itag=37"},
         "the URL's own itag wins"},
        {R"(":"url=videoplayback&itag=0\u0026itag=22")", {"22 videoplayback&itag=0"}, "unless it is 0"},
        {R"(":"url=videoplayback\u0026itag=-5")", {"0 videoplayback"}, "digits only"},
        {R"(":"url=videoplayback\u0026itag=99999999999")", {"4294967295 videoplayback"}, "the nearest limit"},
        {R"(":"url=a\u0026url=videoplayback")", {"0 a"}, "the first place; looked for in all behind it"},
        {R"(":"xurl=videoplayback\u0026Url=videoplayback")", {}, "keys exactly, at their places"},
        {R"(":"url=other")", {}, "not a stream"},
        {R"(":"url=videoplayback\u0026itag=1,url=videoplayback\u0026itag=2")",
         {"1 videoplayback"},
         "duplicate"},
        {R"(":"url=videoplayback)", {}, "no closing quote"},
        {R"(":"itag=5"})", {}, "no url"},
        {R"(":"url=" url_encoded_fmt_stream_map="url=videoplayback")", {}, "a key is not behind =\""},
        {R"(":"url=" url_encoded_fmt_stream_map:"url=videoplayback")", {"0 videoplayback"}, "a further map"},
        {R"(":"url=videoplayback\u0026itag=22","adaptive_fmts":"url=videoplayback?v\u0026itag=136")",
         {"22 videoplayback", "136+videoplayback?v!"},
         "and the adaptive map, its twin found"},
        {R"(":"url=videoplayback" "streamingData":"httpvideoplayback&itag=5")",
         {"0 videoplayback"},
         "only the map"},
    };
    expectEntries(rows, As::page, "\"url_encoded_fmt_stream_map");
    expectEntries({{R"("adaptive_fmts":"url=videoplayback")", {}, "not without the other map"}}, As::page);
}

TEST(YoutubeStreamingData, IsReadUrlByUrl) {
    const Row rows[] = {
        {R"("streamingData":{"url":"http://h/videoplayback?a\u0026itag=18"})",
         {"18 http://h/videoplayback?a&itag=18"},
         "plain JSON"},
        {R"(\"streamingData\":{\"url\":\"http:\/\/h\/videoplayback\\u0026itag=137\"})",
         {"137+http://h/videoplayback&itag=137"},
         "JSON in a string"},
        {R"(x%22streamingData%22%3A%22http%3A%2F%2Fh%2Fvideoplayback%3Fa%5Cu0026itag%3D43%22)",
         {"43+http://h/videoplayback?a&itag=43"},
         "URL-encoded; 39 and above count as adaptive"},
        {R"("streamingData":%22httpvideoplayback?%22a")",
         {"0 httpvideoplayback?\"a"},
         "%22 only behind its marker"},
        {R"("streamingData":"httpvideoplayback,b")", {"0 httpvideoplayback"}, "cut at the comma"},
        {R"("streamingData":"httpvideoplayback?itag=18")", {"0 httpvideoplayback?itag=18"}, "not a first itag"},
        {R"("streamingData":"httpvideoplayback&itag= 18")", {"0 httpvideoplayback&itag= 18"}, "digits at once"},
        {R"("streamingData":"httpvideoplayback&itag=38")",
         {"38 httpvideoplayback&itag=38"},
         "the last progressive"},
        {R"("streamingData":"httpx""httpvideoplayback" httpvideoplayback?b" http)",
         {"0 httpvideoplayback", "0 httpvideoplayback?b"},
         "behind each closing quote"},
        {R"("streamingData":"httpvideoplayback\\\\u0026x\\/")",
         {R"(0 httpvideoplayback\&x\/)"},
         "pass by pass"},
        {R"("streamingData":"httpvideoplayback)", {}, "no closing quote"},
        {R"("streamingData":"httpx" "streamingData":"httpvideoplayback")",
         {"0 httpvideoplayback"},
         "to the end"},
        {R"("httpvideoplayback" "streamingData":)", {}, "not what stands before"},
        {R"(\"streamingData\":"httpvideoplayback" "streamingData":"httpvideoplayback?b")",
         {"0 httpvideoplayback", "0 httpvideoplayback?b"},
         "the first marker with streams reads to the end"},
        {"", {}, "nothing"},
    };
    expectEntries(rows, As::page);
    expectEntries({rows[0], rows[1], rows[2]}, As::reply);
}

TEST(YoutubeReply, IsReadParameterByParameter) {
    const Row rows[] = {
        {"url_encoded_fmt_stream_map=itag%3D22%26url%3Dhttp%253A%252F%252Fh%252Fvideoplayback%253Fa%26sig%3DS%"
         "252C"
         "%2Curl%3Dvideoplayback&adaptive_fmts=url%3Dvideoplayback%253Fv%26itag%3D136&x=1",
         {"22 http://h/videoplayback?a&signature=S%2C", "0 videoplayback", "136+videoplayback?v!"},
         "the value is decoded once, each URL once more"},
        {"url_encoded_fmt_stream_map=&url_encoded_fmt_stream_map=url%3Dvideoplayback",
         {"0 videoplayback"},
         "each one"},
        {"url_encoded_fmt_stream_map:url=videoplayback", {}, "not a parameter"},
        {"url_encoded_fmt_stream_map=url%3Dvideoplayback%5Cu0026itag%3D5",
         {"0 videoplayback"},
         "cut, but no key"},
        {"url_encoded_fmt_stream_map=url%3Dvideoplayback%00%26itag%3D5",
         {"0 videoplayback"},
         "NUL ends the value"},
    };
    expectEntries(rows, As::reply);
}

TEST(YoutubeTitle, IsUndoneAsItWasWritten) {
    const struct {
        std::string_view text;
        const char* page;
        const char* reply;
        const char* why;
    } rows[] = {
        {R"("title":"A+B%20C","x)", "A B C", "", "blanks"},
        {R"("title":"%C3%A9\u00e9\uD83D\uDE00","x)", "\xC3\xA9\xC3\xA9\xF0\x9F\x98\x80", "", "UTF-8 and JSON"},
        {R"("title":"%FF\uD83D","x)", "\xEF\xBF\xBD\xEF\xBF\xBD", "", "ill-formed"},
        {R"("title":"a\n\"\u12\\u0041\u005cu0042","x)", R"(a\n\"\u12\A\u0042)", "",
         "other escapes stay, one pass"},
        {R"("title":"a\u0000b","x)", "a", "", "an escaped NUL ends it"},
        {R"("title":"a%00b","x)", "a", "", "so does an encoded one"},
        {R"("title":"a")", "", "", "no end"},
        {R"("title":"","title":"b","x)", "", "", "the first place counts"},
        {R"(x"subtitle=A+%41\u0041&title=B&)", "", R"(A A\u0041)", "wherever it stands; escapes stay"},
        {"title=B", "", "", "no end of a parameter"},
    };
    constexpr std::string_view kPage = R"("streamingData":"httpvideoplayback" )";
    for (const auto& row : rows) {
        EXPECT_EQ(youtubeCatalogue(std::string(kPage) + std::string(row.text))[0], row.page) << row.why;
        EXPECT_EQ(youtubeCatalogue(std::string(kPage) + std::string(row.text), As::reply)[0], row.reply)
            << row.why;
    }
    EXPECT_EQ(youtubeCatalogue(R"("title":"a","x)")[0], "") << "no stream, no title";
}

TEST(YoutubeCatalogue, FindsTheEntryOfALaterRequest) {
    CYoutubeParser parser;
    parser.addEntry(u"http://h/v?id=1&itag=18", 0, false);
    parser.addEntry(u"http://h/v?id=1&itag=45", 5, false);
    parser.addEntry(u"http://h/v?id=1&itag=45", 5, false);
    bool isWebM = false, adaptive = true;
    std::uint32_t itag = 0;

    EXPECT_TRUE(parser.findByUrl(u"http://h/v?id=1&itag=45", false, isWebM, itag));
    EXPECT_EQ(itag, 45u);
    EXPECT_FALSE(isWebM) << "told only when marking";
    EXPECT_EQ(parser.entries()[1].used, 0u);
    EXPECT_TRUE(parser.findByUrl(u"http://h/v?id=1&itag=45", true, isWebM, itag));
    EXPECT_TRUE(isWebM);
    EXPECT_EQ(parser.entries()[1].used, 1u);
    EXPECT_EQ(parser.entries()[2].used, 0u) << "the first of equal ones";

    EXPECT_TRUE(parser.findSameStream(u"http://h/v?itag=18&id=1&rn=7", isWebM, itag, adaptive));
    EXPECT_EQ(itag, 18u);
    EXPECT_FALSE(isWebM || adaptive);
    EXPECT_EQ(parser.entries()[0].used, 1u);
    EXPECT_TRUE(parser.hasSameStream(u"http://h/v?id=1&rn=7"));
    EXPECT_TRUE(parser.findSameIdAndItag(u"http://h/v?itag=45&id=1&x=1", itag));
    EXPECT_EQ(itag, 45u);
    EXPECT_TRUE(parser.hasSameId(u"http://h/v?id=1&x=1"));

    const std::pair<std::uint32_t, bool> webM[] = {{42, false}, {43, true}, {45, true}, {46, false}};
    for (const auto& [number, is] : webM) {
        const std::u16string url = u"http://h/v?id=9&itag=" + utf16FromUtf8(std::to_string(number));
        parser.addEntry(url, number, false);
        EXPECT_TRUE(parser.findByUrl(url, true, isWebM, itag));
        EXPECT_EQ(isWebM, is) << number;
        EXPECT_TRUE(parser.findSameStream(url + u"&rn=1", isWebM, itag, adaptive));
        EXPECT_EQ(isWebM, is) << number;
    }
    itag = 7;
    EXPECT_FALSE(parser.findByUrl(u"http://h/v?id=1&ITAG=45", true, isWebM, itag));
    EXPECT_FALSE(parser.findSameStream(u"http://h/v?id=2", isWebM, itag, adaptive));
    EXPECT_FALSE(parser.findSameIdAndItag(u"http://h/v?id=1", itag));
    EXPECT_FALSE(parser.hasSameStream(u"http://h/v?id=2") || parser.hasSameId(u"http://h/v?id=2"));
    EXPECT_EQ(itag, 7u) << "untouched by a no";
}

TEST(YoutubeCatalogue, PairsAudioFromAdaptiveEntriesOnly) {
    CYoutubeParser parser;
    parser.addEntry(u"a", 140, false);
    std::uint32_t itag = 0;
    std::u16string url;
    EXPECT_FALSE(parser.pickAudioFor(137, itag, url));
    parser.addEntry(u"b", 140, true);
    EXPECT_TRUE(parser.pickAudioFor(137, itag, url));
    EXPECT_EQ(itag, 140u);
    EXPECT_TRUE(url == u"b");
}

TEST(YoutubeCatalogue, LooksUpACapturedUrl) {
    using Match = CYoutubeParser::Match;
    constexpr std::u16string_view kUrl = u"http://h/videoplayback?id=1&itag=22";
    const struct {
        std::u16string_view text;
        Match match;
        std::u16string_view title;
        const char* why;
    } rows[] = {
        {uR"("streamingData":"http://h/videoplayback?id=1&itag=22" "title":"T","x)", Match::url, u"T",
         "whole URL"},
        {uR"(\"streamingData\":\"http://h/videoplayback?x&itag=22&id=1\" \"title\":\"T\",\"x)",
         Match::idAndItag, u"T", "the escaped title"},
        {uR"("streamingData":"http://h/videoplayback?itag=18&id=1")", Match::id, u"", "another format"},
        {u"title=T&url_encoded_fmt_stream_map=url%3Dhttp://h/videoplayback%3Fid%3D1%2526itag%3D22", Match::url,
         u"T", "tried as a reply"},
        {u"adaptive_fmts=x", Match::none, u"", "nothing in the reply either"},
        {uR"("title":"T","x)", Match::none, u"T", "no streams, but a title"},
    };
    for (const auto& row : rows) {
        CYoutubeParser parser(u"http://page/");
        const auto captured = parser.parseCaptured(row.text, kUrl);
        EXPECT_EQ(static_cast<int>(captured.match), static_cast<int>(row.match)) << row.why;
        EXPECT_EQ(captured.itag, row.match == Match::url || row.match == Match::idAndItag ? 22u : 0u)
            << row.why;
        EXPECT_TRUE(parser.title() == row.title) << row.why;
        EXPECT_TRUE(parser.pageUrl() == u"http://page/");
    }
}

TEST(YoutubeCatalogue, UndoesPercentsInNarrowText) {
    const struct {
        std::string text;
        const char* plain;
        const char* why;
    } rows[] = {
        {"a%41%4a%C3", "aAJ\xC3", "bytes"},
        {"%", "%", "alone"},
        {"%4", "%4", "one digit"},
        {"%zz%4g", "%zz%4g", "no digits"},
        {"%%41", "%A", "behind another"},
        {"%2541", "%41", "once"},
        {"?%41#%41", "?A#A", "everywhere"},
        {"a%00b", "a", "NUL ends it"},
        {std::string("a\0b%41", 6), "a", "as it stands too"},
    };
    for (auto row : rows) {
        CYoutubeParser::unescapeInPlace(row.text);
        EXPECT_EQ(row.text, row.plain) << row.why;
    }
}

const auto kPieces = zabtest::pieces(
    "url_encoded_fmt_stream_map~\"adaptive_fmts\":~adaptive_fmts~\\\"streamingData\\\":~"
    "%22streamingData%22%3A~\"streamingData\":~http~videoplayback~\\u0026~&~itag=~url=~sig=~s=~"
    "signature=~?id=1~22~137~\"title\":\"~title=~\",\"~\"~\\\"~%22~\\/~\\\\~%2C~%00~%~,~:~=~+~\\u0041~"
    "\xC3\xA9~\0"sv);

TEST(YoutubeCatalogue, EveryPrefixOfGeneratedTextsKeepsItsBounds) {
    zabtest::Random random(60);
    for (int round = 0; round < 20; ++round) {
        const std::string text = zabtest::strungTogether(random, kPieces, 60);
        for (std::size_t size = 0; size <= text.size(); size += 1 + random() % 9)
            zabtest::onExactBlock(std::string_view(text).substr(0, size), zabtest::checkYoutube);
    }
}

TEST(StreamUrls, AgreeWithASearchForEachParameter) {
    constexpr std::string_view kParts[] = {"id=1", "&", "&", "itag=5", "1", "rn=", "id=", "signature=x", "\n"};
    zabtest::Random random(59);
    for (int round = 0; round < 1000; ++round)
        zabtest::onExactBlock("http://h/v?" + zabtest::strungTogether(random, kParts, 8) + "\nhttp://h/v?" +
                                  zabtest::strungTogether(random, kParts, 8),
                              zabtest::checkSameStream);
}

}  // namespace
}  // namespace zab
