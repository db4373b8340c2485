#include "web/url_resolve.h"

#include "readings.h"

namespace {

using namespace zabtest;

TEST(UrlResolve, FollowsTheStandardAlsoWhereItsExamplesEnd) {
    // A base and a reference, or a reference to the base of the examples.
    const auto read = [](std::string_view text) {
        const auto at = text.find(' ');
        return at == text.npos ? zab::resolveUrl("http://a/b/c/d;p?q", text)
                               : zab::resolveUrl(text.substr(0, at), text.substr(at + 1));
    };
    const Reading rows[] = {
        {"g:h", "g:h", "RFC 3986 section 5.4.1"},
        {"/g", "http://a/g", ""},
        {"//g", "http://g", ""},
        {"#s", "http://a/b/c/d;p?q#s", ""},
        {"g;x?y#s", "http://a/b/c/g;x?y#s", ""},
        {"", "http://a/b/c/d;p?q", ""},
        {"..", "http://a/b/", ""},
        {"./g/.", "http://a/b/c/g/", ""},
        {"http:g", "http:g", ""},
        {"http://a g", "http://a/g", "a host without a path gets one"},
        {"http://a/b//c ../g", "http://a/b/g", "an empty segment is a segment"},
        {"http://a/b g//..//h", "http://a/g//h", "empty segments stay"},
        {"http://a/b#s ", "http://a/b", "the base's fragment never passes on"},
        {"http://a/b 1:2", "http://a/1:2", "a scheme begins with a letter"},
        {"x:a/b ../../c", "x:/c", "the slash behind a segment that went stays"},
        {"http://a/b x:..", "x:", "dots go even where nothing stands before them"},
    };
    expectReadings(read, rows);
}

TEST(UrlResolve, CleansReferencesAsBrowsersDo) {
    const auto read = [](std::string_view written) { return zab::cleanedReference("http", written); };
    const Reading rows[] = {
        {"  a\n/b\t.zip \r\n", "a/b.zip", "white space around, line ends and tabs inside"},
        {"\\dir\\a b.zip?q=\\", "/dir/a%20b.zip?q=\\", "back-slashes count up to the query"},
        {"\\\\host\\a", "//host/a", "also before a host"},
        {"///host/a", "//host/a", "surplus slashes before a host"},
        {"https:host/a", "https://host/a", "missing slashes"},
        {"http:a", "a", "the page's own scheme without any: relative"},
        {"mailto:a b", "mailto:a b", "other schemes stay as they are"},
        {"http://caf\xC3\xA9/\xC3\xA9?\xC3\xA9", "http://caf\xC3\xA9/%C3%A9?%C3%A9", "above 127, no host"},
    };
    expectReadings(read, rows);
}

}  // namespace
