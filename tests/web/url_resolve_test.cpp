#include "web/url_resolve.h"

#include <gtest/gtest.h>

#include <string_view>

using namespace zab;

namespace {

TEST(UrlResolve, FollowsTheExamplesOfTheStandard) {
    constexpr std::string_view base = "http://a/b/c/d;p?q";
    const struct {
        std::string_view reference, target;
    } rows[] = {
        // RFC 3986 section 5.4.1
        {"g:h", "g:h"},
        {"g", "http://a/b/c/g"},
        {"./g", "http://a/b/c/g"},
        {"g/", "http://a/b/c/g/"},
        {"/g", "http://a/g"},
        {"//g", "http://g"},
        {"?y", "http://a/b/c/d;p?y"},
        {"g?y", "http://a/b/c/g?y"},
        {"#s", "http://a/b/c/d;p?q#s"},
        {"g#s", "http://a/b/c/g#s"},
        {"g?y#s", "http://a/b/c/g?y#s"},
        {";x", "http://a/b/c/;x"},
        {"g;x", "http://a/b/c/g;x"},
        {"g;x?y#s", "http://a/b/c/g;x?y#s"},
        {"", "http://a/b/c/d;p?q"},
        {".", "http://a/b/c/"},
        {"./", "http://a/b/c/"},
        {"..", "http://a/b/"},
        {"../", "http://a/b/"},
        {"../g", "http://a/b/g"},
        {"../..", "http://a/"},
        {"../../", "http://a/"},
        {"../../g", "http://a/g"},
        // section 5.4.2
        {"../../../g", "http://a/g"},
        {"../../../../g", "http://a/g"},
        {"/./g", "http://a/g"},
        {"/../g", "http://a/g"},
        {"g.", "http://a/b/c/g."},
        {".g", "http://a/b/c/.g"},
        {"g..", "http://a/b/c/g.."},
        {"..g", "http://a/b/c/..g"},
        {"./../g", "http://a/b/g"},
        {"./g/.", "http://a/b/c/g/"},
        {"g/./h", "http://a/b/c/g/h"},
        {"g/../h", "http://a/b/c/h"},
        {"g;x=1/./y", "http://a/b/c/g;x=1/y"},
        {"g;x=1/../y", "http://a/b/c/y"},
        {"g?y/./x", "http://a/b/c/g?y/./x"},
        {"g?y/../x", "http://a/b/c/g?y/../x"},
        {"g#s/./x", "http://a/b/c/g#s/./x"},
        {"g#s/../x", "http://a/b/c/g#s/../x"},
        {"http:g", "http:g"},
    };
    for (const auto& row : rows) EXPECT_EQ(resolveUrl(base, row.reference), row.target) << row.reference;
}

TEST(UrlResolve, KeepsWhatTheExamplesLeaveOut) {
    const struct {
        std::string_view base, reference, target;
        const char* why;
    } rows[] = {
        {"http://a", "g", "http://a/g", "a host without a path gets one"},
        {"http://a?q", "g", "http://a/g", "a query is no path"},
        {"http://a", "../g", "http://a/g", "nothing above the root"},
        {"http://a/b//c", "../g", "http://a/b/g", "an empty segment is a segment"},
        {"http://a/b", "g//..//h", "http://a/g//h", "empty segments stay"},
        {"http://a/b?", "", "http://a/b?", "an empty query is a query"},
        {"http://a/b#s", "", "http://a/b", "the base's fragment never passes on"},
        {"http://a/b", "1:2", "http://a/1:2", "a scheme begins with a letter"},
        {"http://a/b", "c%2F..%2e%2E/d", "http://a/c%2F..%2e%2E/d", "nothing is decoded"},
        {"x:a/b", "../../c", "x:/c", "the slash behind a segment that went stays"},
        {"http://a/b", "x:..", "x:", "dots go even where nothing stands before them"},
    };
    for (const auto& row : rows) EXPECT_EQ(resolveUrl(row.base, row.reference), row.target) << row.why;
}

TEST(UrlResolve, CleansReferencesAsBrowsersDo) {
    const struct {
        std::string_view written, cleaned;
        const char* why;
    } rows[] = {
        {"  a/b.zip \r\n", "a/b.zip", "white space around"},
        {"a\n/b\t.zip", "a/b.zip", "line ends and tabs inside"},
        {"a b.zip", "a%20b.zip", "a blank inside is escaped"},
        {"\\dir\\a.zip?q=\\", "/dir/a.zip?q=\\", "back-slashes count up to the query"},
        {"\\\\host\\a", "//host/a", "also before a host"},
        {"///host/a", "//host/a", "surplus slashes before a host"},
        {"https:host/a", "https://host/a", "missing slashes"},
        {"https:/host/a", "https://host/a", "one slash missing"},
        {"https:////host/a", "https://host/a", "slashes too many"},
        {"http:/a", "/a", "the page's own scheme with one slash: a path"},
        {"http:a", "a", "the page's own scheme without any: relative"},
        {"HTTP://Host/A", "HTTP://Host/A", "case stays"},
        {"ftp:\\\\h\\f", "ftp://h/f", "every scheme of the web"},
        {"mailto:a b", "mailto:a b", "other schemes stay as they are"},
        {"caf\xC3\xA9?\xC3\xA9", "caf%C3%A9?%C3%A9", "bytes above 127"},
        {"http://caf\xC3\xA9/", "http://caf\xC3\xA9/", "not in the host"},
        {"a%20b", "a%20b", "what is escaped already stays"},
        {"", "", "nothing"},
    };
    for (const auto& row : rows) EXPECT_EQ(cleanedReference("http", row.written), row.cleaned) << row.why;
}

}  // namespace
