#include "binding/my_str.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

using namespace std::string_view_literals;

static_assert(sizeof(MyStrClass) == 3 * sizeof(void*) && sizeof(MyWStrClass) == 3 * sizeof(void*),
              "table, buffer, length and empty text, nothing else");

TEST(OwnedStrings, HoldTheirTextOrAnEmptyOne) {
    MyStrClass string;
    const auto holds = [&string](std::string_view text) {
        return string.view() == text && string.Get()[text.size()] == '\0';
    };
    EXPECT_TRUE(holds("")) << "new";
    string.Set("archive.zip");
    EXPECT_TRUE(holds("archive.zip"));
    string.Set(string.Get() + 8);
    EXPECT_TRUE(holds("zip")) << "set to a part of itself";
    string.Set("a\0b"sv);
    EXPECT_TRUE(holds("a")) << "text ends at its NUL";
    string.Set(nullptr);
    EXPECT_TRUE(holds("")) << "set to null";
}

TEST(OwnedStrings, GiveTheirTextAwayWhenMoved) {
    MyStrClass from, assigned;
    from.Set("text");
    const char* buffer = from.Get();
    MyStrClass to(std::move(from));
    EXPECT_EQ(to.Get(), buffer) << "the buffer itself moves";
    assigned.Set("old");
    assigned = std::move(to);
    EXPECT_EQ(assigned.view(), "text");
    EXPECT_EQ(to.view(), "") << "what is left is an empty text, not a dangling one";  // NOLINT
}

}  // namespace
}  // namespace zab
