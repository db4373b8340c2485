#include "media/parsers/stream_urls.h"

#include <gtest/gtest.h>

#include "binding/utf.h"

namespace zab {
namespace {

TEST(SameStream, ComparesWhatAPlayerDoesNotChange) {
    const struct {
        std::u16string_view a, b;
        bool same, sameWithoutSignature;
        const char* why;
    } rows[] = {
        {u"http://h/v?id=1&rn=1&rbuf=0", u"http://h/v?id=1&rn=2&rbuf=9", true, true, "request counters"},
        {u"http://h/v?id=1&RN=1", u"http://h/v?id=1", true, true, "ignored in any letter case"},
        {u"http://h/v?id=1&itag=18", u"http://h/v?id=1&itag=22", false, false, "another format"},
        {u"http://h/v?id=1", u"http://h/v?x=3&id=1&y=2", true, true, "more in the second is no matter"},
        {u"http://h/v?id=1&x=3", u"http://h/v?id=1", false, false, "more in the first is"},
        {u"http://h/v?id=1&signature=A", u"http://h/v?id=1&signature=B", false, true, "signatures"},
        {u"http://h/v?id=1", u"http://h/v?id=12", false, false, "not up to the end of the parameter"},
        {u"http://h/v?id=1", u"http://h/v?id=12&id=1", true, true, "a later place fits"},
        {u"http://h/v?id=1", u"http://h/v?vid=1", true, true, "the end of a longer name"},
        {u"http://h/v?&&id=1&&", u"http://h/v?id=1", true, true, "runs of ampersands"},
        {u"http://h/v?cver=2", u"http://h/v?", true, true, "nothing left to compare"},
        {u"http://h/v?id=1", u"http://H/v?id=1", false, false, "letter case before the mark"},
        {u"http://h/v?id=a", u"http://h/v?id=A", false, false, "letter case behind the mark"},
        {u"http://h/v", u"http://h/v", false, false, "no mark"},
        {u"h://v?a=1", u"h://v?a=1", false, false, "nine characters"},
        {u"h://v?a=11", u"h://v?a=11", true, true, "ten characters"},
        {u"", u"", false, false, "nothing"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(sameStream(row.a, row.b, true), row.same) << row.why;
        EXPECT_EQ(sameStream(row.a, row.b, false), row.sameWithoutSignature) << row.why;
    }
}

TEST(SameStream, ById) {
    const struct {
        std::u16string_view a, b;
        bool id, idAndItag;
        const char* why;
    } rows[] = {
        {u"http://h/v?itag=5&id=1&x=1", u"http://h/v?id=1&itag=5", true, true, "other parameters do not count"},
        {u"http://h/v?id=1&itag=5", u"http://h/v?id=1&itag=6", true, false, "another format"},
        {u"http://h/v?id=1", u"http://h/v?id=1", true, false, "no itag to compare"},
        {u"http://h/v?itag=5", u"http://h/v?itag=5", false, false, "no id to compare"},
        {u"http://h/v?id=1&id=2&itag=5", u"http://h/v?id=1&itag=5", true, false, "first id; every id"},
        {u"http://h/v?ID=1&itag=5", u"http://h/v?ID=1&itag=5", false, false, "names in lower case only"},
        {u"http://h/v?id=1&itag=5", u"http://h/w?id=1&itag=5", false, false, "another place"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(sameId(row.a, row.b), row.id) << row.why;
        EXPECT_EQ(sameIdAndItag(row.a, row.b), row.idAndItag) << row.why;
    }
}

TEST(WithoutRange, TakesTheFirstRangeAway) {
    const struct {
        std::string_view url, kept;
        const char* why;
    } rows[] = {
        {"h/v?x=1&range=0-99", "h/v?x=1", "last parameter"},
        {"h/v?x=1&range=0-99&id=1", "h/v?x=1&id=1", "inner parameter"},
        {"h/v?range=0-99&id=1", "h/v?id=1", "first parameter: the mark stays"},
        {"h/v?range=0-99", "h/v?", "only parameter"},
        {"h/v?range=1&range=2", "h/v?range=1", "behind an ampersand comes first"},
        {"h/v?x&range=1&range=2", "h/v?x&range=2", "one at a time"},
        {"h/v?Range=1&xrange=2", "h/v?Range=1&xrange=2", "other names"},
        {"&range=", "", "nothing else"},
        {"", "", "nothing"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(withoutRange(row.url), row.kept) << row.why;
        EXPECT_TRUE(withoutRange(utf16FromUtf8(row.url)) == utf16FromUtf8(row.kept)) << row.why;
    }
}

}  // namespace
}  // namespace zab
