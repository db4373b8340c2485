#include "media/parsers/stream_urls.h"

#include "binding/text.h"
#include "binding/utf.h"
#include "readings.h"

using namespace zab;
using namespace zabtest;

namespace {

TEST(SameStream, ComparesWhatAPlayerDoesNotChange) {
    // Of two addresses: "s" for the same stream, "u" but for its signature, "i" by id, "t" by id and itag.
    const auto read = [](std::string_view two) {
        const std::u16string a = utf16FromUtf8(upTo(two, ' ')), b = utf16FromUtf8(two.substr(a.size() + 1));
        return std::string() + (sameStream(a, b, true) ? 's' : '-') + (sameStream(a, b, false) ? 'u' : '-') +
               (sameId(a, b) ? 'i' : '-') + (sameIdAndItag(a, b) ? 't' : '-');
    };
    const Reading rows[] = {
        {"http://h/v?id=1&itag=5&RN=1&rbuf=0 http://h/v?id=1&itag=5&rn=2&rbuf=9", "suit", "request counters"},
        {"http://h/v?id=1&itag=18 http://h/v?id=1&itag=22", "--i-", "another format"},
        {"http://h/v?itag=5&id=1&x=1 http://h/v?id=1&itag=5", "--it", "more in the first is another stream"},
        {"http://h/v?id=1 http://h/v?x=3&id=1&y=2", "sui-", "more in the second is no matter"},
        {"http://h/v?id=1&signature=A http://h/v?id=1&signature=B", "-ui-", "signatures"},
        {"http://h/v?id=1 http://h/v?id=12", "----", "not up to the end of the parameter"},
        {"http://h/v?id=1 http://h/v?id=12&id=1", "sui-", "a later place fits"},
        {"http://h/v?id=1 http://h/v?vid=1", "sui-", "the end of a longer name"},
        {"http://h/v?&&id=1&& http://h/v?id=1", "sui-", "runs of ampersands"},
        {"http://h/v?cver=2 http://h/v?", "su--", "nothing left to compare"},
        {"http://h/v?id=1&itag=5 http://H/v?id=1&itag=5", "----", "letter case before the mark"},
        {"http://h/v?id=1&id=2&itag=5 http://h/v?id=1&itag=5", "--i-", "first id; every id"},
        {"h/?itag=5 h/?itag=5", "----", "nine characters"},
        {"h/v?itag=5 h/v?itag=5", "su--", "ten characters; no id to compare"},
        {"http://h/v http://h/v", "----", "no mark"},
    };
    expectReadings(read, rows);
}

TEST(WithoutRange, TakesTheFirstRangeAway) {
    const auto read = [](const std::string& url) {
        const std::string kept = withoutRange(std::string_view(url));
        return withoutRange(utf16FromUtf8(url)) == utf16FromUtf8(kept) ? kept : "another in UTF-16";
    };
    const Reading rows[] = {
        {"h/v?x=1&range=0-99", "h/v?x=1", "last parameter"},
        {"h/v?x=1&range=0-99&id=1", "h/v?x=1&id=1", "inner parameter"},
        {"h/v?range=0-99&id=1", "h/v?id=1", "first parameter: the mark stays"},
        {"h/v?range=1&range=2", "h/v?range=1", "behind an ampersand comes first"},
        {"h/v?x&range=1&range=2", "h/v?x&range=2", "one at a time"},
    };
    expectReadings(read, rows);
}

}  // namespace
