#include "binding/browser_version.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zab {
namespace {

TEST(BrowserVersion, IsTheLeadingNumberOfFileVersion) {
    const struct {
        std::u16string text;
        std::int32_t major;
        const char* why;
    } rows[] = {
        {u"52.9.0", 52, "a full stop ends it"},
        {u"3.6,28", 3, "cut at the comma, then its leading digits"},
        {u"45", 45, "no mark at all"},
        {u"40a1.0", 40, "a letter ends the digits"},
        {u"beta 9.0", 0, "starts with a letter"},
        {u"", 0, "empty"},
        {u"99999999999.0", 2147483647, "beyond the limit"},
        {std::u16string(126, u'0') + u"78", 7, "only 127 characters count"},
    };
    for (const auto& row : rows) EXPECT_EQ(majorOfFileVersion(row.text), row.major) << row.why;
}

TEST(BrowserVersion, PaleMoonCountsAs28FromItsFourthVersionOn) {
    const struct {
        std::int32_t major;
        std::u16string_view path;
        std::int32_t treatedAs;
        const char* why;
    } rows[] = {
        {27, u"C:\\Pale Moon\\PaleMoon.EXE", 28, "letter case does not matter"},
        {4, u"C:\\Pale Moon\\palemoon.exe", 28, "the first that is replaced"},
        {3, u"C:\\Pale Moon\\palemoon.exe", 3, "an older one keeps its number"},
        {27, u"C:\\palemoon.exe\\firefox.exe", 27, "only the file name counts"},
        {27, u"C:\\x\\not-palemoon.exe", 27, "the whole file name"},
        {27, u"palemoon.exe", 27, "no folder, no file-name part"},
    };
    for (const auto& row : rows) EXPECT_EQ(treatedAsVersion(row.major, row.path), row.treatedAs) << row.why;
}

TEST(BrowserVersion, ChoosesTheRuntimeLibrary) {
    const auto names = [](std::int32_t major) {
        const auto libraries = runtimeLibraries(major);
        return std::vector<std::u16string>(libraries.begin(), libraries.end());
    };
    const std::vector<std::u16string> both{u"xpcom.dll", u"xul.dll"};
    EXPECT_EQ(names(kUnknownBrowserVersion), both);
    EXPECT_EQ(names(21), both);
    EXPECT_EQ(names(22), std::vector<std::u16string>{u"xul.dll"});
    EXPECT_EQ(folderOf(u"C:\\b\\firefox.exe"), u"C:\\b\\");
    EXPECT_EQ(folderOf(u"firefox.exe"), u"");
}

}  // namespace
}  // namespace zab
