#include "transfer/browser_access.h"

#include <gtest/gtest.h>

#include "transfer/ascii_host.h"

namespace zab {

/// As Windows answers for the one name that is asked about here.
std::optional<std::string> asciiHostOf(std::string_view host) {
    return host == "b\u00FCcher.example" ? std::optional<std::string>("xn--bcher-kva.example") : std::nullopt;
}

namespace {

TEST(BrowserAccess, PutsAddressesRight) {
    const struct {
        const char *found, *second, *page, *known, *url, *referrer, *cookies, *why;
    } rows[] = {
        {"ftp://h.example/a", "", "http://h.example/p", "c=1", "ftp://h.example/a", "http://h.example/p", "",
         "FTP knows no cookies"},
        {"hlstozab://http://h.example/m", "http://h.example/s", "http://h.example/", "c=1",
         "hlstozab://http://h.example/m", "http://h.example/", "c=1", "both on the host that is known"},
        {"hlstozab://http://h.example/m", "http://cdn.example/s", "http://h.example/", "c=1",
         "hlstozab://http://h.example/m", "http://h.example/", "", "known cookies serve both or none"},
        {"mpdtozab://http://b\u00FCcher.example/\u00FC", "", "http://b\u00FCcher.example/", "c=1",
         "mpdtozab://http://xn--bcher-kva.example/\u00FC", "http://xn--bcher-kva.example/", "c=1",
         "letters outside ASCII in a host"},
        {"http://\u00E4 x/", "", "", "", "http://\u00E4 x/", "", "", "what is no host name stays"},
        {"http://h.example/", "", "chrome://browser/content", "", "http://h.example/", "", "",
         "a window of the browser is no page"},
    };
    for (const auto& row : rows) {
        TransferRecord asked;
        asked.url = row.found;
        asked.secondUrl = row.second;
        asked.referrer = asked.cookiesFrom = row.page;
        asked.cookies = row.known;
        BrowserAccess().complete(asked);
        EXPECT_EQ(asked.url, row.url) << row.why;
        EXPECT_EQ(asked.referrer, row.referrer) << row.why;
        EXPECT_EQ(asked.cookies, row.cookies) << row.why;
    }
}

}  // namespace
}  // namespace zab
