#include "ui/media_request_check.h"

#include "binding/utf.h"
#include "readings.h"

namespace zab {
namespace {

using namespace std::string_literals;
using namespace zabtest;

TEST(MediaRequest, IsReadFromItsItems) {
    // The fields in the order of the record, each ended by a bar.
    const auto read = [](const std::string& payload) {
        const MediaRequest request = decodeMediaRequest(bytesOf(payload));
        std::u16string texts;
        for (const auto field : kRequestFields) texts += request.*field + u'|';
        return utf8FromUtf16(texts);
    };
    const std::string url = requestItem(30, u"u");
    const Reading rows[] = {
        {"", "|||||||flv|", "nothing: the extension has a default"},
        {requestItem(3, u"mp3") + requestItem(36, u"d") + requestItem(35, u"r") + requestItem(34, u"c") +
             requestItem(33, u"s") + requestItem(32, u"17") + requestItem(31, u"p") + url,
         "u|p|d|s|r|c|17|mp3|", "every field"},
        {requestItem(2, u"x") + requestItem(37, u"x") + requestItem(29, u"x") + requestItem(0, u"x") + url,
         "u|||||||flv|", "tags without a field"},
        {requestItem(30, u"first") + url + requestItem(30, u""), "u|||||||flv|", "the last that is not empty"},
        {url + "\x20\x05\0\0"s + "1\0007\0"s, "u|||||||flv|", "an item that claims one byte too many"},
        {url + "\x20\x04"s, "u|||||||flv|", "an item that ends in its length"},
        {"\x20\x03\0\0"s + "1\0007"s + url, "u||||||1|flv|", "half a character more, and the next item"},
        {requestItem(32, {u"17\0008", 4}) + url, "u||||||17|flv|", "up to its NUL"},
    };
    expectReadings(read, rows);
}

TEST(MediaRequest, MarkersStandForOtherAddresses) {
    const auto read = [](const std::string& url) {
        std::string addresses;
        for (const std::string& address : addressesOf(url)) addresses += address + ' ';
        return addresses;
    };
    const Reading rows[] = {
        {"x/[[import]]/a", "x/[[import]]/a ", "as it stands"},
        {"x/[[IMPORT]]/h/a", "x/[[IMPORT]]/h/a http://h/a ", "behind a marker"},
        {"x/[[DYNAMIC]]/2", "x/[[DYNAMIC]]/2 x ", "before a marker"},
        {"x/[[IMPORT]]/h/a/[[DYNAMIC]]/2",
         "x/[[IMPORT]]/h/a/[[DYNAMIC]]/2 http://h/a/[[DYNAMIC]]/2 x/[[IMPORT]]/h/a ", "each alone"},
        {"/[[IMPORT]]/h/a", "/[[IMPORT]]/h/a http://h/a ", "nothing before it"},
    };
    expectReadings(read, rows);
}

}  // namespace
}  // namespace zab
