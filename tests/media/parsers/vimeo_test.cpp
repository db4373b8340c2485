#include "media/parsers/vimeo.h"

#include "media/parsers/site_checks.h"
#include "readings.h"

namespace {

using namespace zabtest;

TEST(Vimeo, ListsProgressiveMp4) {
    const auto read = [](const std::string& objects) {
        return vimeoRenditions("{url:0,\"progressive\":" + objects);
    };
    const Reading rows[] = {
        {R"([{url:'u',quality:1,mime:video/mp4}])", "u 1;", "single quotes and bare"},
        {"[{ \t\"mime\"\r\n:\n\"video/mp4\",\n 'url' : \"u\",quality: 1}]", "u 1;", "white space"},
        {R"([{"url":"u","quality":1,"mime":"video/mp4;x"}])", "", "the type exactly"},
        {R"([{"url":"u","mime":"video/mp4"}])", "", "a key is missing"},
        {R"([{"url":"u","quality":1 ,"mime":"video/mp4"}])", "", "a blank before the comma ends it"},
        {R"([{"mime":"video/mp4","quality":1,"url":"u" x}])", "u 1;", "what was read before the end counts"},
        {"[{url:o,quality:1,mime:video/mp4,a:{url:u,quality:1,mime:video/mp4}}]", "u 1;", "the inner object"},
        {R"([{"mime":"video/mp4","quality":1,"url":"u}"}])", "", "a brace ends the object, quoted or not"},
        {R"([{}],"x":[{"url":"v","quality":2,"mime":"video/mp4"}])", "", "the array ends"},
        {R"([{"url":"u","quality":1,"mime":"video/mp4")", "u 1;", "no end: the rest is read"},
        {R"([{url u:"u"},{:,"url":"v","quality":2,"mime":"video/mp4"}])", "v 2;", "no colon; an empty member"},
    };
    expectReadings(read, rows);
}

TEST(Vimeo, TakesTheTitleAsItStands) {
    const Reading rows[] = {
        {"<title>A &amp; B</title>", "A &amp; B", "undecoded"},
        {"<TITLE>A</title></TITLE><title>B</title>", "B", "lower case goes first, though farther"},
        {"<TITLE>A</TITLE>", "A", "upper case"},
        {"<TITLE>A</TITLE></title>", "A</TITLE>", "the end too"},
        {"</title><title>A<title>", "", "no end behind the start"},
    };
    expectReadings(vimeoRenditions, rows);
}

}  // namespace
