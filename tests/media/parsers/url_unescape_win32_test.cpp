// Windows' UrlUnescape and its portable equal, side by side over random texts.

#include <gtest/gtest.h>

#include <random>

#include "media/parsers/url_unescape.h"

namespace zab {
namespace {

const std::u16string_view kPieces[] = {u"%",    u"%%",   u"%zz", u"%4",  u"%41",    u"%C3",   u"%e9",
                                       u"%00",  u"%0A",  u"%2",  u"5",   u"a",      u"F",     u"?",
                                       u"#",    u"&",    u"+",   u"\\/", u"%25",    u"%3F",   u"%23",
                                       u"\xE9", u"\xFF", u" ",   u"%u0", u"\u4E2D", u"\uFF11"};

std::u16string randomText(std::mt19937& random) {
    std::u16string text;
    for (auto pieces = random() % 12; pieces > 0; --pieces) text += kPieces[random() % std::size(kPieces)];
    return text;
}

TEST(UrlUnescape, IsTheSameInWindowsAndPortably) {
    std::mt19937 random(61);
    UrlUnescaper windows;
    for (int round = 0; round < 20000; ++round) {
        const std::u16string text = randomText(random);
        std::u16string wide = text, portableWide = text;
        windows.inPlace(wide);
        unescapePortably(portableWide);
        ASSERT_TRUE(wide == portableWide) << "round " << round;

        std::string narrow;
        for (const char16_t unit : text) narrow += static_cast<char>(unit);
        std::string portableNarrow = narrow;
        windows.inPlace(narrow);
        unescapePortably(portableNarrow);
        ASSERT_EQ(narrow, portableNarrow) << "round " << round;
    }
}

}  // namespace
}  // namespace zab
