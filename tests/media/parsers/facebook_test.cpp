#include "media/parsers/facebook.h"

#include "media/parsers/site_checks.h"
#include "readings.h"

using namespace zab;
using namespace zabtest;

namespace {

TEST(Facebook, TakesAddressesAndDurationOfEachBlock) {
    const std::string block = "videoData:sd_src:'b' ";
    const Reading rows[] = {
        {R"(videoData:[{hd_src:"a",sd_src:"b"}])", "hd a 0;sd b 0;", "high definition first"},
        {R"(videoData: sd_src: 	'"b')", "sd \"b 0;", "one address, white space; the same quote closes"},
        {R"(videoData:sd_src:none "sd_src":"q")", "sd q 0;", "a bare key without a value is absent"},
        {R"(videoData:sd_src:null sd_src:"q")", "", "only the next bare key is looked at"},
        {R"(videoData:"sd_src":"q" sd_src:"b")", "sd b 0;", "the bare key wins, though farther"},
        {R"("videoData":sd_src:"q" videoData:sd_src:"b")", "sd b 0;", "so does the bare marker"},
        {R"(videoData:sd_src:"b" "videoData":sd_src:"q")", "sd b 0;sd q 0;", "then the quoted one"},
        {R"(sd_src:"b" videoData:)", "", "a block takes what is ahead"},
        {R"(videoData:sd_src:"b)", "", "no closing quote"},
        {R"(videoData:sd_src:"h:\/\/x\u0025\u0026\\/")", R"(sd h://x%\u0026\/ 0;)", "two escapes, one pass"},
        {block + R"(dash_manifest mediaPresentationDuration=\"PT9S\")", "sd b 9;",
         "behind backslash, quote and ="},
        {block + R"(mediaPresentationDuration="PT9S" dash_manifest)", "sd b 0;", "before the manifest"},
        {block + R"(dash_manifest videoData: mediaPresentationDuration="PT9S")", "sd b 0;",
         "of the next block"},
        {block + R"(dash_manifest mediaPresentationDuration= "PT9S")", "sd b 0;", "a blank is not skipped"},
        {block + R"(dash_manifest mediaPresentationDuration="PT9S)", "sd b 0;", "no end"},
    };
    expectReadings(facebookEntries, rows);
}

TEST(IsoDuration, IsWholeSecondsOrZero) {
    const auto read = [](std::string_view text) {
        return std::to_string(isoDurationSeconds(utf16FromUtf8(text)));
    };
    const Reading rows[] = {
        {"PT1M30.5S\"", "90", "the fraction is dropped"},
        {"PT1,5X\"", "1", "so is one behind a comma"},
        {"P1DT1H'", "90000", "days and hours"},
        {"P1Y1M ", "34128000", "years and months: of 365 and 30 days"},
        {"P1DT\\", "86400", "nothing behind the T"},
        {"PT1HT1S\"", "0", "a second T"},
        {"PT5\"", "0", "no unit"},
        {"PTS\"", "0", "no number before the unit"},
        {"1D\"", "0", "no P"},
        {"PT5S", "0", "no end"},
        {"P50000Y\"", "547002368", "modulo 2^32"},
        {"PT99999999999S\"", "4294967295", "a number beyond 32 bits is the largest"},
    };
    expectReadings(read, rows);
}

TEST(Facebook, KeepsAnAddressThatManyBlocksShareOnce) {
    std::string text;
    for (int i = 0; i < 10000; ++i) text += "videoData:";
    text += "hd_src:'" + std::string(10000, 'x') + "'";
    CFacebookParser parser;
    EXPECT_TRUE(parser.parse(utf16FromUtf8(text)));
    ASSERT_EQ(parser.entries().size(), 10000u);
    EXPECT_EQ(parser.entries().front().url.data(), parser.entries().back().url.data());
    EXPECT_EQ(parser.addEntry(u"b", 5'000'000'000, false), 10000u) << "one more by hand";
}

}  // namespace
