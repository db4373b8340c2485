#include "ui/media_request_check.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

using zabtest::bytesOf;
using zabtest::requestItem;

TEST(MediaRequest, IsReadFromItsItems) {
    using namespace std::string_literals;
    const std::string url = requestItem(30, u"u");
    // The fields in the order of the record, each ended by a bar.
    const auto textsOf = [](const MediaRequest& request) {
        std::u16string texts;
        for (const auto field : zabtest::kRequestFields) texts += request.*field + u'|';
        return texts;
    };
    const struct {
        std::string payload;
        std::u16string texts;
        const char* why;
    } rows[] = {
        {"", u"|||||||flv|", "nothing: the extension has a default"},
        {requestItem(3, u"mp3") + requestItem(36, u"d") + requestItem(35, u"r") + requestItem(34, u"c") +
             requestItem(33, u"s") + requestItem(32, u"17") + requestItem(31, u"p") + url,
         u"u|p|d|s|r|c|17|mp3|", "every field"},
        {requestItem(2, u"x") + requestItem(37, u"x") + requestItem(29, u"x") + requestItem(0, u"x") + url,
         u"u|||||||flv|", "tags without a field"},
        {requestItem(30, u"first") + url + requestItem(30, u""), u"u|||||||flv|", "the last that is not empty"},
        {url + "\x20\x05\0\0"s + "1\0007\0"s, u"u|||||||flv|", "an item that claims one byte too many"},
        {url + "\x20\x04"s, u"u|||||||flv|", "an item that ends in its length"},
        {"\x20\x03\0\0"s + "1\0007"s + url, u"u||||||1|flv|", "half a character more, and the next item"},
        {requestItem(32, std::u16string_view(u"17\0"
                                             u"8",
                                             4)) +
             url,
         u"u||||||17|flv|", "up to its NUL"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(textsOf(decodeMediaRequest(bytesOf(row.payload))), row.texts) << row.why;
}

TEST(MediaRequest, MarkersStandForOtherAddresses) {
    using Addresses = std::vector<std::string>;
    const std::string import = "rtmp://h.example/app/[[IMPORT]]/cdn.example/file.mp3";
    const std::string dynamic = "http://h.example/a.mp4/[[DYNAMIC]]/2";
    const std::string both = "http://h.example/[[IMPORT]]/c.example/a.flv/[[DYNAMIC]]/2";
    EXPECT_EQ(addressesOf("http://h.example/[[import]]/a"), Addresses{"http://h.example/[[import]]/a"});
    EXPECT_EQ(addressesOf(import), (Addresses{import, "http://cdn.example/file.mp3"}));
    EXPECT_EQ(addressesOf(dynamic), (Addresses{dynamic, "http://h.example/a.mp4"}));
    EXPECT_EQ(addressesOf(both), (Addresses{both, "http://c.example/a.flv/[[DYNAMIC]]/2",
                                            "http://h.example/[[IMPORT]]/c.example/a.flv"}));
    EXPECT_EQ(addressesOf("/[[IMPORT]]/host/file.mp3").back(), "http://host/file.mp3") << "nothing before it";
}

}  // namespace
}  // namespace zab
