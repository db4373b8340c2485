#include "web/url_resolve.h"

#include <gtest/gtest.h>

#include "binding/text.h"
#include "readings.h"

namespace {

using namespace zabtest;

TEST(UrlResolve, FollowsTheExamplesOfTheStandard) {
    const auto read = [](std::string_view reference) {
        return zab::resolveUrl("http://a/b/c/d;p?q", reference);
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
    };
    expectReadings(read, rows);
}

TEST(UrlResolve, KeepsWhatTheExamplesLeaveOut) {
    const auto read = [](std::string_view both) {
        const std::string_view base = zab::upTo(both, ' ');
        return zab::resolveUrl(base, both.substr(base.size() + 1));
    };
    const Reading rows[] = {
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
        {"\\dir\\a.zip?q=\\", "/dir/a.zip?q=\\", "back-slashes count up to the query"},
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
