#include "transfer/browser_access.h"

#include "binding/browser_thread.h"
#include "page/passwords.h"
#include "page/user_agent.h"
#include "transfer/ascii_host.h"
#include "transfer/fake_jar.h"

namespace zab {

/// As Windows answers for the one name that is asked about here.
std::optional<std::string> asciiHostOf(std::string_view host) {
    return host == "b\u00FCcher.example" ? std::optional<std::string>("xn--bcher-kva.example") : std::nullopt;
}

namespace {

using namespace testing;

TEST(BrowserAccess, AsksAsTheBrowserWould) {
    passwords().remember("https://files.example/", {"u", "p"});
    noteBrowserThread();
    noteUserAgent("Agent/1");
    const struct {
        const char *found, *second, *page, *known, *knownFrom;
        const char *url, *referrer, *cookies, *login, *why;
    } rows[] = {
        {"https://files.example/a.zip", "", "", "", "", "https://files.example/a.zip", "", "s=1; j=1", "u:p",
         "nothing is known but its address"},
        {"http://files.example/a.zip", "", "http://me:pw@h.example:81/p?q#part", "", "",
         "http://files.example/a.zip", "http://h.example:81/p?q", "j=1", ":",
         "no user information, no fragment, no secure cookie in the clear, no login of another origin"},
        {"https://files.example/", "", "https://files.example", "c=page", "https://files.example",
         "https://files.example/", "https://files.example", "c=page", "u:p", "the page's own host"},
        {"http://files.example/", "", "https://files.example/p", "c=page", "https://files.example/p",
         "http://files.example/", "", "j=1", ":", "an https page gives an http address neither"},
        {"https://www.files.example/", "", "https://files.example/p", "c=page", "https://files.example/p",
         "https://www.files.example/", "https://files.example/p", "j=1", ":", "another host of the site"},
        {"https://cdn.example/", "", "", "c=page", "https://files.example/p", "https://cdn.example/", "", "",
         ":", "a foreign host"},
        {"ftp://files.example/a", "", "http://files.example/p", "c=page", "http://files.example/p",
         "ftp://files.example/a", "http://files.example/p", "", ":", "FTP knows no cookies"},
        {"hlstozab://https://files.example/m", "https://cdn.example/s", "", "c=media",
         "https://files.example/x", "hlstozab://https://files.example/m", "", "s=1; j=1", "u:p",
         "known cookies serve both addresses or none"},
        {"mpdtozab://http://b\u00FCcher.example/\u00FC", "", "http://b\u00FCcher.example/", "", "",
         "mpdtozab://http://xn--bcher-kva.example/\u00FC", "http://xn--bcher-kva.example/", "b=1", ":",
         "letters outside ASCII in a host"},
        {"http://\u00E4 x/", "", "", "", "", "http://\u00E4 x/", "", "", ":", "what is no host name stays"},
        {"http://h.example/", "", "chrome://browser/content", "", "", "http://h.example/", "", "", ":",
         "a window of the browser is no page"},
    };
    for (const auto& row : rows) {
        FakeJar jar({{.name = "s", .value = "1", .host = "files.example", .secure = true},
                     {.name = "j", .value = "1", .host = ".files.example"},
                     {.name = "b", .value = "1", .host = "xn--bcher-kva.example"}});
        TransferRecord asked;
        asked.url = row.found;
        asked.secondUrl = row.second;
        asked.referrer = row.page;
        asked.cookies = row.known;
        asked.cookiesFrom = row.knownFrom;
        inBrowserWith(jar, [&] { return BrowserAccess().complete(asked), 0; });
        EXPECT_EQ(asked.url, row.url) << row.why;
        EXPECT_EQ(asked.referrer, row.referrer) << row.why;
        EXPECT_EQ(asked.cookies, row.cookies) << row.why;
        EXPECT_EQ(asked.user + ":" + asked.password, row.login) << row.why;
        EXPECT_EQ(asked.userAgent, "Agent/1") << row.why;
    }
}

TEST(BrowserAccess, OfABatchReadsTheJarOnce) {
    constexpr std::size_t kCookies = 3000, kLinks = 2000;
    std::vector<Facts> cookies(kCookies);
    for (std::size_t i = 0; i < kCookies; ++i) cookies[i].host = "h" + std::to_string(i % 1500) + ".example";
    FakeJar jar(std::move(cookies));
    noteBrowserThread();
    FakeCookie::calls = 0;
    const std::size_t bytes = inBrowserWith(jar, [] {
        BrowserAccess access;
        std::size_t sum = 0;
        for (std::size_t i = 0; i < kLinks; ++i) {
            const std::string host = "http://h" + std::to_string(i % 20) + ".example/";
            TransferRecord record;
            record.url = host + std::to_string(i);
            access.complete(record);
            sum += record.cookies.size() + access.of(host).cookies.size();
        }
        return sum;
    });
    EXPECT_EQ(bytes, kLinks * 2 * std::string_view("n=v; n=v").size());
    EXPECT_EQ(jar.readings, 1);
    constexpr std::size_t kRead = 20 * 2;  // the cookies of the hosts that were asked about
    EXPECT_EQ(FakeCookie::calls, kCookies + kRead * 5) << "each host once; of those that matter the rest";
}

}  // namespace
}  // namespace zab
