#include "zabprobe/exchange_reader.h"

#include <gtest/gtest.h>

namespace zabprobe {
namespace {

std::vector<Exchange> entriesOf(const std::string& entries) {
    std::vector<Exchange> all;
    EXPECT_TRUE(visitHarEntries("{\"log\":{\"pages\":[{\"entries\":[{}]}],\"entries\":[" + entries + "]}}",
                                [&](const Exchange& exchange) { all.push_back(exchange); }));
    return all;
}

TEST(HarReader, LoadFlagsComeFromTheBestWitness) {
    const struct {
        const char *headers, *resourceType;
        std::uint32_t flags;
        const char* why;
    } rows[] = {
        {R"({"name":"sec-fetch-dest","value":"document"})", "\"image\"", 0x90000, "fetch metadata win"},
        {R"({"name":"Sec-Fetch-Dest","value":"iframe"})", "\"document\"", 0x10000, "a frame"},
        {R"({"name":"Sec-Fetch-Dest","value":"frame"})", "null", 0x10000, "a frame"},
        {R"({"name":"Sec-Fetch-Dest","value":"video"},{"name":"Accept","value":"text/html"})", "\"document\"",
         0, "anything else is embedded"},
        {"", "\"document\"", 0x90000, "the recorder's word"},
        {R"({"name":"Accept","value":"text/html"})", "\"xhr\"", 0, "which outweighs what is accepted"},
        {R"({"name":"ACCEPT","value":"Text/HTML,*/*"})", "null", 0x90000, "what is accepted"},
        {R"({"name":"Accept","value":"*/*,text/html"})", "null", 0, "first"},
    };
    for (const auto& row : rows) {
        const auto entries = entriesOf(std::string(R"({"request":{"headers":[)") + row.headers +
                                       R"(]},"response":{},"_resourceType":)" + row.resourceType + "}");
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(entries[0].loadFlags, row.flags) << row.why;
    }
}

TEST(HarReader, ReadsEntriesInOrder) {
    const auto entries =
        entriesOf(R"({"request":{"url":"a","method":"POST","bodySize":3,"postData":{"text":"\u00e9xxx"}},)"
                  R"("response":{"status":200,"headers":[{"name":"n","value":"v"}]}},)"
                  R"({"request":{"url":"b","bodySize":-1},"response":{"status":-1}})");
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].url, "a");
    EXPECT_EQ(entries[0].bodySize, 5) << "bytes of the text, when more than what is told";
    EXPECT_EQ(entries[0].responseHeaders, (Headers{{"n", "v"}}));
    EXPECT_EQ(entries[1].url, "b");
    EXPECT_EQ(entries[1].status, -1);
    EXPECT_EQ(entries[1].method, "GET");
}

TEST(ExchangeReaders, TellAnotherFormFromNoJson) {
    const auto ignore = [](const Exchange&) {};
    for (const char* har :
         {"[]", "{}", R"({"log":[]})", R"({"log":{"entries":{"a":{}}}})", R"({"log":{"entries":[1]}})",
          R"({"log":{"entries":[[{}]]}})", R"({"entries":[]})",
          R"({"log":{"entries":[{"request":5,"response":{}}]}})", R"({"log":{"x":{"entries":[{}]}}})", "7"})
        EXPECT_FALSE(visitHarEntries(har, ignore)) << har;
    for (const char* list :
         {"{}", "[1]", R"([{"url":1}])", R"([{"status":"200"}])", R"([{"requestHeaders":{}}])",
          R"([{"responseHeaders":[["a"]]}])", R"([{"responseHeaders":[["a",1]]}])", "null"})
        EXPECT_FALSE(visitExchanges(list, ignore)) << list;
    EXPECT_TRUE(visitExchanges(R"([{},{"url":null,"status":2e2,"bodySize":1e99,"other":[]}])", ignore));
    EXPECT_TRUE(visitHarEntries(R"({"log":{"entries":[{},{"request":null}]}})", ignore));
    const std::string deep(2'000'000, '[');
    for (const char* text : {"", "[", "{\"log\":{\"entries\":[{}", "[\"\xFF\"]", "[1e4900]", deep.c_str()}) {
        EXPECT_THROW(visitExchanges(text, ignore), std::runtime_error) << std::string_view(text).substr(0, 80);
        EXPECT_THROW(visitHarEntries(text, ignore), std::runtime_error) << std::string_view(text).substr(0, 80);
    }
}

TEST(DecideExchange, FollowsTheMomentsOfARequest) {
    zab::GivenSettings settings;
    settings.extensionList = "zip";
    Exchange post{"http://h/a.zip", 200, "post", 0x90000, 50'001, {}, {}};
    const Headers toFtp = {{"X", "y"}, {"location", "ftp://f/a.zip"}, {"Location", "http://f/"}};
    const struct {
        Exchange exchange;
        bool force;
        zab::Outcome outcome;
        std::uint32_t flags;
        const char* why;
    } rows[] = {
        {{"http://h/a", 302, "GET", 0, 0, {}, toFtp}, false, zab::Outcome::transfer, 0x804, "redirect to FTP"},
        {{"http://h/a", 308, "GET", 0, 0, {}, toFtp}, false, zab::Outcome::browser, 0, "a status that is none"},
        {{std::string(zab::kSentinelUrl), 200}, false, zab::Outcome::cancel, 0, "the sentinel"},
        {{"http://h/", 404, "GET", 0x80000}, true, zab::Outcome::transfer, 0x804, "forced before its response"},
        {post, false, zab::Outcome::transfer, 0x1000008, "a body too large to be captured"},
        {{"http://h/a.zip", 200, "GET", 0x90000, 50'001}, false, zab::Outcome::transfer, 8, "no POST, no body"},
        {{"http://h/a.zip", 200, "POST", 0x90000, 50'000},
         false,
         zab::Outcome::transfer,
         8,
         "a body that fits"},
        {{"http://h/a", 200, "GET", 0, 0, {}, {{"content-disposition", "filename=a.zip"}}},
         false,
         zab::Outcome::transfer,
         0x1008,
         "named by the server"},
    };
    for (const auto& row : rows) {
        zab::CapturedHeaders scratch;
        settings.forceKey = row.force;
        const zab::Decision decision = decideExchange(row.exchange, settings, scratch);
        EXPECT_EQ(decision.outcome, row.outcome) << row.why;
        EXPECT_EQ(decision.flags, row.flags) << row.why;
    }
}

}  // namespace
}  // namespace zabprobe
