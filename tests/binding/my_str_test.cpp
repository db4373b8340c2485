#include "binding/my_str.h"

#include <gtest/gtest.h>

#include <string>

namespace zab {
namespace {

static_assert(sizeof(MyStrClass) == 3 * sizeof(void*) && sizeof(MyWStrClass) == 3 * sizeof(void*),
              "table, buffer, length and empty text, nothing else");

template <class String, class View>
void expectText(const String& string, View text, const char* why) {
    ASSERT_NE(string.Get(), nullptr) << why;
    EXPECT_EQ(string.view(), text) << why;
    EXPECT_EQ(string.length(), text.size()) << why;
    EXPECT_EQ(string.Get()[text.size()], 0) << why;
}

TEST(OwnedStrings, HoldTheirTextOrAnEmptyOne) {
    using namespace std::string_view_literals;
    MyStrClass narrow;
    expectText(narrow, ""sv, "new");
    narrow.Set("archive.zip");
    expectText(narrow, "archive.zip"sv, "set");
    narrow.Set(narrow.Get() + 8);
    expectText(narrow, "zip"sv, "set to a part of itself");
    narrow.Set("a\0b"sv);
    expectText(narrow, "a"sv, "text ends at its NUL");
    narrow.Set("");
    expectText(narrow, ""sv, "set to empty text");
    narrow.Set("x");
    narrow.Set(nullptr);
    expectText(narrow, ""sv, "set to null");

    MyWStrClass wideText;
    wideText.Set(u"\u00E4\u20AC");
    expectText(wideText, u"\u00E4\u20AC"sv, "wide text counts characters");
}

TEST(OwnedStrings, GiveTheirTextAwayWhenMoved) {
    MyStrClass from;
    from.Set("text");
    const char* buffer = from.Get();
    MyStrClass to(std::move(from));
    EXPECT_EQ(to.Get(), buffer) << "the buffer itself moves";
    MyStrClass assigned;
    assigned.Set("old");
    assigned = std::move(to);
    EXPECT_EQ(assigned.view(), "text");
    EXPECT_EQ(to.view(), "") << "what is left is an empty text, not a dangling one";  // NOLINT
}

}  // namespace
}  // namespace zab
