#include "media/parsers/hds.h"

#include <gtest/gtest.h>

#include <bit>

#include "media/parsers/generated.h"
#include "media/parsers/hds_check.h"
#include "web/encoding.h"

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kBootstrap = "<bootstrapInfo id=\"b\">AAA</bootstrapInfo>";

zabtest::F4MParserPtr parsed(std::string_view body) {
    zabtest::F4MParserPtr parser(new zab::CF4MParser);
    parser->parse(body);
    return parser;
}

/// "url height[ hidden];" of each media record.
std::string heightsOf(std::string_view body) {
    const auto parser = parsed(std::string(kBootstrap).append(body));
    std::string all;
    for (const auto& m : parser->media)
        all.append(m.url).append(" ").append(m.height).append(m.hidden != 0 ? " hidden;" : ";");
    return all;
}

TEST(Hds, TheLastRenditionOfEachHeightWins) {
    const struct {
        std::string_view body, heights;
        const char* why;
    } rows[] = {
        {"<media url=a height=720 ><media url=b height=720 ><media url=c height=360 >",
         "a 720 hidden;b 720;c 360;", "the first 720 is hidden"},
        {"<media url=a height=1 ><media url=b height=2 ><media url=c height=1 ><media url=d height=1 >",
         "a 1 hidden;b 2;c 1 hidden;d 1;", "every earlier one"},
        {"<media url=a height=720 ><media url=b height=0720 ><media url=c height='720 ' >",
         "a 720;b 0720;c 720 ;", "heights are compared as text"},
        {"<media url=a ><media url=b height='' >", "a  hidden;b  hidden;", "without a height it is hidden"},
        {"<media url=a height=0 ><media url=b height=-5 >", "a 0;b -5;", "0 and below are heights"},
    };
    for (const auto& row : rows) EXPECT_EQ(heightsOf(row.body), row.heights) << row.why;
}

std::string amfNumber(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    std::string bytes;
    for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(bits >> shift & 0xFF);
    return bytes;
}

TEST(Hds, ReadsAHeightFromMetadata) {
    const std::string key = "\x06height";
    const std::string typed = key + '\0';
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const struct {
        std::string data, height;
        const char* why;
    } rows[] = {
        {"ab" + typed + amfNumber(480), "480", "behind the key and its type byte"},
        {"a" + typed + amfNumber(480), "", "a key before offset 2 is none"},
        {"ab" + typed + amfNumber(480).substr(0, 7), "", "the double must end inside the data"},
        {"ab" + key + 'X' + amfNumber(480.9), "480", "any type byte; cut to a whole number"},
        {"ab" + typed + amfNumber(-0.5) + typed + amfNumber(480), "0", "the first key decides"},
        {"ab" + typed + amfNumber(1e300), "9223372036854775807", "beyond 64 bits: the limit"},
        {"ab" + typed + amfNumber(notANumber), "", "not a number is no height"},
        {"ab\x06Height" + std::string(9, '\0'), "", "case matters"},
    };
    for (const auto& row : rows) {
        const std::string media =
            "<media url=u ><metadata>" + zab::Base64Encode(row.data) + "</metadata></media>";
        EXPECT_EQ(heightsOf(media), "u " + row.height + (row.height.empty() ? " hidden;" : ";")) << row.why;
    }
    const std::string base64 = zab::Base64Encode("ab" + typed + amfNumber(480));
    const struct {
        std::string media;
        const char *heights, *why;
    } places[] = {
        {"<media url=u height=1 ><metadata>" + base64 + "</metadata>", "u 1;", "an attribute comes first"},
        {"<media url=u ><metadata> \t" + base64 + "<x></metadata>", "u 480;",
         "leading blanks; ends at a foreign byte"},
        {"<media url=u ><metadata>\n" + base64 + "</metadata>", "u  hidden;", "a line feed is foreign"},
        {"<media url=u /><metadata>" + base64 + "</metadata>", "u  hidden;",
         "closed in its start tag: no child"},
        {"<media url=u ></media ><metadata>" + base64 + "</metadata>", "u  hidden;", "closed before"},
        {"<media url=u ><metadata>x</metadata><metadata>" + base64 + "</metadata>", "u  hidden;",
         "the first of several"},
        {"<media url=u ><media url=v ><MetaData>" + base64 + "</metadata >", "u 480 hidden;v 480;",
         "unclosed: the next one's"},
    };
    for (const auto& row : places) EXPECT_EQ(heightsOf(row.media), row.heights) << row.why;
}

TEST(Hds, LinksBootstraps) {
    constexpr std::string_view kTwo =
        "<bootstrapInfo id=x>X</bootstrapInfo><bootstrapInfo id=y>Y</bootstrapInfo>";
    const struct {
        std::string_view body, bootstrap;
        const char* why;
    } rows[] = {
        {"<media bootstrapInfoId=y >", "Y", "by its id"},
        {"<media bootstrapInfoId=Y >", "X", "case matters; without a match the first"},
        {"<media url=u >", "X", "no id, no bootstrap without one: the first"},
        {"<media url=u ><bootstrapInfo>Z</bootstrapInfo>", "Z", "an absent id equals an absent one"},
        {"<media bootstrapInfoId=y ><bootstrapInfo id=y>Z</bootstrapInfo>", "Y", "the first of several"},
        {"<media bootstrapInfoId=z ><bootstrapInfo id=z >Z", "", "without a close tag the data is empty"},
        {"<media bootstrapInfoId=z ><bootstrapInfo id=z a='>'/>q</bootstrapInfo>", "q",
         "behind the start tag's own >"},
        {"<media bootstrapInfoId=z ><bootstrapInfo ID=q id=z>Z</bootstrapInfo>", "Z",
         "attribute names are exact"},
    };
    for (const auto& row : rows) {
        const auto parser = parsed(std::string(kTwo).append(row.body));
        ASSERT_EQ(parser->media.size(), 1u) << row.why;
        EXPECT_EQ(parser->media[0].bootstrap, row.bootstrap) << row.why;
    }
}

TEST(Hds, ReadsTheManifest) {
    const struct {
        std::string_view body, baseUrl, duration;
        int drm, pv;
        const char* why;
    } rows[] = {
        {"<baseURL>http://h/video</baseURL><duration> 1.5 </duration>", "http://h/video/", " 1.5 ", 0, 0,
         "a slash is added; contents are raw"},
        {"<BASEURL >http://h/video/</baseurl>", "http://h/video/", "", 0, 0, "one that is there is kept"},
        {"<baseURL>a</baseURL><baseURL></baseURL>", "", "", 0, 0, "the last, also when empty"},
        {"<baseURL>a</baseURL><duration>1</duration><baseURL>b<duration>2", "a/", "1", 0, 0,
         "no close tag: no content"},
        {"<drmAdditionalHeader/>< PV-x>", "", "", 1, 1, "any name that begins so"},
        {"</drm></pv-x><dr><pvx>", "", "", 0, 0, "only start tags, only the whole beginning"},
        {"<x a='<drm'>", "", "", 1, 0, "inside a value too"},
    };
    for (const auto& row : rows) {
        const auto parser = parsed(std::string(kBootstrap).append("<media url=u >").append(row.body));
        EXPECT_EQ(parser->baseUrl, row.baseUrl) << row.why;
        EXPECT_EQ(parser->duration, row.duration) << row.why;
        EXPECT_EQ(parser->hasDrm, row.drm) << row.why;
        EXPECT_EQ(parser->hasPv, row.pv) << row.why;
    }
}

TEST(Hds, AFailedParseKeepsNothing) {
    for (const char* body :
         {"<media url=u height=1 ><drm><baseURL>b</baseURL>", "<bootstrapInfo id=b>A</bootstrapInfo><drm>",
          "<bootstrapInfo id=b>A</bootstrapInfo><media><mediax >", ""}) {
        const auto parser =
            parsed("<bootstrapInfo>A</bootstrapInfo><media url=u ><duration>1</duration><pv-a>");
        EXPECT_EQ(parser->duration, "1");
        EXPECT_FALSE(parser->parse(body)) << body;
        EXPECT_EQ(zabtest::hdsRecords(*parser.get()), zabtest::joined({"", "", "", ""})) << body;
    }
}

const auto kPieces = zabtest::pieces(
    "<bootstrapInfo id=\"b\">~<bootstrapInfo ~</bootstrapInfo>~<media url=\"u\" ~<media ~</media>~/>~"
    "<metadata>~</metadata>~< /media ~YWIGaGVpZ2h0AEB+AAAAAAAA~<duration>~</duration>~<baseURL>~"
    "</ baseurl >~<drm~<pv-~ id='b'~ bootstrapInfoId=\"b~ height=720~ height=\"360\"~ bitrate=5~\"~'~=~"
    "/~>~<~x~ ~\n~ a=' b=~\0"sv);

TEST(Hds, AgreesWithTheNaiveReadingOnGeneratedBodies) {
    zabtest::Random random(22);
    for (int round = 0; round < 3000; ++round) {
        const std::string body = zabtest::strungTogether(random, kPieces, 4 + random() % 40);
        zabtest::onExactBlock(body, zabtest::checkHds);
        zabtest::onExactBlock(body.substr(0, random() % (body.size() + 1)), zabtest::checkHds);
    }
}

}  // namespace
