#include "zabprobe/exchange_reader.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zabprobe {
namespace {

std::vector<Exchange> entriesOf(const std::string& entries) {
    std::vector<Exchange> all;
    EXPECT_TRUE(visitHarEntries("{\"log\":{\"pages\":[{\"entries\":[{}]}],\"entries\":[" + entries + "]}}",
                                [&](const Exchange& exchange) { all.push_back(exchange); }));
    return all;
}

TEST(HarReader, LoadFlagsComeFromTheBestWitness) {
    const auto read = [](const std::string& headersAndType) {
        const auto type = headersAndType.find('|');
        const auto entries =
            entriesOf(R"({"request":{"headers":[)" + headersAndType.substr(0, type) +
                      R"(]},"response":{},"_resourceType":)" + headersAndType.substr(type + 1) + "}");
        const std::uint32_t flags = entries.at(0).loadFlags;
        return flags == 0x90000 ? "page" : flags == 0x10000 ? "frame" : flags == 0 ? "part" : "another";
    };
    const zabtest::Reading rows[] = {
        {R"({"name":"sec-fetch-dest","value":"document"}|"image")", "page", "fetch metadata win"},
        {R"({"name":"Sec-Fetch-Dest","value":"iframe"}|"document")", "frame", "a frame"},
        {R"({"name":"Accept","value":"text/html"}|"xhr")", "part", "which outweighs what is accepted"},
        {R"({"name":"ACCEPT","value":"Text/HTML,*/*"}|null)", "page", "what is accepted"},
    };
    zabtest::expectReadings(read, rows);
}

TEST(HarReader, ReadsEntriesInOrder) {
    const auto entries =
        entriesOf(R"({"request":{"url":"a","method":"POST","bodySize":3,"postData":{"text":"\u00e9xxx"}},)"
                  R"("response":{"status":200,"headers":[{"name":"n","value":"v"}]}},)"
                  R"({"request":{"url":"data:text/html,x"}},{"request":{"url":"BLOB:http://h/1"}},)"
                  R"({"request":{"url":"ftp://b","bodySize":-1},"response":{"status":-1}})");
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].url, "a");
    EXPECT_EQ(entries[0].bodySize, 5) << "bytes of the text, when more than what is told";
    EXPECT_EQ(entries[0].responseHeaders, (Headers{{"n", "v"}}));
    EXPECT_EQ(entries[1].url, "ftp://b") << "what the browser answers itself notifies nobody";
    EXPECT_EQ(entries[1].status, -1);
    EXPECT_EQ(entries[1].method, "GET");
}

TEST(ExchangeReaders, TellAnotherFormFromNoJson) {
    const auto ignore = [](const Exchange&) {};
    for (const char* har :
         {"[]", R"({"log":[]})", R"({"log":{"entries":{"a":{}}}})", R"({"log":{"entries":[1]}})",
          R"({"entries":[]})", R"({"log":{"entries":[{"request":5}]}})", R"({"log":{"x":{"entries":[{}]}}})"})
        EXPECT_FALSE(visitHarEntries(har, ignore)) << har;
    for (const char* list : {"{}", "[1]", R"([{"url":1}])", R"([{"status":"200"}])",
                             R"([{"requestHeaders":{}}])", R"([{"responseHeaders":[["a",1]]}])"})
        EXPECT_FALSE(visitExchanges(list, ignore)) << list;
    EXPECT_TRUE(visitExchanges(R"([{},{"url":null,"status":2e2,"bodySize":1e99,"other":[]}])", ignore));
    EXPECT_TRUE(visitHarEntries(R"({"log":{"entries":[{},{"request":null}]}})", ignore));
    const std::string deep(2'000'000, '[');
    for (const char* text : {"", "[\"\xFF\"]", "[1e4900]", deep.c_str()})
        EXPECT_THROW(visitExchanges(text, ignore), std::runtime_error) << std::string_view(text).substr(0, 80);
    EXPECT_THROW(visitHarEntries("{\"log\":{\"entries\":[{}", ignore), std::runtime_error);
}

TEST(DecideExchange, FollowsTheMomentsOfARequest) {
    const auto decided = [](const Exchange& exchange, bool force = false) {
        zab::GivenSettings settings;
        settings.extensionList = "zip";
        settings.forceKey = force;
        zab::CapturedHeaders scratch;
        const zab::Decision decision = decideExchange(exchange, settings, scratch);
        return std::pair(decision.outcome, decision.flags);
    };
    using enum zab::Outcome;
    const auto transferred = [](std::uint32_t flags) { return std::pair(transfer, flags); };
    const Headers toFtp = {{"X", "y"}, {"location", "ftp://f/a.zip"}, {"Location", "http://f/"}};
    EXPECT_EQ(decided({"http://h/a", 302, "GET", 0, 0, {}, toFtp}), transferred(0x804)) << "redirect to FTP";
    EXPECT_EQ(decided({std::string(zab::kSentinelUrl), 200}).first, cancel) << "the sentinel";
    EXPECT_EQ(decided({"http://h/", 404, "GET", 0x80000}, true), transferred(0x804)) << "before its response";
    EXPECT_EQ(decided({"http://h/a.zip", 200, "post", 0x90000, 50'001}), transferred(0x1000008))
        << "a body too large to be captured";
    EXPECT_EQ(decided({"http://h/a.zip", 200, "POST", 0x90000, 50'000}), transferred(8)) << "one that fits";
}

}  // namespace
}  // namespace zabprobe
