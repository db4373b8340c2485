#include "binding/browser_version.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "readings.h"

namespace zab {
namespace {

using zabtest::expectReadings;
using zabtest::ReadingOf;

TEST(BrowserVersion, IsTheLeadingNumberOfFileVersion) {
    const ReadingOf<std::int32_t, std::u16string> rows[] = {
        {u"52.9.0", 52, "a full stop ends it"},
        {u"3.6,28", 3, "cut at the comma, then its leading digits"},
        {u"40a1.0", 40, "a letter ends the digits"},
        {u"beta 9.0", 0, "starts with a letter"},
        {u"99999999999.0", 2147483647, "beyond the limit"},
        {std::u16string(126, u'0') + u"78", 7, "only 127 characters count"},
    };
    expectReadings(majorOfFileVersion, rows);
}

TEST(BrowserVersion, PaleMoonCountsAs28FromItsFourthVersionOn) {
    const ReadingOf<std::int32_t, std::pair<std::int32_t, std::u16string_view>> rows[] = {
        {{27, u"C:\\Pale Moon\\PaleMoon.EXE"}, 28, "letter case does not matter"},
        {{4, u"C:\\Pale Moon\\palemoon.exe"}, 28, "the first that is replaced"},
        {{3, u"C:\\Pale Moon\\palemoon.exe"}, 3, "an older one keeps its number"},
        {{27, u"C:\\palemoon.exe\\firefox.exe"}, 27, "only the file name counts"},
        {{27, u"C:\\x\\not-palemoon.exe"}, 27, "the whole file name"},
        {{27, u"palemoon.exe"}, 27, "no folder, no file-name part"},
    };
    expectReadings([](const auto& browser) { return treatedAsVersion(browser.first, browser.second); }, rows);
}

TEST(BrowserVersion, ChoosesTheRuntimeLibrary) {
    const auto names = [](std::int32_t major) {
        const auto libraries = runtimeLibraries(major);
        return std::vector<std::u16string>(libraries.begin(), libraries.end());
    };
    EXPECT_EQ(names(21), (std::vector<std::u16string>{u"xpcom.dll", u"xul.dll"}));
    EXPECT_EQ(names(22), std::vector<std::u16string>{u"xul.dll"});
    EXPECT_EQ(folderOf(u"C:\\b\\firefox.exe"), u"C:\\b\\");
    EXPECT_EQ(folderOf(u"firefox.exe"), u"");
}

}  // namespace
}  // namespace zab
