#include "media/parsers/tag_scanner.h"

#include <gtest/gtest.h>

#include "media/parsers/generated.h"
#include "media/parsers/tag_scanner_check.h"

namespace {

constexpr std::string_view kPieces[] = {
    "id=",   "a=",  "b = ", "\"",   "'",
    "\"x\"", "'y'", "/",    ">",    "<t ",
    " ",     "\n",  "z",    "_-:9", "                                                                       "};

TEST(TagScanner, ReadsListsThatShareAttributesAsIfEachStoodAlone) {
    zabtest::Random random(24);
    for (int round = 0; round < 300; ++round)
        zabtest::onExactBlock(zabtest::strungTogether(random, kPieces, 60), zabtest::checkTagScanner);
}

}  // namespace
