#include "web/url.h"

#include "readings.h"
#include "web/web_address.h"

using namespace zab;
using namespace zabtest;

namespace {

TEST(Url, Parts) {
    const auto read = [](std::string_view url) {
        std::string parts;
        for (const auto part : {hostOf(url), behindHost(url), pathOf(url), lastSegmentOf(url)})
            parts.append(part).append(" ");
        return parts;
    };
    const Reading rows[] = {
        {"http://h.com:8080/a/b.c?d#e", "h.com /a/b.c?d#e /a/b.c b.c ", "all parts"},
        {"https://u:p@x@h.com/", "h.com / /  ", "the user ends at the last at sign"},
        {"http://h.com?a/b", "h.com ?a/b   ", "a query right behind the host"},
        {"http://[::1]:80/x", "[::1] /x /x x ", "an IPv6 address"},
        {"data:x,http://h/w?v", " x,http://h/w?v x,http://h/w w ", "an address inside another one"},
        {"a/b.zip?x", " a/b.zip?x a/b.zip b.zip ", "no scheme"},
        {"/x?http://h/", " /x?http://h/ /x x ", "an authority in a query"},
    };
    expectReadings(read, rows);
}

TEST(Url, HostsAndParameters) {
    EXPECT_TRUE(isHostOrBelow("WWW.YouTube.com", "youtube.com") && isHostOrBelow("youtube.com", "youtube.com"));
    EXPECT_FALSE(isHostOrBelow("notyoutube.com", "youtube.com"));
    const auto read = [](std::string_view url) {
        return std::string(queryParameter(url, "el").value_or("none"));
    };
    const Reading rows[] = {
        {"http://h/p?x=1&el=a=b&el=c#el=d", "a=b", "the first of its name, up to the ampersand"},
        {"http://h/p?&el", "", "without a value"},
        {"http://h/p#?el=1", "none", "a fragment is no query"},
    };
    expectReadings(read, rows);
}

TEST(Url, DefaultPortIsRemoved) {
    const auto read = [](std::string url) {
        NormalizeDefaultPort(url);
        return url;
    };
    const Reading rows[] = {
        {"HTTPS://h:443/", "HTTPS://h/", "any case"},
        {"https://h:80/", "https://h:80/", "the port of the other scheme"},
        {"http://h:80", "http://h:80", "no slash behind it"},
        {"http://h\\a:80/", "http://h\\a:80/", "a backslash first"},
        {"ftp://h:21/", "ftp://h:21/", "another scheme"},
        {"http:h:80/", "http:h:80/", "no authority"},
    };
    expectReadings(read, rows);
}

TEST(Url, WebAddressesHaveOneSpelling) {
    const auto read = [](std::string_view url) {
        const auto address = webAddressOf(url);
        return canonicalUrl(url).value_or("none") + ' ' +
               (address ? address->origin.scheme + ' ' + address->origin.host + ' ' +
                              std::to_string(address->origin.port) + ' ' + std::string(address->path)
                        : "none");
    };
    const Reading rows[] = {
        {"HTTP://u:P@x@H%2ecom:080?q", "http://u:P@x@h.com/?q http h%2ecom 80 /", "the last at sign"},
        {"ftp://[::F]:65535/a?b", "ftp://[::f]:65535/a?b ftp [::f] 65535 /a", "an IPv6 address"},
        {"http://h:65536/", "none none", "and one too many"},
        {"http://u@/", "none none", "no host"},
    };
    expectReadings(read, rows);
}

}  // namespace
