#include "media/parsers/dash.h"

#include "media/parsers/dash_check.h"
#include "readings.h"

namespace {

using namespace std::string_literals;
using namespace zabtest;

TEST(Dash, ReadsCompleteRepresentations) {
    // B and S stand for a whole BaseURL and SegmentList element.
    const auto read = [](const std::string& text) {
        std::string body;
        for (const char c : text)
            body += c == 'B'   ? "<BaseURL>b</BaseURL>"
                    : c == 'S' ? "<SegmentList>s</SegmentList>"
                               : std::string(1, c);
        return zabtest::dashRecords(body);
    };
    const Reading rows[] = {
        {"<Representation _A:b-1 = 'x>' id\n=\"137\">BS</Representation>", "137|b|s;", "the ordinary form"},
        {"<\r\n representation\tid=7/>BS< /REPRESENTATION >BS", "7|b|s;",
         "any letter case; white space before name and slash"},
        {"<Representation ID=1 b 'x' id=1>BS</Representation>", "",
         "names are exact; one without a value ends them"},
        {"<Representation id=1>S</Representation>B", "", "a child behind the end tag is none"},
        {"<Representation id='1'<baseurl>c</ baseurl\n>S", "1|c|s;",
         "a child may begin where the attributes end"},
        {"<Representation id=1>S<baseurl>a</baseurls></baseurl>", "1|a</baseurls>|s;",
         "closing names are whole"},
        {"<Representation id=1>S<baseurl>c< /baseurl></baseurl>", "1|c< /baseurl>|s;", "no white space there"},
        {"<Representation id=1>BS<baseurl></baseurl></Representation>", "", "the last, also when empty"},
        {"<Representation id=1>BS<baseurl>c</Representation>", "1|b|s;", "no close tag: no content"},
        {"<Representation id=1>S<baseurl>a<baseurl>b</baseurl>", "1|b|s;", "the scan goes on inside a content"},
        {"<Representation id=1>S</ Representation></Representations>B", "1|b|s;", "an end tag's name is whole"},
        {"<Representation id='12ab' id=99999999999>BS", "2147483647|b|s;", "the last, limited"},
        {"<Representation id='12ab'>BS<Representation id=-1>BS", "12|b|s;", "an itag is its leading digits"},
        {"<Representation><Representation id=1>BS", "", "no sooner than 14 characters behind a name"},
        {"<Representations id=1>BS<Representation/ id=2>BS<Representation 9=9 id=3>BS", "",
         "names are whole, no numbers"},
        {"<Representation id=1>B\0S"s, "", "text ends at its first NUL"},
    };
    expectReadings(read, rows);
}

}  // namespace
