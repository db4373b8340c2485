#include "ui/link_lines.h"

#include "binding/utf.h"
#include "readings.h"

namespace {

using namespace zab;
using namespace std::string_literals;

TEST(LinkLines, AreTheLinksOfASelectionOnceEachInOrder) {
    const auto read = [](const std::string& lines) {
        std::string links;
        for (const std::string& link : linksOfLines(utf16FromUtf8(lines))) links += link + ' ';
        return links;
    };
    const zabtest::Reading rows[] = {
        {"http://h/b\nhttps://h/a\nftp://h/c", "http://h/b https://h/a ftp://h/c ", "in their order"},
        {"\r\n HTTP://h/\xC3\xA4 \r\n\n", "HTTP://h/\xC3\xA4 ", "white space and empty lines, any letter case"},
        {"http://h/a\nhttp://h/b\nhttp://h/a", "http://h/a http://h/b ", "one that comes twice"},
        {"http://h/a#1\nhttp://h/a#2\nhttp://h/a", "http://h/a#1 ", "one file, whatever the fragment"},
        {"mailto:a@h\njavascript:x\n/dir/a\nhttpx://h/", "", "other schemes, and none"},
        {"http://h/a\0b\nhttp://h/c"s, "http://h/a http://h/c ", "ends at a NUL"},
    };
    zabtest::expectReadings(read, rows);

    std::u16string many;
    for (char16_t i = 0x100; i < 3000; ++i) many.append(u"http://h/").append({i, u'\n'});
    EXPECT_EQ(linksOfLines(many).size(), kMostSelectedLinks);
}

}  // namespace
