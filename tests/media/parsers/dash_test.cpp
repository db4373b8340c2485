#include "media/parsers/dash.h"

#include <gtest/gtest.h>

#include "media/parsers/dash_check.h"
#include "media/parsers/generated.h"
#include "readings.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using zabtest::expectReadings;
using zabtest::Reading;

// What no naive reading can vouch for: that both read what is meant.
TEST(Dash, ReadsCompleteRepresentations) {
    const auto records = [](std::string_view body) {
        const std::string all = zabtest::dashRecords(body);
        return all == zabtest::naiveDashRecords(body) ? all : "not as the naive reading: " + all;
    };
    const Reading rows[] = {
        {"<Representation id=\"137\" "
         "a='x'><BaseURL>b</BaseURL><SegmentList>s</SegmentList></Representation>",
         "137|b|s;", "the ordinary form"},
        {"<representation id=7/><BASEURL >b</ baseurl ><segmentlist>s</SEGMENTLIST>", "7|b|s;",
         "any letter case; a bare value ends at the slash; no end tag"},
        {"<Representation id='1'<BaseURL>b</BaseURL><SegmentList>s</SegmentList>", "1|b|s;",
         "a child may begin where the attributes end"},
        {"<Representation id=1><BaseURL>b<BaseURL>c</BaseURL><SegmentList>s</SegmentList><BaseURL>d", "1|c|s;",
         "the last content that is closed"},
        {"<Representation id=1><BaseURL>b</BaseURL></Representation><SegmentList>s</SegmentList>", "",
         "a child behind the end tag is none"},
        {"<Representation ID=1><BaseURL>b</BaseURL><SegmentList>s</SegmentList>", "",
         "attribute names are exact"},
        {"<Representation id='12ab' id=99999999999><BaseURL>b</BaseURL><SegmentList>s</SegmentList>",
         "2147483647|b|s;", "of a repeated attribute the last; beyond 32 bits the limit"},
        {"<Representation><Representation id=1><BaseURL>b</BaseURL><SegmentList>s</SegmentList>", "",
         "a representation begins no sooner than 14 characters behind the last one's name"},
        {"<Representation id=1><BaseURL>b</BaseURL>\0<SegmentList>s</SegmentList>"s, "",
         "text ends at its first NUL"},
    };
    expectReadings(records, rows);
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

TEST(Dash, AgreesWithTheNaiveReading) {
    zabtest::checkGenerated(zabtest::Random(21), 2000, kPieces, zabtest::checkDash);
}

}  // namespace
