// The edge of the binding on a real Windows API: code pages, version resources, libraries, the empty runtime.
#include <gtest/gtest.h>

#include "binding/browser_string.h"
#include "binding/browser_text_win32.h"
#include "binding/browser_version.h"
#include "binding/library_win32.h"
#include "binding/my_str.h"
#include "binding/runtime.h"
#include "binding/runtime_win32.h"
#include "binding/version_resource_win32.h"

namespace zab {
namespace {

// Japanese and a lone surrogate are in no Western ANSI code page.
constexpr std::u16string_view kJapanese = u"\u65E5\u672C.zip";

TEST(CodePages, AnsiTextStaysAnsiAndEverythingElseBecomesUtf8) {
    if (GetACP() != 1252) GTEST_SKIP() << "the expected bytes are those of code page 1252";
    const struct {
        std::u16string_view text;
        std::optional<std::string> narrow;
        const char* why;
    } rows[] = {
        {u"archive.zip", "archive.zip", "ASCII"},
        {u"\u00E4\u20AC.zip", "\xE4\x80.zip", "in the ANSI code page"},
        {kJapanese, "\xE6\x97\xA5\xE6\x9C\xAC.zip", "outside it"},
        {u"\u0101.zip", "\xC4\x81.zip", "a letter that would only come back as its nearest, a"},
        {u"\uFF21.zip", "\xEF\xBC\xA1.zip", "a full-width letter likewise"},
        {u"", std::nullopt, "nothing to read"},
    };
    for (const auto& row : rows) EXPECT_EQ(narrowPreferringAnsi(row.text), row.narrow) << row.why;
}

TEST(VersionResource, TellsTheTextsOfAFileThatHasOne) {
    wchar_t folder[MAX_PATH];
    ASSERT_NE(GetSystemDirectoryW(folder, MAX_PATH), 0u);
    const std::u16string shell = std::u16string(utf16(folder)) + u"\\shell32.dll";
    EXPECT_GT(majorOfFileVersion(versionResourceText(shell, u"FileVersion").value_or(u"")), 0);
    EXPECT_FALSE(versionResourceText(shell, u"ProductName").value_or(u"").empty());
    EXPECT_FALSE(versionResourceText(shell, u"NoSuchText"));
    EXPECT_FALSE(versionResourceText(shell + u".none", u"FileVersion")) << "no such file";
    std::u16string module = executablePath().value_or(u"");
    module.replace(module.rfind(u'\\') + 1, module.npos, u"zabcchandler7_64.dll");
    EXPECT_EQ(versionResourceText(module, u"OriginalFilename"), u"zabcchandler7_64.dll") << "the module itself";
}

TEST(RuntimeBinding, FindsTheVersionOfAnExecutableWithoutAResourceUnknown) {
    const auto executable = executablePath();
    ASSERT_TRUE(executable);
    EXPECT_TRUE(executable->ends_with(u".exe"));
    EXPECT_EQ(GetBrowserMajorVersion(), kUnknownBrowserVersion);
    EXPECT_EQ(browserMajorVersion(), kUnknownBrowserVersion);
}

TEST(Libraries, AreFoundInTheSystemFolderAndTheirExportsByName) {
    const HMODULE shlwapi = LoadSystemLibrary("shlwapi.dll");
    ASSERT_NE(shlwapi, nullptr);
    const auto length = exportOf<int WINAPI(const char*)>(GetModuleHandleW(L"kernel32.dll"), "lstrlenA");
    ASSERT_NE(length, nullptr);
    EXPECT_EQ(length("four"), 4);
    EXPECT_EQ((exportOf<int WINAPI(const char*)>(shlwapi, "NoSuchExport")), nullptr);
    EXPECT_EQ((exportOf<int WINAPI(const char*)>(nullptr, "lstrlenA")), nullptr);
    EXPECT_EQ(LoadSystemLibrary("no-such-library.dll"), nullptr);
}

}  // namespace
}  // namespace zab
