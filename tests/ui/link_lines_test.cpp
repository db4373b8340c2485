#include "ui/link_lines.h"

#include <gtest/gtest.h>

namespace {

using namespace zab;
using Links = std::vector<std::string>;

TEST(LinkLines, AreTheLinksOfASelectionOnceEachInOrder) {
    const struct {
        std::u16string_view lines;
        Links links;
        const char* why;
    } rows[] = {
        {u"http://h/b\nhttps://h/a\nftp://h/c", {"http://h/b", "https://h/a", "ftp://h/c"}, "in their order"},
        {u"\r\n HTTP://h/a \r\n\n", {"HTTP://h/a"}, "white space and empty lines, any letter case"},
        {u"http://h/a\nhttp://h/b\nhttp://h/a", {"http://h/a", "http://h/b"}, "one that comes twice"},
        {u"http://h/a#1\nhttp://h/a#2\nhttp://h/a", {"http://h/a#1"}, "one file, whatever the fragment"},
        {u"mailto:a@h\njavascript:x\n/dir/a\nhttpx://h/", {}, "other schemes, and none"},
        {u"http://h/\u00E4", {"http://h/\xC3\xA4"}, "as UTF-8"},
        {std::u16string_view(u"http://h/a\0b\nhttp://h/c", 23), {"http://h/a", "http://h/c"}, "ends at a NUL"},
        {u"", {}, "nothing"},
    };
    for (const auto& row : rows) EXPECT_EQ(linksOfLines(row.lines), row.links) << row.why;

    std::u16string many;
    for (int i = 0; i < 3000; ++i)
        many += std::u16string(u"http://h/") + static_cast<char16_t>(0x100 + i) + u'\n';
    EXPECT_EQ(linksOfLines(many).size(), kMostSelectedLinks);
}

}  // namespace
