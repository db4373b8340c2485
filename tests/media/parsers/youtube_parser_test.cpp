#include "media/parsers/youtube_parser.h"

#include <utility>

#include "media/parsers/site_checks.h"
#include "readings.h"

using namespace zab;
using namespace zabtest;

namespace {

TEST(YoutubeStreamMap, IsReadPieceByPiece) {
    const auto read = [](const std::string& map) { return youtubePage("\"url_encoded_fmt_stream_map" + map); };
    const Reading rows[] = {
        {R"(":"url=videoplayback?a,itag= 18\u0026url=videoplayback?b")",
         "0 videoplayback?a;18 videoplayback?b;", "one stream for each piece, blanks before the number"},
        {R"(:::  "" url=videoplayback\\a\u0026itag=5x")", R"(5 videoplayback\\a;)",
         "any marks before, any order"},
        {R"(":"url=http%3A%2F%2Fh%2Fvideoplayback%3Fa")", "0 http://h/videoplayback?a;", "URL-encoded"},
        {R"(":"url=videoplayback%252Ca%2Cb")", "0 videoplayback%2Ca;", "decoded once, then cut at the comma"},
        {R"(":"url=videoplayback%5Cu0026a")", "0 videoplayback;", "cut at an ampersand that decoding brought"},
        {R"(":"url=videoplayback\u0026sig=S%31\u0026x")", "0 videoplayback&signature=S%31;", "as it stands"},
        {R"(":"url=videoplayback?signature=R\u0026sig=S")", "0 videoplayback?signature=R;", "has one"},
        {R"(":"url=videoplayback&itag=37\u0026itag=22")", "37 videoplayback&itag=37;", "the URL's own wins"},
        {R"(":"url=videoplayback&itag=0\u0026itag=22")", "22 videoplayback&itag=0;", "unless it is 0"},
        {R"(":"url=videoplayback\u0026itag=99999999999")", "4294967295 videoplayback;", "the nearest limit"},
        {R"(":"url=a\u0026url=videoplayback")", "0 a;", "the first place; looked for in all behind it"},
        {R"(":"xurl=videoplayback\u0026Url=videoplayback")", "", "keys exactly, at their places"},
        {R"(":"url=videoplayback\u0026itag=1,url=videoplayback\u0026itag=2")", "1 videoplayback;", "duplicate"},
        {R"(":"url=videoplayback)", "", "no closing quote"},
        {R"(":"url=" url_encoded_fmt_stream_map:"url=videoplayback")", "0 videoplayback;", "a further map"},
        {R"(":"url=videoplayback\u0026itag=22","adaptive_fmts":"url=videoplayback?v\u0026itag=136")",
         "22 videoplayback;136+videoplayback?v!;", "and the adaptive map, its twin found"},
    };
    expectReadings(read, rows);
    EXPECT_EQ(youtubePage(R"("adaptive_fmts":"url=videoplayback" "title":"a","x)"), "")
        << "not without the other map";
    EXPECT_EQ(
        youtubeReply("url_encoded_fmt_stream_map=itag%3D22%26url%3Dvideoplayback%253Fa%26sig%3DS%252C%2Curl"
                     "%3Dvideoplayback&adaptive_fmts=url%3Dvideoplayback%253Fv%26itag%3D136&x=1"),
        "22 videoplayback?a&signature=S%2C;0 videoplayback;136+videoplayback?v!;")
        << "decoded once, URLs twice";
    EXPECT_EQ(youtubeReply("url_encoded_fmt_stream_map:url=videoplayback?&url_encoded_fmt_stream_map=url%"
                           "3Dvideoplayback%00%26itag%3D5"),
              "0 videoplayback;")
        << "NUL ends it";
}

TEST(YoutubeStreamingData, IsReadUrlByUrl) {
    const Reading inAnyForm[] = {
        {R"("streamingData":"http:videoplayback\u0026itag=18")", "18 http:videoplayback&itag=18;", "JSON"},
        {R"(\"streamingData\":\"http\/videoplayback\\u0026itag=137\")", "137+http/videoplayback&itag=137;",
         "JSON in a string"},
        {R"(x%22streamingData%22%3A%22http%3Avideoplayback%5Cu0026itag%3D43%22)",
         "43+http:videoplayback&itag=43;", "URL-encoded; 39 and above count as adaptive"},
    };
    expectReadings(youtubePage, inAnyForm);
    expectReadings(youtubeReply, inAnyForm);
    const auto read = [](const std::string& data) { return youtubePage(R"("streamingData":)" + data); };
    const Reading rows[] = {
        {R"(%22httpvideoplayback?%22a")", R"(0 httpvideoplayback?"a;)", "%22 only behind its marker"},
        {R"("httpvideoplayback&itag= 18")", "0 httpvideoplayback&itag= 18;", "digits at once"},
        {R"("httpvideoplayback&itag=38")", "38 httpvideoplayback&itag=38;", "the last progressive"},
        {R"("httpvideoplayback&itag=39")", "39+httpvideoplayback&itag=39;", "the first adaptive"},
        {R"("httpx""http1videoplayback" http2videoplayback" http)",
         "0 http1videoplayback;0 http2videoplayback;", "behind each"},
        {R"("httpvideoplayback%41\\\\u0026x\\/")", R"(0 httpvideoplayback%41\&x\/;)", "pass by pass"},
        {R"("httpvideoplayback)", "", "no closing quote"},
        {R"("http1videoplayback" \"streamingData\":"httpvideoplayback")", "0 httpvideoplayback;",
         "the first marker"},
        {R"("httpvideoplayback" \"streamingData\":)", "0 httpvideoplayback;", "the next where there are none"},
    };
    expectReadings(read, rows);
}

TEST(YoutubeTitle, IsUndoneAsItWasWritten) {
    const std::string stream = R"("streamingData":"httpvideoplayback" )", entry = "0 httpvideoplayback;";
    const auto ofPage = [&](const std::string& text) {
        return youtubePage(stream + text).substr(entry.size());
    };
    const Reading rows[] = {
        {R"("title":"+%20%C3%A9\uD83D\uDE00","x)", "  \xC3\xA9\xF0\x9F\x98\x80", "UTF-8 and JSON"},
        {R"("title":"a\n\"\u12\\u0041\u005cu0042\u0000b","x)", R"(a\n\"\u12\A\u0042)",
         "other escapes stay, one pass"},
        {R"("title":"a")", "", "no end"},
    };
    expectReadings(ofPage, rows);
    EXPECT_EQ(youtubeReply(stream + R"(x"subtitle=A+%41\u0041&title=B&)"), entry + R"(A A\u0041)")
        << "wherever it stands; escapes stay";
    EXPECT_EQ(youtubeReply(stream + "title=B"), entry) << "no end of a parameter";
}

TEST(YoutubeCatalogue, FindsTheEntryOfALaterRequest) {
    // What each search says of the URL, "w" for WebM and "a" for adaptive, "*" where an entry is used since.
    const auto read = [](const std::string& text) {
        CYoutubeParser parser;
        for (const char* itag : {"18", "43", "45", "46", "45"})
            parser.addEntry(u"http://h/v?id=1&itag=" + utf16FromUtf8(itag), 5, itag == std::string("46"));
        const std::u16string url = utf16FromUtf8(text);
        bool isWebM = false, adaptive = false;
        std::uint32_t itag = 7;
        std::string all;
        const auto note = [&](const char* search) {
            all += search + std::to_string(std::exchange(itag, 7)) + (std::exchange(isWebM, false) ? "w" : "");
            for (const auto& entry : parser.entries()) all += entry.used != 0 ? "*" : "";
            all += ' ';
        };
        if (parser.findByUrl(url, false, isWebM, itag)) note("url ");
        if (parser.findByUrl(url, true, isWebM, itag)) note("marked ");
        if (parser.findSameStream(url, isWebM, itag, adaptive)) note(adaptive ? "stream a" : "stream ");
        if (parser.findSameIdAndItag(url, itag)) note("both ");
        EXPECT_EQ(itag, 7u) << "untouched by a no";
        return all + (parser.hasSameStream(url) ? "stream " : "") + (parser.hasSameId(url) ? "id" : "");
    };
    const Reading rows[] = {
        {"http://h/v?id=1&itag=45", "url 45 marked 45w* stream 45w* both 45* stream id", "the first"},
        {"http://h/v?id=1&itag=43", "url 43 marked 43w* stream 43w* both 43* stream id", "43 is WebM"},
        {"http://h/v?id=1&itag=46", "url 46 marked 46* stream a46* both 46* stream id", "46 is not"},
        {"http://h/v?itag=18&id=1&rn=7", "stream 18* both 18* stream id", "what a player changes"},
        {"http://h/v?itag=45&id=1&x=1", "both 45 id", "another parameter"},
        {"http://h/v?id=1&rn=1", "stream 18* stream id", "no itag: the first"},
    };
    expectReadings(read, rows);
}

TEST(YoutubeCatalogue, LooksUpACapturedUrl) {
    const auto read = [](std::string_view text) {
        constexpr const char* kMatches[] = {"none", "url", "idAndItag", "id"};
        CYoutubeParser parser(u"http://page/");
        const auto captured = parser.parseCaptured(utf16FromUtf8(text), u"http://h/videoplayback?id=1&itag=22");
        EXPECT_TRUE(parser.pageUrl() == u"http://page/");
        return std::string(kMatches[static_cast<int>(captured.match)]) + ' ' + std::to_string(captured.itag) +
               ' ' + utf8FromUtf16(parser.title());
    };
    const Reading rows[] = {
        {R"("streamingData":"http://h/videoplayback?id=1&itag=22" "title":"T","x)", "url 22 T", "whole URL"},
        {R"("streamingData":"http://h/videoplayback?x&itag=22&id=1" \"title\":\"T\",\"x)", "idAndItag 22 T",
         ""},
        {R"("streamingData":"http://h/videoplayback?itag=18&id=1")", "id 0 ", "another format"},
        {"title=T&url_encoded_fmt_stream_map=url%3Dhttp://h/videoplayback%3Fid=1", "id 0 T", "a reply"},
        {R"("title":"T","x)", "none 0 T", "no streams, but a title"},
    };
    expectReadings(read, rows);
}

TEST(YoutubeCatalogue, UndoesPercentsInNarrowText) {
    std::string text = "a%41%4a%C3%zz%4g%%41%2541%4";
    CYoutubeParser::unescapeInPlace(text);
    EXPECT_EQ(text, "aAJ\xC3%zz%4g%A%41%4") << "once, bytes, not what is no digit";
}

}  // namespace
