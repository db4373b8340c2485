#include "media/parsers/dash.h"

#include <gtest/gtest.h>

#include "media/parsers/dash_check.h"
#include "media/parsers/generated.h"

namespace {

using namespace std::string_view_literals;

TEST(Dash, ReadsCompleteRepresentations) {
    // B and S stand for a whole BaseURL and SegmentList element.
    const struct {
        std::string_view body, records;
        const char* why;
    } rows[] = {
        {"<Representation id=\"137\" a='x'>BS</Representation>", "137|b|s;", "the ordinary form"},
        {"<representation id=137>BS</REPRESENTATION >", "137|b|s;", "any letter case; a bare value ends at >"},
        {"<\r\n Representation\tid='7'>BS< /Representation>BS", "7|b|s;", "white space before name and slash"},
        {"<Representation id=\"1\">BS", "1|b|s;", "an end tag is not needed"},
        {"<Representation ID=\"1\">BS</Representation>", "", "attribute names are exact"},
        {"<Representation id=\"1\">B</Representation>", "", "without a segment list it is dropped"},
        {"<Representation id=\"1\">S</Representation>B", "", "a child behind the end tag is none"},
        {"<Representation id=\"1\">BS<BaseURL></BaseURL></Representation>", "",
         "the last of a repeated element, also when empty"},
        {"<Representation id=\"1\">BS<BaseURL>c</Representation>", "1|b|s;", "no close tag: no content"},
        {"<Representation id=\"1\">S<BaseURL> <i>&amp;</i>\n</ baseurl ></Representation>",
         "1| <i>&amp;</i>\n|s;", "content is raw; white space around the closing name"},
        {"<Representation id=\"1\">S<BaseURL>a<BaseURL>b</BaseURL></Representation>", "1|b|s;",
         "the scan goes on inside a content"},
        {"<Representation id=\"1\">S<BaseURL>a</Representation></BaseURL>", "1|a</Representation>|s;",
         "a content is not bounded by the element"},
        {"<Representation id=\"1\">S<BaseURL a=\">\">x</BaseURL></Representation>", "1|\">x|s;",
         "where attributes are not read, the first > ends the tag"},
        {"<Representation id=\"1\">S<BaseURLs>a</BaseURLs><xBaseURL>a</xBaseURL>", "", "names are whole"},
        {"<Representation id=\"1\">BS</ Representation><BaseURL>c</BaseURL>", "1|c|s;",
         "no white space behind the slash of an end tag"},
        {"<Representation id=\"1\">BS</Representations><BaseURL>c</BaseURL>", "1|c|s;",
         "an end tag's name is whole"},
        {"<Representation id=\"1\" id=\"2\">BS", "2|b|s;", "of a repeated attribute the last"},
        {"<Representation a:b-c_1 = 'x'id = 5>BS", "5|b|s;", "names of all kinds, white space around ="},
        {"<Representation a=\"<\" b='\"' id=\"9\">BS", "9|b|s;", "quotes hide what they hold"},
        {"<Representation 1=a id=\"9\">BS", "", "what is no attribute ends the list"},
        {"<Representation id=\"9\" b=\"x>BS", "9|b|s;", "an open quote cannot be read; what came before stays"},
        {"<Representation id=9/>BS", "9|b|s;", "a bare value ends at the slash"},
        {"<Representation id=\"12ab\">BS", "12|b|s;", "a number is its leading digits"},
        {"<Representation id=\" 12\">BS<Representation id=\"-1\">BS<Representation id=\"0\">BS", "",
         "no digit or 0: no itag"},
        {"<Representation id=\"99999999999\">BS", "2147483647|b|s;", "beyond 32 bits: the limit"},
        {"<Representation><Representation id=\"1\">BS", "",
         "a representation begins no sooner than 14 characters behind the last one's name"},
        {"<Representation               ><Representation id=\"1\">BS", "1|b|s;", "but it does then"},
        {"<Representation id=\"1\">B<Representation id=\"2\">S</Representation>", "1|b|s;",
         "nested ones read on inside"},
        {"<Representations id=\"1\">BS<Representation/ id=\"2\">BS", "",
         "white space or > must follow the name"},
        {"<Representation id=\"1\">B\0S"sv, "", "text ends at its first NUL"},
        {"", "", "nothing"},
    };
    for (const auto& row : rows) {
        std::string body;
        for (std::size_t i = 0; i < row.body.size(); ++i) {
            const bool begins =
                i == 0 || row.body[i - 1] == '>' || row.body[i - 1] == 'B' || row.body[i - 1] == '\0';
            if (begins && row.body[i] == 'B')
                body += "<BaseURL>b</BaseURL>";
            else if (begins && row.body[i] == 'S')
                body += "<SegmentList>s</SegmentList>";
            else
                body += row.body[i];
        }
        EXPECT_EQ(zabtest::dashRecords(body), row.records) << row.why;
        EXPECT_EQ(zabtest::naiveDashRecords(body), row.records) << row.why << " (the naive reading)";
    }
}

TEST(Dash, PicksAudioOutOfAllRecordsInOrder) {
    zab::CYoutubeDashXMLParser parser;
    std::string body;
    for (const char* itag : {"303", "139", "140", "251", "137"})
        body.append("<Representation id=")
            .append(itag)
            .append("><BaseURL>u</BaseURL><SegmentList>s</SegmentList></Representation>");
    ASSERT_TRUE(parser.parse(body));
    ASSERT_NE(parser.pickAudioFor(137), nullptr);
    EXPECT_EQ(parser.pickAudioFor(137)->itag, 140);
    EXPECT_EQ(parser.pickAudioFor(303)->itag, 251);
    ASSERT_TRUE(parser.parse(body.substr(0, body.find("id=139"))));
    EXPECT_EQ(parser.pickAudioFor(137), nullptr) << "no audio record, and nothing left of the earlier parse";
}

const auto kPieces = zabtest::pieces(
    "<Representation~<Representation id=\"137\">~</Representation>~< /representation ~<BaseURL>~"
    "</BaseURL>~< baseurl\t~</ BaseURL\n>~<SegmentList>~</SegmentList>~ id=\"140\"~ id='13~ id=251~"
    " a=\"<~ b=~\"~'~=~/~>~<~x~http://h/v~ ~\n~_a:b-1~<Representation a=' b=~\0"sv);

TEST(Dash, AgreesWithTheNaiveReadingOnGeneratedBodies) {
    zabtest::Random random(21);
    for (int round = 0; round < 3000; ++round) {
        const std::string body = zabtest::strungTogether(random, kPieces, 4 + random() % 40);
        zabtest::onExactBlock(body, zabtest::checkDash);
        zabtest::onExactBlock(body.substr(0, random() % (body.size() + 1)), zabtest::checkDash);
    }
}

TEST(Dash, AgreesWithTheNaiveReadingWhereListsRunThroughEachOther) {
    for (const std::string_view piece : {"<Representation a=' b="sv, "<Representation a=\" id='"sv,
                                         "<Representation id=1 x=\"y\" zz=' <BaseURL> "sv}) {
        std::string body;
        for (int i = 0; i < 60; ++i) body.append(piece).append(i % 7 == 0 ? " id=5 " : "");
        body += "<BaseURL>b</BaseURL><SegmentList>s</SegmentList>";
        zabtest::onExactBlock(body, zabtest::checkDash);
    }
}

}  // namespace
