#include "media/parsers/hls.h"

#include "media/parsers/hls_check.h"
#include "readings.h"

namespace {

using namespace std::string_literals;
using zab::CM3UParser;
using namespace zabtest;

/// What `read` gives of a parser that has read the body.
template <class Read>
auto parsed(Read read) {
    return [read](std::string_view body) {
        CM3UParser parser;
        parser.parse(body);
        return read(parser);
    };
}

const auto kindAndSegments = parsed([](const CM3UParser& parser) {
    return std::to_string(parser.kind) + (parser.hasNonTsSegments ? " other " : " ") + segmentsOf(parser);
});

TEST(Hls, ReadsSegmentsAndMaps) {
    const Reading rows[] = {
        {"#EXTINF:9.5,Intro\nseg1.ts\n", "2 Intro|seg1.ts|9.5;", "no header is needed"},
        {"#EXTINF:9.5, I \r\n \t s \t\r", "2  I|s|9.5;", "lines lose outer blanks; a title keeps its first"},
        {"#EXTINF:9,\na\n#EXTINF:8\nb", "2 |a|9;|b|8;", "comma and last line feed may be missing"},
        {"#EXTINF:5,T\na\n#EXTINF:x\nb\n", "2 T|a|5;|b|0;", "a segment leaves nothing to the next"},
        {"#EXTINF:1\n#EXTINF:2,T\nu\n", "2 |u|1;", "a second #EXTINF: is blocked by the first"},
        {"#EXTINF:1,T,t\n\n \n#comment\nu\n", "2 T,t|u|1;", "empty lines and comments end nothing"},
        {"#EXTM3U\n#EXT-X-VERSION:3\nu\n", "0 ", "neither header nor version is a kind"},
        {"#EXT-X-KEY\n#EXTINF;1\n#ext-x-key:\nx#EXTINF:1\nEXT-X-ENDLISTS", "0 ", "near misses are comments"},
        {"#EXTINF:1\na\n\0#EXTINF:2\nb"s, "2 |a|1;", "text ends at its first NUL"},
        {"#EXT-X-MAP:URI=\"init.mp4\",BYTERANGE=\"9@0\"\n", "2 other |init.mp4|0;", "a segment of no length"},
        {"#EXT-X-MAP: URI=' a b.ts '\n", "2 |a b.ts|0;", "single quotes serve too; outer blanks go"},
        {"#EXT-X-MAP:URI=\"open.TS\n", "2 other |open.TS|0;",
         "without its closing quote the rest; case matters"},
        {"#EXT-X-MAP:URI=../init.ts\n", "2 other |../init.ts|0;", "all from the first dot on is compared"},
        {"#EXT-X-MAP:uri=\"a\"\n", "0 ", "case matters; an ignored map leaves the kind"},
        {"#EXTINF:1\n#EXT-X-MAP:URI=\"a\"\nb\n", "2 |b|1;", "a map behind #EXTINF: is blocked"},
    };
    expectReadings(kindAndSegments, rows);
}

TEST(Hls, ReadsMediaPlaylists) {
    const Reading rows[] = {
        {"#EXT-X-VERSION:3\nEXT-X-ENDLIST\n", "0|0|3|3|1|0;", "the end-list mark has no number sign"},
        {"#EXTINF:1\na\n#EXT-X-ENDLIST\n", "0|0|0|0|0|1;", "with one it is a comment"},
        {"#EXT-X-MEDIA-SEQUENCE:5\n#EXT-X-MEDIA-SEQUENCE:x\n#EXT-X-TARGETDURATION:1.5", "1.5|5|0|0|0|0;",
         "no number"},
    };
    expectReadings(parsed(zabtest::headOf), rows);
}

TEST(Hls, OnlyABareUriLineLetsAPendingTagCountAgain) {
    const auto read = [](std::string body) {
        body.insert(body.rfind('\n', body.size() - 2) + 1,
                    "#EXT-X-MEDIA:TYPE=AUDIO\n");  // only the last tag can change that
        return kindAndSegments(body);
    };
    const std::string time = "#EXT-X-PROGRAM-DATE-TIME:x\n";
    const Reading rows[] = {
        {"#EXT-X-BYTERANGE:1@0\n#EXT-X-BYTERANGE:1@1", "1 ", "blocked: not recognised, the kind stays"},
        {"#EXT-X-BYTERANGE:1@0\nbare\n#EXT-X-BYTERANGE:1@1", "2 ", "a bare URI line cleared it"},
        {"#EXT-X-BYTERANGE:1@0\n#EXTINF:1\nu\n#EXT-X-BYTERANGE:1@1", "1 |u|1;", "a segment clears no other"},
        {"\n#EXT-X-DISCONTINUITY", "2 ", "the first of each counts"},
        {"#EXT-X-DISCONTINUITY\n#EXT-X-DISCONTINUITY-SEQUENCE:4", "1 ", "the longer tag is the same"},
        {time + "#EXT-X-DISCONTINUITY\nbare\n" + time, "1 ", "one line clears one flag, the time last"},
        {time + "#EXT-X-DISCONTINUITY\nbare\nbare\n" + time, "2 ", "the second line clears the time"},
        {"#EXT-X-KEY:METHOD=NONE\n#EXT-X-KEY:METHOD=NONE", "2 ", "a key always counts"},
        {"\n#EXT-X-PLAYLIST-TYPE:VOD", "2 ", "and a type"},
    };
    expectReadings(read, rows);
}

TEST(Hls, ReadsVariantsAndRenditions) {
    const auto read = [](const std::string& list) {
        return parsed(zabtest::variantsOf)("#EXT-X-STREAM-INF:" + list);
    };
    const Reading rows[] = {
        {"PROGRAM-ID=1,BANDWIDTH=800,CODECS=\"a,b\",RESOLUTION=640x360,AUDIO=\"g\",VIDEO=v,SUBTITLES=s\nu",
         "u|1|800|a,b|640x360|g|v|s;", "a comma inside quotes is kept"},
        {" BANDWIDTH=1 , CODECS=\"a\" ,\nu", "u|0|1|a||||;", "attributes lose their outer blanks"},
        {"CODECS=\"a\"b\"c,d\",AUDIO=x\nu", "u|0||a\"b\"c||||;", "only the first quoted part protects commas"},
        {"CODECS=\"a,AUDIO=x\nu", "u|0||a,AUDIO=x||||;", "an open quote takes the rest"},
        {"CODECS=a\",AUDIO=x\",VIDEO=v\nu", "u|0||a\",AUDIO=x|||v|;", "each quote goes on its own"},
        {"BANDWIDTH=1,BANDWIDTH=2,CODECS,BANDWIDTH=\nu", "u|0||||||;", "of a repeated attribute the last"},
        {"BANDWIDTH=1\n#c\n#EXT-X-STREAM-INF:BANDWIDTH=2\nu", "u|0|1|||||;", "a line with # is passed over"},
        {"BANDWIDTH=1\n\nu", "|0|1|||||;", "an empty line is an empty URI"},
        {"BANDWIDTH=1\n", "", "nothing behind the last line feed is no line"},
        {"BANDWIDTH=1\nEXT-X-ENDLIST", "EXT-X-ENDLIST|0|1|||||;", "the end-list mark is a URI here"},
    };
    expectReadings(read, rows);
    EXPECT_EQ(
        parsed(renditionsOf)(
            "#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",LANGUAGE=\"en\",NAME=\"E, x\",DEFAULT=YES,AUTOSELECT=NO,"
            "FORCED=f,CHARACTERISTICS=\"c\",SUBTITLES=s,URI=\"a.m3u8\",DEFAULT=NO\n#EXT-X-MEDIA:DEFAULT=yes"),
        "g|a.m3u8|AUDIO|en|E, x|1|NO|f|c|s;|||||0||||;")
        << "a later DEFAULT that is not YES changes nothing";
}

TEST(Hls, WalksTheStreams) {
    // "V" and "M" stand for the tags of a variant and of a rendition.
    const auto read = [](const std::string& text) {
        std::string body;
        for (const char c : text)
            body += c == 'V' ? "#EXT-X-STREAM-INF:" : c == 'M' ? "#EXT-X-MEDIA:" : std::string(1, c);
        return parsed(zabtest::streamsOf)(body);
    };
    const Reading rows[] = {
        {"#EXTINF:1.75\na\n#EXTINF:2\nb\n", "|||3|;", "a media playlist is one stream, its seconds cut"},
        {"#EXTINF:1e999\na\n#EXTINF:-1e999\nb\n", "|||0|;", "not a number has no seconds"},
        {"VBANDWIDTH=5,RESOLUTION=640x360x2\nu\n", "u||360x2||5;", "behind the first x"},
        {"VCODECS=a\nu\nVCODECS=b\nv\n", "u||||;v||||;", "all single: all"},
        {"VCODECS=a\nu\nVCODECS=\"b,c\"\nv\n", "v||||;", "one muxed: no single"},
        {"VCODECS=a\nu\nVRESOLUTION=1\nv\n", "v||||;", "nor beside one without; no x, no height"},
        {"MGROUP-ID=z\nVCODECS=a\nu\nVCODECS=\"b,c\"\nv\n", "u||||;v||||;", "renditions: all are walked"},
        {"MGROUP-ID=a,URI=0\nMGROUP-ID=g,URI=1\nMGROUP-ID=g,URI=2\nVAUDIO=g\nu\nVAUDIO=G\nv\n", "u|1|||;v||||;",
         "the first of the group; case matters"},
        {"VBANDWIDTH=1\nu\n#EXTINF:4\nv\n", "|||4|;", "the last known tag decides the kind"},
    };
    expectReadings(read, rows);
}

}  // namespace
