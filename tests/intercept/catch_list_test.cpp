#include "intercept/catch_list.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(CatchList, MatchesAnItemBehindAnyDot) {
    const std::string filler(1993, 'x');
    const struct {
        std::string list, text;
        bool matches;
        const char* why;
    } rows[] = {
        {"exe zip", "http://h/a.zip?x=1", true, "inside a URL"},
        {"zip", "a.zipper", true, "at the start of a longer extension"},
        {"ZiP", "a.zip", true, "the list's letter case does not matter"},
        {"zip", "A.ZIP", true, "all upper case"},
        {"zip", "a.Zip", false, "mixed case"},
        {"zip", "zip", false, "no dot"},
        {"torrent", "a.torrent", false, "an item of 7 characters"},
        {"abcdef", "a.abcdef", true, "one of 6"},
        {"  ", "a.zip", false, "blanks hold no item"},
        {"exe\tzip", "a.zip", false, "a tab does not separate, and makes the item too long"},
        {std::string("exe\0zip", 7), "a.zip", false, "the list ends at its NUL"},
        {filler + " zip", "a.zip", true, "1,998 bytes with its terminator"},
        {filler + "xx zip", "a.zip", false, "2,000 bytes with its terminator cannot be read"},
        {filler + "x zip", "a.zip", true, "1,999 can"},
    };
    for (const auto& row : rows) EXPECT_EQ(MatchExtensionList(row.list, row.text), row.matches) << row.why;
}

TEST(CatchList, FileNameTest) {
    const struct {
        std::string_view name;
        bool withParts, plain;
        const char* why;
    } rows[] = {
        {"a.rar", true, true, "in the list"},
        {"a.RaR", true, true, "mixed case: an extension is lowered first"},
        {"a.rarest-of-all", true, true, "an item begins it"},
        {"a.b.rar.001", true, false, "a numbered part"},
        {"a.rar.1", true, false, "one digit"},
        {"a.rar.0001", false, false, "four digits"},
        {"a.rar.01a", false, false, "not all digits"},
        {"a.rar.001.002", false, false, "cut once only"},
        {"rar.001", false, false, "the cut name has no dot"},
        {"a.rar/x.001", false, false, "a mark before the cut"},
        {"a.r00", true, true, "digits that the list holds are no part number"},
        {"a.007", true, true, "nor are these"},
        {"rar", false, false, "no dot"},
        {"a.", false, false, "nothing behind it"},
        {"", false, false, "nothing"},
    };
    GivenSettings settings;
    settings.extensionList = "rar r00 007";
    for (const auto& row : rows) {
        CatchList list(settings);
        EXPECT_EQ(acceptsFileName(row.name, NumberedParts::allowed, list), row.withParts)
            << row.name << row.why;
        EXPECT_EQ(acceptsFileName(row.name, NumberedParts::refused, list), row.plain) << row.name << row.why;
    }
    for (const char mark : {'?', ';', ',', '=', '/'}) {
        CatchList list(settings);
        EXPECT_FALSE(acceptsFileName(std::string("a.rar") + mark, NumberedParts::allowed, list)) << mark;
    }
}

}  // namespace
}  // namespace zab
