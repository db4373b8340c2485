#include "web/encoding.h"

#include "readings.h"

using namespace zab;
using namespace zabtest;

namespace {

TEST(Base64, IsThatOfRfc4648AndEndsAtTheFirstForeignByte) {
    EXPECT_EQ(Base64Encode("foob"), "Zm9vYg==");
    EXPECT_EQ(Base64Encode("fooba"), "Zm9vYmE=");
    EXPECT_EQ(Base64Encode("\xFB\xEF\xFF"), "++//") << "the last of the alphabet";
    const Reading rows[] = {
        {" \t Zm9v", "foo", "leading blanks"},
        {"Zg", "f", "padding may be missing"},
        {"Zm9vY", "foo", "a single left-over character holds no byte"},
        {"Zg==Zm9v", "f", "nothing counts behind the padding"},
    };
    expectReadings(Base64Decode, rows);
}

TEST(BasicCredentials, AreTheTwoSidesOfTheFirstColon) {
    const auto read = [](std::string_view value) {
        const auto login = ParseBasicCredentials(value);
        return login ? login->user + " | " + login->password : "none";
    };
    const Reading rows[] = {
        {"  bAsIc   dTpw", "u | p", "blanks on both sides of a scheme in any letter case"},
        {"Basic dTpwAHE=", "u | p", "a NUL ends the text"},
        {"Bearer dTpw", "none", "another scheme"},
    };
    expectReadings(read, rows);
}

TEST(EncodedWord, GivesTheMarkedUtf8Name) {
    const auto read = [](std::string_view text) { return DecodeEncodedWordFileName(text).value_or("none"); };
    const Reading rows[] = {
        {"=?utf-8?b?w6QudHh0?= tail", "utf-8''\xC3\xA4.txt", "letter case, and text behind it"},
        {"=?UTF-8?B?YQ==", "none", "never closed"},
        {"=?UTF-8?Q?a.txt?=", "none", "the other encoding"},
        {"=?UTF-8", "none", "cut inside the prefix"},
    };
    expectReadings(read, rows);
}

}  // namespace
