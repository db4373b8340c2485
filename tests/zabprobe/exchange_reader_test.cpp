#include "zabprobe/exchange_reader.h"

#include <gtest/gtest.h>

using namespace zabprobe;

namespace {

std::vector<Exchange> entriesOf(const std::string& entries) {
    std::vector<Exchange> all;
    EXPECT_TRUE(visitHarEntries("{\"log\":{\"pages\":[{\"entries\":[{}]}],\"entries\":[" + entries + "]}}",
                                [&](const Exchange& exchange) { all.push_back(exchange); }));
    return all;
}

TEST(HarReader, LoadFlagsComeFromTheBestWitness) {
    const auto flagsOf = [](const std::string& name, const std::string& value, const std::string& type) {
        const auto entries = entriesOf(R"({"request":{"headers":[{"name":")" + name + R"(","value":")" + value +
                                       R"("}]},"response":{},"_resourceType":)" + type + "}");
        return entries.at(0).loadFlags;
    };
    constexpr std::uint32_t kPart = 0, kFrame = 0x10000, kPage = 0x90000;
    EXPECT_EQ(flagsOf("sec-fetch-dest", "document", R"("image")"), kPage) << "fetch metadata win";
    EXPECT_EQ(flagsOf("Sec-Fetch-Dest", "iframe", R"("document")"), kFrame);
    EXPECT_EQ(flagsOf("Sec-Fetch-Dest", "frame", "null"), kFrame);
    EXPECT_EQ(flagsOf("Sec-Fetch-Dest", "video", R"("document")"), kPart) << "anything else is embedded";
    EXPECT_EQ(flagsOf("Accept", "text/html", R"("xhr")"), kPart) << "which outweighs what is accepted";
    EXPECT_EQ(flagsOf("ACCEPT", "Text/HTML,*/*", "null"), kPage) << "what is accepted";
    EXPECT_EQ(flagsOf("Accept", "*/*,text/html", "null"), kPart) << "first";
}

TEST(HarReader, ReadsEntriesInOrder) {
    const auto entries =
        entriesOf(R"({"request":{"url":"a","method":"POST","bodySize":3,"postData":{"text":"\u00e9xxx"}},)"
                  R"("response":{"status":200,"headers":[{"name":"n","value":"v"}]}},)"
                  R"({"request":{"url":"data:text/html,x"}},{"request":{"url":"BLOB:http://h/1"}},)"
                  R"({"request":{"url":"ftp://b","bodySize":-1},"response":{"status":-1}})");
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].bodySize, 5) << "bytes of the text, when more than what is told";
    EXPECT_EQ(entries[0].responseHeaders, (Headers{{"n", "v"}}));
    EXPECT_EQ(entries[1].url, "ftp://b") << "what the browser answers itself notifies nobody";
    EXPECT_EQ(entries[1].status, -1);
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
    EXPECT_EQ(decided({"http://h/a.zip", 200, "GET", 0x90000, 50'001}), transferred(8)) << "no POST, no body";
}

}  // namespace
