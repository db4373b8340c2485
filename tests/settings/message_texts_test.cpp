#include "settings/message_texts.h"

#include <gtest/gtest.h>

#include "readings.h"
#include "settings/language_file_check.h"

namespace zab {
namespace {

using zabtest::checkLanguageFile;
using zabtest::fileOf;
using zabtest::kTestLanguage;

constexpr std::string_view kMark = "\xEF\xBB\xBF";

/// Where each byte of 0x80 and more of the file's code page is "é".
std::optional<std::string> fromTestCodePage(std::string_view text) {
    std::string result;
    for (const char c : text) result += static_cast<unsigned char>(c) < 0x80 ? std::string(1, c) : "\xC3\xA9";
    return result;
}

TEST(LanguageFile, IsUsedWhenItsFirstLineNamesTheLanguage) {
    const zabtest::ReadingOf<bool> rows[] = {
        {"language = 407 (German)\n", true, "hexadecimal, with anything before and behind"},
        {std::string(kMark) + "lang=0407\n", true, "behind a byte order mark"},
        {"lang=0409\n", false, "another language"},
        {"lang=407", true, "no end of line"},
        {"LANG=407\n", false, "the word is exact"},
        {"lang 407\n", false, "no equals sign"},
        {"lang=\n", false, "no number"},
        {"\nlang=407\n", false, "not the first line"},
        {"", false, "an empty file"},
        {std::string(8192, 'x') + "\nlang=407\n", false, "a first line that is too long is still the first"},
    };
    const auto used = [](const std::string& contents) {
        checkLanguageFile(contents);
        MessageTexts texts;
        return overlayLanguageFile(fileOf(contents), kTestLanguage, {}, texts);
    };
    zabtest::expectReadings(used, rows);
}

TEST(LanguageFile, ReplacesTheTextsThatItNames) {
    const std::string longest = "20850=" + std::string(8192 - 7, 'x') + "\n";
    const zabtest::Reading rows[] = {
        // what the text 20850 is then
        {"20850=Film\r\n", "Film", "the line break is no part of it"},
        {"20850=Film", "Film", "the last line may lack it"},
        {" 20850 x= Film \n", " Film ", "the number leads, the text is what follows the first equals sign"},
        {"20850=a=b\n", "a=b", "up to the end"},
        {"20850=Film\\n\n", "Film\n", "an escaped line feed at the end stays"},
        {"20850=a\\r\\n\\\"\\'\\\\b\n", "a\r\n\"'\\b", "all escapes"},
        {"20850=a\\\\nb\n", "a\\\nb", "escapes are replaced in turn over the whole text"},
        {"20850=a\n", "a\n", "two bytes are not longer than two: the end stays"},
        {"20850=ab\n", "ab", "three are"},
        {"20850=one\n20850=two\n", "two", "the last one holds"},
        {"99999=x\n-20850=x\nx20850=x\n20850 Film\n", "video", "no ID of the table, no number, no equals sign"},
        {std::string("20850=Fi\0lm\n", 12), "Fi", "a line ends at its first NUL"},
        {longest, std::string(8192 - 7, 'x'), "a line of 8,192 bytes"},
        {"x" + longest + "20850=Film\n", "Film", "one of 8,193 is left out, alone"},
        {"20850=\xE9t\xE9\n", "\xC3\xA9t\xC3\xA9", "from the code page of the language"},
    };
    const auto read = [](const std::string& lines) {
        checkLanguageFile("lang=407\n" + lines);
        MessageTexts texts;
        EXPECT_TRUE(overlayLanguageFile(fileOf("lang=407\n" + lines), kTestLanguage, fromTestCodePage, texts));
        EXPECT_EQ(texts[TextId::audio].view(), "audio") << lines;
        return std::string(texts[TextId::video].view());
    };
    zabtest::expectReadings(read, rows);
}

TEST(LanguageFile, WithAByteOrderMarkIsTakenAsItIs) {
    MessageTexts texts;
    const std::string contents = std::string(kMark) + "lang=407\n20850=\xC3\xA9t\xE9\n";
    ASSERT_TRUE(overlayLanguageFile(fileOf(contents), kTestLanguage, fromTestCodePage, texts));
    EXPECT_EQ(texts[TextId::video].view(), "\xC3\xA9t\xE9");
}

}  // namespace
}  // namespace zab
