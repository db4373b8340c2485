// Text out of JSON and XML.

#include "readings.h"
#include "web/json_text.h"
#include "web/xml_text.h"

using namespace zab;
using namespace zabtest;

namespace {

TEST(JsonText, StringsEndAtTheirQuote) {
    const auto read = [](std::string_view text) { return jsonString(text).value_or("none"); };
    const Reading rows[] = {
        {R"("a\"\\\/\b\f\n\r\t" b)", "a\"\\/\b\f\n\r\t", "every escape of one letter"},
        {R"("\u00e9\ud83d\ude00\u0021")", "\xC3\xA9\xF0\x9F\x98\x80!", "numbers, and pairs of them"},
        {R"("\ud83d\u0021")", "\xEF\xBF\xBD!", "half a pair"},
        {R"("\u12")", "none", "too few digits"},
        {R"("a\")", "none", "no end"},
        {"a", "none", "no string"},
    };
    expectReadings(read, rows);
    EXPECT_EQ(withoutJsonEscapes(R"(a\/\u0041\x\)"), R"(a/A\x\)") << "what is no escape stays";
}

TEST(XmlText, ReferencesAreUndoneOnce) {
    const Reading rows[] = {
        {" \n a&amp;lt;&lt;&gt;&quot;&apos; ", "a&lt;<>\"'", "the five names; white space around"},
        {"&#65;&#x42;&#x1f600;&#1114111;", "AB\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF", "numbers up to the last"},
        {"&#x0010FFFF;&#x00010FFFF;", "\xF4\x8F\xBF\xBF&#x00010FFFF;", "of bounded length"},
        {"&#1114112;&#0;&#6a;&#xG;&#;&#X41;", "&#1114112;&#0;&#6a;&#xG;&#;&#X41;", "what is no character"},
        {"?a=1&b=2&amp", "?a=1&b=2&amp", "an ampersand that begins nothing"},
    };
    expectReadings(addressInXml, rows);
}

}  // namespace
