#include "media/parsers/hls.h"

#include <gtest/gtest.h>

#include "media/parsers/generated.h"
#include "media/parsers/hls_check.h"

namespace {

using namespace std::string_view_literals;
using zab::CM3UParser;

/// "title|uri|duration;" of each segment.
std::string segmentsOf(const CM3UParser& parser) {
    std::ostringstream all;
    for (const auto& s : parser.media.segments) all << s.title << '|' << s.uri << '|' << s.duration << ';';
    return all.str();
}

TEST(Hls, ReadsSegments) {
    const struct {
        std::string_view body, segments;
        std::uint32_t kind;
        const char* why;
    } rows[] = {
        {"#EXTINF:9.5,Intro\nseg1.ts\n", "Intro|seg1.ts|9.5;", 2, "no header is needed"},
        {"#EXTINF:9.5, I \r\n \t s \t\r", " I|s|9.5;", 2, "lines lose outer blanks; a title keeps its first"},
        {"#EXTINF:9,\na\n#EXTINF:8\nb", "|a|9;|b|8;", 2, "the comma and the last line feed may be missing"},
        {"#EXTINF:1,a,b\nu", "a,b|u|1;", 2, "the title begins behind the first comma"},
        {"#EXTINF:x,T\nu\n", "T|u|0;", 2, "a duration that does not scan is 0"},
        {"#EXTINF:5\na\n#EXTINF:x\nb\n", "|a|5;|b|0;", 2, "a segment leaves no duration to the next"},
        {"#EXTINF: 1e,T\nu\n#EXTINF:-2.5\nv\n#EXTINF:0x10\nw", "T|u|1;|v|-2.5;|w|0;", 2, "decimal prefixes"},
        {"#EXTINF:1\n#EXTINF:2,T\nu\n", "|u|1;", 2, "a second #EXTINF: is blocked by the first"},
        {"#EXTINF:1,T\n\n \n#comment\nu\n", "T|u|1;", 2, "empty lines and comments end nothing"},
        {"seg1.ts\nseg2.ts\n", "", 0, "a URI line without #EXTINF: is no segment; no tag, no playlist"},
        {"#EXTINF:1\n", "", 2, "a tag alone makes a media playlist"},
        {"#EXTM3U\n#EXT-X-VERSION:3\n", "", 0, "header and version are no kind"},
        {"#EXTINF:1\na\n\0#EXTINF:2\nb"sv, "|a|1;", 2, "text ends at its first NUL"},
        {"#EXT-X-MAP:URI=\"init.mp4\",BYTERANGE=\"9@0\"\n", "|init.mp4|0;", 2, "a map: a segment of no length"},
        {"#EXT-X-MAP: URI=' a b '\n", "|a b|0;", 2, "single quotes serve too; outer blanks go"},
        {"#EXT-X-MAP:URI=\"open.ts\n", "|open.ts|0;", 2, "without its closing quote the rest is the value"},
        {"#EXT-X-MAP:URI=a,B=1\n", "|a,B=1|0;", 2, "a bare value is the rest"},
        {"#EXT-X-MAP:uri=\"a\"\n", "", 0, "case matters; an ignored map leaves the kind"},
        {"#EXTINF:1\n#EXT-X-MAP:URI=\"a\"\nb\n", "|b|1;", 2, "a map behind #EXTINF: is blocked"},
        {"#EXT-X-KEY\n#EXTINF;1\n#ext-x-key:\n#EXTM3U8\nx#EXTINF:1\n", "", 0, "near misses are comments"},
    };
    for (const auto& row : rows) {
        CM3UParser parser;
        EXPECT_EQ(parser.parse(row.body), row.kind != 0) << row.why;
        EXPECT_EQ(parser.kind, row.kind) << row.why;
        EXPECT_EQ(segmentsOf(parser), row.segments) << row.why;
    }
}

TEST(Hls, ReadsMediaPlaylists) {
    const struct {
        std::string_view body;
        double target;
        std::int64_t sequence;
        std::int32_t version;
        bool endList;
        const char* why;
    } rows[] = {
        {"#EXT-X-TARGETDURATION:10.5\n#EXT-X-MEDIA-SEQUENCE:7\n#EXT-X-VERSION:3\nEXT-X-ENDLIST\n", 10.5, 7, 3,
         true, "the end-list mark has no number sign"},
        {"#EXTINF:1\na\n#EXT-X-ENDLIST\n", 0, 0, 0, false, "with one it is a comment"},
        {"#EXTINF:1\nEXT-X-ENDLIST \n", 0, 0, 0, true, "and never a URI"},
        {"EXT-X-ENDLIST\n", 0, 0, 0, true, "it makes a media playlist by itself"},
        {"#EXT-X-MEDIA-SEQUENCE:-99999999999999999999\n#EXT-X-VERSION:99999999999\n", 0, INT64_MIN, INT32_MAX,
         false, "out of range: the nearer limit"},
        {"#EXT-X-MEDIA-SEQUENCE:5\n#EXT-X-MEDIA-SEQUENCE:x\n#EXT-X-TARGETDURATION:\n", 0, 5, 0, false,
         "what does not scan changes nothing"},
    };
    for (const auto& row : rows) {
        CM3UParser parser;
        EXPECT_TRUE(parser.parse(row.body)) << row.why;
        EXPECT_EQ(parser.media.targetDuration, row.target) << row.why;
        EXPECT_EQ(parser.media.mediaSequence, row.sequence) << row.why;
        EXPECT_EQ(parser.media.version, row.version) << row.why;
        EXPECT_EQ(parser.media.endList, row.endList) << row.why;
    }
}

TEST(Hls, OnlyABareUriLineLetsAPendingTagCountAgain) {
    constexpr std::string_view kMaster = "#EXT-X-MEDIA:TYPE=AUDIO\n";
    const struct {
        std::string_view before, tag;
        std::uint32_t kind;
        const char* why;
    } rows[] = {
        {"#EXT-X-BYTERANGE:1@0\n", "#EXT-X-BYTERANGE:1@1\n", 1, "blocked: not recognised, the kind stays"},
        {"#EXT-X-BYTERANGE:1@0\nbare\n", "#EXT-X-BYTERANGE:1@1\n", 2, "a bare URI line cleared it"},
        {"#EXT-X-BYTERANGE:1@0\n#EXTINF:1\nu\n", "#EXT-X-BYTERANGE:1@1\n", 1, "a segment clears nothing else"},
        {"#EXT-X-DISCONTINUITY\n", "#EXT-X-DISCONTINUITY-SEQUENCE:4\n", 1,
         "a prefix: the longer tag is the same"},
        {"#EXT-X-PROGRAM-DATE-TIME:x\n#EXT-X-DISCONTINUITY\nbare\n", "#EXT-X-PROGRAM-DATE-TIME:y\n", 1,
         "one line clears one flag, the discontinuity before the time"},
        {"#EXT-X-PROGRAM-DATE-TIME:x\n#EXT-X-DISCONTINUITY\nbare\nbare\n", "#EXT-X-PROGRAM-DATE-TIME:y\n", 2,
         "the second line clears the time"},
        {"#EXT-X-PROGRAM-DATE-TIME:x\n\n", "#EXT-X-PROGRAM-DATE-TIME:y\n", 1, "an empty line is no URI line"},
        {"#EXT-X-KEY:METHOD=NONE\n", "#EXT-X-KEY:METHOD=NONE\n", 2, "a key always counts"},
        {"#EXTINF:1\n", "#EXT-X-PLAYLIST-TYPE:VOD\n", 2, "its value is ignored"},
    };
    for (const auto& row : rows) {
        CM3UParser parser;
        parser.parse(std::string(row.before).append(kMaster).append(row.tag));
        EXPECT_EQ(parser.kind, row.kind) << row.why;
    }
}

TEST(Hls, AMapNamesNonTsSegmentsByItsFirstDot) {
    const struct {
        std::string_view uri;
        bool nonTs;
        const char* why;
    } rows[] = {
        {"init.mp4", true, "another extension"}, {"init.ts", false, "a transport stream"},
        {"init.TS", true, "case matters"},       {"../init.ts", true, "all from the first dot on is compared"},
        {"init", true, "no dot is not .ts"},
    };
    for (const auto& row : rows) {
        CM3UParser parser;
        parser.parse(std::string("#EXT-X-MAP:URI=\"").append(row.uri).append("\"\n"));
        EXPECT_EQ(parser.hasNonTsSegments, row.nonTs ? 1u : 0u) << row.why;
    }
}

/// "uri|programId|bandwidth|codecs|resolution|audio|video|subtitles;" of each variant.
std::string variantsOf(const CM3UParser& parser) {
    std::ostringstream all;
    for (const auto& v : parser.master.variants)
        all << v.uri << '|' << v.programId << '|' << v.bandwidth << '|' << v.codecs << '|' << v.resolution
            << '|' << v.audio << '|' << v.video << '|' << v.subtitles << ';';
    return all.str();
}

TEST(Hls, ReadsVariants) {
    const struct {
        std::string_view list, rest, variants;
        const char* why;
    } rows[] = {
        {"PROGRAM-ID=1,BANDWIDTH=800,CODECS=\"a,b\",RESOLUTION=640x360,AUDIO=\"g\",VIDEO=v,SUBTITLES=s", "u",
         "u|1|800|a,b|640x360|g|v|s;", "a comma inside quotes is kept"},
        {" BANDWIDTH=1 , CODECS=\"a\" ,", "u", "u|0|1|a||||;", "attributes lose their outer blanks"},
        {"CODECS=\"a\"b\"c,d\",AUDIO=x", "u", "u|0||a\"b\"c||||;",
         "only the first quoted part protects commas"},
        {"CODECS=\"a,AUDIO=x", "u", "u|0||a,AUDIO=x||||;", "an open quote takes the rest"},
        {"CODECS=a\",AUDIO=x\",VIDEO=v", "u", "u|0||a\",AUDIO=x|||v|;", "each quote goes on its own"},
        {"CODECS=\",AUDIO=x", "u", "u|0||,AUDIO=x||||;", "an opening quote alone goes too"},
        {"codecs=a,XCODECS=b,CODECS,CODECS =c", "u", "u|0||||||;", "names are exact"},
        {"BANDWIDTH=1,BANDWIDTH=2,BANDWIDTH=", "u", "u|0||||||;", "of a repeated attribute the last"},
        {"PROGRAM-ID=x,PROGRAM-ID=\" 7z\"", "u", "u|7||||||;", "a number is the longest prefix"},
        {"BANDWIDTH=1", "#c\n#EXT-X-STREAM-INF:BANDWIDTH=2\nu", "u|0|1|||||;",
         "what begins with # is passed over"},
        {"BANDWIDTH=1", "\nu", "|0|1|||||;", "an empty line is an empty URI"},
        {"BANDWIDTH=1", " ", "|0|1|||||;", "so is a last line of blanks"},
        {"BANDWIDTH=1", "", "", "nothing behind the last line feed is no line"},
        {"BANDWIDTH=1", "EXT-X-ENDLIST", "EXT-X-ENDLIST|0|1|||||;", "the end-list mark is a URI here"},
    };
    for (const auto& row : rows) {
        CM3UParser parser;
        parser.parse(std::string("#EXT-X-STREAM-INF:").append(row.list).append("\n").append(row.rest));
        EXPECT_EQ(variantsOf(parser), row.variants) << row.why;
    }
}

TEST(Hls, ReadsRenditions) {
    CM3UParser parser;
    EXPECT_TRUE(
        parser.parse("#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",LANGUAGE=\"en\",NAME=\"E, x\",DEFAULT=YES,"
                     "AUTOSELECT=NO,FORCED=f,CHARACTERISTICS=\"c\",SUBTITLES=s,URI=\"a.m3u8\",DEFAULT=NO\n"
                     "#EXT-X-MEDIA:DEFAULT=yes\n"));
    ASSERT_EQ(parser.master.renditions.size(), 2u);
    const auto& r = parser.master.renditions[0];
    EXPECT_EQ(r.type, "AUDIO");
    EXPECT_EQ(r.groupId, "g");
    EXPECT_EQ(r.language, "en");
    EXPECT_EQ(r.name, "E, x");
    EXPECT_EQ(r.isDefault, 1) << "a later DEFAULT that is not YES changes nothing";
    EXPECT_EQ(r.autoselect, "NO");
    EXPECT_EQ(r.forced, "f");
    EXPECT_EQ(r.characteristics, "c");
    EXPECT_EQ(r.subtitles, "s");
    EXPECT_EQ(r.uri, "a.m3u8");
    EXPECT_EQ(parser.master.renditions[1].isDefault, 0) << "exactly YES";
}

/// "uri|audioUri|height|durationText|bandwidth;" of each stream.
std::string streamsOf(CM3UParser& parser) {
    std::ostringstream all;
    CM3UParser::Stream s;
    while (parser.getNextStream(s))
        all << s.uri << '|' << s.audioUri << '|' << s.height << '|' << s.durationText << '|' << s.bandwidth
            << ';';
    EXPECT_EQ(s.uri, "") << "the outputs are emptied at the end too";
    return all.str();
}

TEST(Hls, WalksTheStreams) {
    const struct {
        std::string_view body, streams;
        const char* why;
    } rows[] = {
        {"#EXTINF:1.75\na\n#EXTINF:2\nb\n", "|||3|;", "a media playlist is one stream, its seconds cut"},
        {"#EXTINF:-1.75\na\n", "|||-1|;", "cut toward zero"},
        {"#EXTINF:1e300\na\n", "|||9223372036854775807|;", "beyond 64 bits: the limit"},
        {"#EXTINF:1e999\na\n#EXTINF:-1e999\nb\n", "|||0|;", "not a number has no seconds"},
        {"#EXT-X-STREAM-INF:BANDWIDTH=5,RESOLUTION=640x360x2\nu\n", "u||360x2||5;",
         "height: behind the first x"},
        {"#EXT-X-STREAM-INF:RESOLUTION=640\nu\n", "u||||;", "no x, no height"},
        {"#EXT-X-STREAM-INF:CODECS=a\nu\n#EXT-X-STREAM-INF:CODECS=b\nv\n", "u||||;v||||;",
         "all single: all walked"},
        {"#EXT-X-STREAM-INF:CODECS=a\nu\n#EXT-X-STREAM-INF:CODECS=\"b,c\"\nv\n", "v||||;",
         "one muxed: the single are skipped"},
        {"#EXT-X-STREAM-INF:CODECS=a\nu\n#EXT-X-STREAM-INF:BANDWIDTH=1\nv\n", "v||||1;",
         "one without codecs does the same"},
        {"#EXT-X-MEDIA:GROUP-ID=z\n#EXT-X-STREAM-INF:CODECS=a\nu\n#EXT-X-STREAM-INF:CODECS=\"b,c\"\nv\n",
         "u||||;v||||;", "renditions: all are walked"},
        {"#EXT-X-MEDIA:TYPE=VIDEO,GROUP-ID=g,URI=1\n#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=g,URI=2\n"
         "#EXT-X-STREAM-INF:AUDIO=g\nu\n#EXT-X-STREAM-INF:AUDIO=G\nv\n",
         "u|1|||;v||||;", "the first of the group, whatever its type; case matters"},
        {"#EXT-X-STREAM-INF:BANDWIDTH=1\nu\n#EXTINF:4\nv\n", "|||4|;",
         "the last recognised tag decides the kind"},
        {"u\n", "", "no playlist, no streams"},
    };
    for (const auto& row : rows) {
        CM3UParser parser;
        parser.parse(row.body);
        EXPECT_EQ(streamsOf(parser), row.streams) << row.why;
    }
}

const auto kPieces = zabtest::pieces(
    "#EXTM3U~#EXT-X-VERSION:3~#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID=\"g\",URI=\"a,b\"~#EXT-X-STREAM-INF:~"
    "BANDWIDTH=1280000,~CODECS=\"avc1.4d401f,mp4a.40.2\",~RESOLUTION=1280x720,~AUDIO=\"g\",~\"~"
    "#EXTINF:9.009,~#EXTINF:~title~EXT-X-ENDLIST~#EXT-X-ENDLIST~#EXT-X-MAP:URI=\"init.mp4\"~"
    "#EXT-X-MAP:URI='~#EXT-X-KEY:METHOD=AES-128~#EXT-X-PROGRAM-DATE-TIME:2020~#EXT-X-BYTERANGE:9@0~"
    "#EXT-X-DISCONTINUITY~#EXT-X-MEDIA-SEQUENCE:12~#EXT-X-TARGETDURATION:10~1e999~-5~http://h/s.ts~\n~"
    "\n~\n~\n~\r\n~ ~\t~,~=~#~\0~\xff"sv);

TEST(Hls, EveryPrefixOfGeneratedBodiesKeepsItsBounds) {
    zabtest::Random random(20);
    for (int round = 0; round < 40; ++round) {
        const std::string body = zabtest::strungTogether(random, kPieces, 60);
        for (std::size_t size = 0; size <= body.size(); size += 1 + random() % 9)
            zabtest::onExactBlock(std::string_view(body).substr(0, size), zabtest::checkHls);
    }
}

}  // namespace
