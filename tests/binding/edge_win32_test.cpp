// The edge of the binding on a real Windows API: code pages, version resources.
#include <gtest/gtest.h>

#include "binding/browser_string.h"
#include "binding/browser_text_win32.h"
#include "binding/browser_version.h"
#include "binding/runtime_win32.h"
#include "binding/version_resource_win32.h"
#include "binding/wide_win32.h"
#include "readings.h"

namespace zab {
namespace {

TEST(CodePages, AnsiTextStaysAnsiAndEverythingElseBecomesUtf8) {
    if (GetACP() != 1252) GTEST_SKIP() << "the expected bytes are those of code page 1252";
    const zabtest::ReadingOf<std::optional<std::string>, std::u16string_view> rows[] = {
        {u"\u00E4\u20AC.zip", "\xE4\x80.zip", "in the ANSI code page"},
        {u"\u65E5\u672C.zip", "\xE6\x97\xA5\xE6\x9C\xAC.zip", "outside it"},
        {u"\u0101.zip", "\xC4\x81.zip", "a letter that would only come back as its nearest, a"},
        {u"\uFF21.zip", "\xEF\xBC\xA1.zip", "a full-width letter likewise"},
        {u"", std::nullopt, "nothing to read"},
    };
    zabtest::expectReadings(narrowPreferringAnsi, rows);
}

TEST(VersionResource, TellsTheTextsOfAFileThatHasOne) {
    EXPECT_EQ(GetBrowserMajorVersion(), kUnknownBrowserVersion) << "an executable without one";
    std::u16string module = executablePath().value_or(u"");
    module.replace(module.rfind(u'\\') + 1, module.npos, u"zabcchandler7_64.dll");
    EXPECT_EQ(versionResourceText(module, u"OriginalFilename"), u"zabcchandler7_64.dll") << "the module itself";
    EXPECT_GT(majorOfFileVersion(versionResourceText(module, u"FileVersion").value_or(u"")), 0);
    EXPECT_FALSE(versionResourceText(module, u"NoSuchText"));
    EXPECT_FALSE(versionResourceText(module + u".none", u"FileVersion")) << "no such file";
}

}  // namespace
}  // namespace zab
