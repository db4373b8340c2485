#include "media/parsers/facebook.h"

#include <gtest/gtest.h>

#include "media/parsers/generated.h"
#include "media/parsers/site_checks.h"

namespace zab {
namespace {

using namespace std::string_view_literals;

using zabtest::facebookEntries;
using zabtest::Lines;

TEST(Facebook, TakesTheAddressesOfEachBlock) {
    const struct {
        std::string_view text;
        Lines entries;
        const char* why;
    } rows[] = {
        {R"(videoData:[{hd_src:"a",sd_src:"b"}])", {"hd a 0", "sd b 0"}, "high definition first"},
        {R"("videoData":[{"sd_src":"b","hd_src":"a"}])", {"hd a 0", "sd b 0"}, "quoted"},
        {R"(videoData: sd_src: 	'b')", {"sd b 0"}, "one address, single quotes, white space"},
        {R"(videoData:hd_src:"")", {"hd  0"}, "an empty value is an address"},
        {R"(videoData:sd_src:null "sd_src":"q")", {"sd q 0"}, "a bare key without a value is absent"},
        {R"(videoData:sd_src:null sd_src:"q")", {}, "only the next bare key is looked at"},
        {R"(videoData:"sd_src":"q" sd_src:"b")", {"sd b 0"}, "the bare key wins, though farther"},
        {R"("videoData":sd_src:"q" videoData:sd_src:"b")", {"sd b 0"}, "the bare marker wins, though farther"},
        {R"(videoData:sd_src:"b" "videoData":sd_src:"q")", {"sd b 0", "sd q 0"}, "then the quoted one"},
        {R"(videoData: videoData:sd_src:"b")", {"sd b 0", "sd b 0"}, "a block takes what is ahead"},
        {R"(sd_src:"b" videoData:)", {}, "not what is behind"},
        {R"(sd_src:"b")", {}, "no block"},
        {R"(videoData:sd_src:"b)", {}, "no closing quote"},
        {R"(videoData:sd_src:"it's")", {"sd it's 0"}, "the same quote closes"},
        {R"(videoData:sd_src:"h:\/\/x\u0025\u0026\\/")",
         {R"(sd h://x%\u0026\/ 0)"},
         "two escapes, one pass each"},
        {std::string_view("videoData:\0sd_src:'b'", 21), {}, "ends at NUL"},
        {"", {}, "nothing"},
    };
    for (const auto& row : rows) EXPECT_EQ(facebookEntries(row.text), row.entries) << row.why;
}

TEST(Facebook, TakesTheDurationFromTheManifestOfTheBlock) {
    const struct {
        std::string_view behindTheAddress;
        const char* seconds;
        const char* why;
    } rows[] = {
        {R"( dash_manifest mediaPresentationDuration=\"PT9S\")", "9", "behind backslash, quote and ="},
        {R"( dash_manifest mediaPresentationDuration='PT9S')", "9", "single quotes"},
        {R"( mediaPresentationDuration="PT9S" dash_manifest)", "0", "before the manifest"},
        {R"( mediaPresentationDuration="PT9S")", "0", "no manifest"},
        {R"( dash_manifest videoData: mediaPresentationDuration="PT9S")", "0", "of the next block"},
        {R"( videoData: dash_manifest mediaPresentationDuration="PT9S")", "0", "manifest of the next block"},
        {R"( dash_manifest mediaPresentationDuration= "PT9S")", "0", "a blank is not skipped"},
        {R"( dash_manifest mediaPresentationDuration="PT9S)", "0", "no end"},
        {R"( dash_manifest mediaPresentationDuration=)", "0", "nothing there"},
    };
    for (const auto& row : rows) {
        const auto entries = facebookEntries("videoData:sd_src:'b'" + std::string(row.behindTheAddress));
        ASSERT_FALSE(entries.empty()) << row.why;
        EXPECT_EQ(entries[0], std::string("sd b ") + row.seconds) << row.why;
    }
}

TEST(IsoDuration, IsWholeSecondsOrZero) {
    const struct {
        std::u16string_view text;
        std::uint32_t seconds;
        const char* why;
    } rows[] = {
        {u"PT1M30.5S\"", 90, "the fraction is dropped"},
        {u"PT1,5X\"", 1, "and everything behind it"},
        {u"P1DT1H'", 90000, "days and hours"},
        {u"P1Y1M ", 365 * 86400 + 30 * 86400, "years and months"},
        {u"PT1M1S\\", 61, "minutes behind the T"},
        {u"PT1S2S\"", 2, "the last of a repeated unit"},
        {u"PT\"", 0, "no number"},
        {u"P1DT\"", 86400, "nothing behind the T"},
        {u"PT5X\"", 0, "unknown unit"},
        {u"P1H\"", 0, "hours before the T"},
        {u"P1.5D\"", 0, "a fraction before the T"},
        {u"PT1HT1S\"", 0, "a second T"},
        {u"PT-5S\"", 0, "not a number"},
        {u"PT5\"", 0, "no unit"},
        {u"PTS\"", 0, "no number before the unit"},
        {u"pt5s\"", 0, "lower case"},
        {u"PT5S", 0, "no end"},
        {u"P50000Y\"", static_cast<std::uint32_t>(50000ull * 365 * 86400), "modulo 2^32"},
        {u"PT99999999999S\"", 4294967295u, "a number beyond 32 bits is the largest"},
        {u"", 0, "nothing"},
    };
    for (const auto& row : rows) EXPECT_EQ(isoDurationSeconds(row.text), row.seconds) << row.why;
}

TEST(Facebook, KeepsAnAddressThatManyBlocksShareOnce) {
    std::string text;
    for (int i = 0; i < 10000; ++i) text += "videoData:";
    text += "hd_src:'" + std::string(10000, 'x') + "'";
    CFacebookParser parser;
    EXPECT_TRUE(parser.parse(utf16FromUtf8(text)));
    ASSERT_EQ(parser.entries().size(), 10000u);
    EXPECT_EQ(parser.entries().front().url.data(), parser.entries().back().url.data());
}

const auto kPieces = zabtest::pieces(
    "videoData:~\"videoData\":~hd_src:~\"hd_src\":~sd_src:~\"sd_src\":~\"~'~\\~\\/~\\u0025~"
    "dash_manifest~mediaPresentationDuration~=~PT9S~P1D~T~ ~\n~,~9~\0"sv);

TEST(Facebook, EveryPrefixOfGeneratedTextsKeepsItsBounds) {
    zabtest::Random random(66);
    for (int round = 0; round < 30; ++round) {
        const std::string text = zabtest::strungTogether(random, kPieces, 60);
        for (std::size_t size = 0; size <= text.size(); size += 1 + random() % 9)
            zabtest::onExactBlock(std::string_view(text).substr(0, size), zabtest::checkFacebook);
    }
}

TEST(Facebook, AddsEntriesByHand) {
    CFacebookParser parser;
    EXPECT_EQ(parser.addEntry(u"a", 5'000'000'000, true), 0u);
    EXPECT_EQ(parser.addEntry(u"b", 0, false), 1u);
    EXPECT_TRUE(parser.entries()[0].url == u"a");
    EXPECT_EQ(parser.entries()[0].durationSeconds, 5'000'000'000u);
    EXPECT_EQ(parser.entries()[1].isHd, 0u);
    EXPECT_TRUE(parser.parse(u"")) << "entries that stood before count";
}

}  // namespace
}  // namespace zab
