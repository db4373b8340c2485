// Windows' UrlUnescape and its portable equal, side by side over random texts.

#include <gtest/gtest.h>

#include "media/parsers/generated.h"
#include "media/parsers/url_unescape.h"

using namespace zab;

namespace {

constexpr std::u16string_view kPieces[] = {u"%",    u"%%",   u"%zz", u"%4",  u"%41",    u"%C3",   u"%e9",
                                           u"%00",  u"%0A",  u"%2",  u"5",   u"a",      u"F",     u"?",
                                           u"#",    u"&",    u"+",   u"\\/", u"%25",    u"%3F",   u"%23",
                                           u"\xE9", u"\xFF", u" ",   u"%u0", u"\u4E2D", u"\uFF11"};

template <class Text>
void expectTheSame(const Text& text) {
    Text windows = text, portable = text;
    UrlUnescaper().inPlace(windows);
    unescapePortably(portable);
    EXPECT_TRUE(windows == portable) << testing::PrintToString(text);
}

TEST(UrlUnescape, IsTheSameInWindowsAndPortably) {
    zabtest::Random random(61);
    for (int round = 0; round < 20000; ++round) {
        std::u16string text;
        for (auto pieces = random() % 12; pieces > 0; --pieces) text += kPieces[random() % std::size(kPieces)];
        expectTheSame(text);
        std::string narrow;
        for (const char16_t unit : text) narrow += static_cast<char>(unit);
        expectTheSame(narrow);
    }
}

}  // namespace
