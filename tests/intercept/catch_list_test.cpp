#include "intercept/catch_list.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zab {
namespace {

using zabtest::expectReadings;
using zabtest::ReadingOf;

TEST(CatchList, MatchesAnItemBehindAnyDot) {
    const std::string filler(1993, 'x');
    const ReadingOf<bool, std::pair<std::string, std::string_view>> rows[] = {
        {{"exe zip", "http://h/a.zipper?x=1"}, true, "at the start of an extension inside a URL"},
        {{"ZiP", "a.zip"}, true, "the list's letter case does not matter"},
        {{"zip", "A.ZIP"}, true, "all upper case"},
        {{"zip", "a.Zip"}, false, "mixed case"},
        {{"zip", "zip"}, false, "no dot"},
        {{"torrent", "a.torrent"}, false, "an item of 7 characters"},
        {{"abcdef", "a.abcdef"}, true, "one of 6"},
        {{"  ", "a.zip"}, false, "blanks hold no item"},
        {{"exe\tzip", "a.zip"}, false, "a tab does not separate, and makes the item too long"},
        {{std::string("exe\0zip", 7), "a.zip"}, false, "the list ends at its NUL"},
        {{filler + "xx zip", "a.zip"}, false, "2,000 bytes with its terminator cannot be read"},
        {{filler + "x zip", "a.zip"}, true, "1,999 can"},
    };
    expectReadings([](const auto& given) { return MatchExtensionList(given.first, given.second); }, rows);
}

TEST(CatchList, FileNameTest) {
    const ReadingOf<std::pair<bool, bool>> rows[] = {
        // with numbered parts, and without
        {"a.RaR", {true, true}, "in the list; mixed case: an extension is lowered first"},
        {"a.rarest-of-all", {true, true}, "an item begins it"},
        {"a.b.rar.001", {true, false}, "a numbered part"},
        {"a.rar.1", {true, false}, "one digit"},
        {"a.rar.0001", {false, false}, "four digits"},
        {"a.rar.01a", {false, false}, "not all digits"},
        {"a.rar.001.002", {false, false}, "cut once only"},
        {"rar.001", {false, false}, "the cut name has no dot"},
        {"a.rar/x.001", {false, false}, "a mark before the cut"},
        {"a.007", {true, true}, "digits that the list holds are no part number"},
        {"rar", {false, false}, "no dot"},
        {"a.rar.", {false, false}, "nothing behind the last dot"},
        {"a.rar?", {false, false}, "marks end no extension"},
        {"a.rar;", {false, false}, "marks"},
        {"a.rar,", {false, false}, "marks"},
        {"a.rar=", {false, false}, "marks"},
    };
    GivenSettings settings;
    settings.extensionList = "rar 007";
    const auto accepted = [&settings](std::string_view name) {
        CatchList list(settings);
        return std::pair(acceptsFileName(name, NumberedParts::allowed, list),
                         acceptsFileName(name, NumberedParts::refused, list));
    };
    expectReadings(accepted, rows);
    CatchList list(settings);
    EXPECT_TRUE(list.holds("rar"));
    settings.extensionList = "zip";
    EXPECT_FALSE(list.holds("zip")) << "read once for a decision";
}

}  // namespace
}  // namespace zab
