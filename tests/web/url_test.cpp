#include "web/url.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(Url, Parts) {
    const struct {
        std::string_view url, host, rest, path, segment;
        const char* why;
    } rows[] = {
        {"http://h.com:8080/a/b.c?d#e", "h.com", "/a/b.c?d#e", "/a/b.c", "b.c", "all parts"},
        {"https://u:p@x@h.com/", "h.com", "/", "/", "", "the user ends at the last at sign"},
        {"http://h.com?a/b", "h.com", "?a/b", "", "", "a query right behind the host"},
        {"http://h.com#a@b/c", "h.com", "#a@b/c", "", "", "a fragment"},
        {"http://h.com", "h.com", "", "", "", "the host alone has no last segment"},
        {"http://[::1]:80/x", "[::1]", "/x", "/x", "x", "an IPv6 address"},
        {"data:text/x,http://youtube.com/watch?v=1", "", "text/x,http://youtube.com/watch?v=1",
         "text/x,http://youtube.com/watch", "watch", "an address inside another one"},
        {"a/b.zip?x", "", "a/b.zip?x", "a/b.zip", "b.zip", "no scheme"},
        {"/x?http://h/", "", "/x?http://h/", "/x", "x", "an authority in a query"},
        {"", "", "", "", "", "nothing"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(hostOf(row.url), row.host) << row.why;
        EXPECT_EQ(behindHost(row.url), row.rest) << row.why;
        EXPECT_EQ(pathOf(row.url), row.path) << row.why;
        EXPECT_EQ(lastSegmentOf(row.url), row.segment) << row.why;
    }
}

TEST(Url, HostsAndParameters) {
    EXPECT_TRUE(isHostOrBelow("WWW.YouTube.com", "youtube.com"));
    EXPECT_TRUE(isHostOrBelow("youtube.com", "youtube.com"));
    EXPECT_FALSE(isHostOrBelow("notyoutube.com", "youtube.com")) << "a longer name is another host";
    EXPECT_FALSE(isHostOrBelow("youtube.com.evil.net", "youtube.com"));

    const struct {
        std::string_view url;
        std::optional<std::string_view> value;
        const char* why;
    } rows[] = {
        {"http://h/p?el=adunit&x=1", "adunit", "the first parameter"},
        {"http://h/p?x=1&el=a=b&el=c#el=d", "a=b", "the first of its name, up to the ampersand"},
        {"http://h/p?&el", "", "without a value"},
        {"http://h/p?model=1&EL=2", std::nullopt, "exact name only"},
        {"http://h/p#?el=1", std::nullopt, "a fragment is no query"},
        {"http://h/el=1", std::nullopt, "no query"},
    };
    for (const auto& row : rows) EXPECT_EQ(queryParameter(row.url, "el"), row.value) << row.why;
}

TEST(Url, DefaultPortIsRemoved) {
    const struct {
        std::string url, normal;
        const char* why;
    } rows[] = {
        {"http://h:80/x", "http://h/x", "http"},
        {"HTTPS://h:443/", "HTTPS://h/", "https, any case"},
        {"http://h:443/", "http://h:443/", "the port of the other scheme"},
        {"http://h:8080/", "http://h:8080/", "another port"},
        {"http://h:80", "http://h:80", "no slash behind it"},
        {"http://h:80?x", "http://h:80?x", "nor there"},
        {"http://h/a:80/", "http://h/a:80/", "a slash first: no port"},
        {"http://h\\a:80/", "http://h\\a:80/", "a backslash first"},
        {"ftp://h:80/", "ftp://h:80/", "another scheme"},
        {"http:h:80/", "http:h:80/", "no authority"},
    };
    for (const auto& row : rows) {
        std::string url = row.url;
        NormalizeDefaultPort(url);
        EXPECT_EQ(url, row.normal) << row.why;
    }
}

}  // namespace
}  // namespace zab
