#include "page/passwords.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zab {
namespace {

TEST(Passwords, BelongToSchemeHostAndPort) {
    CLSPasswordsArray list;
    list.remember("http://h.example/private/", {"u", "p"});
    const zabtest::ReadingOf<bool> rows[] = {
        {"HTTP://x@H.Example:80", true, "the scheme's own port, in any letter case"},
        {"http://a@b@h.example/", true, "the user ends at the last at sign"},
        {"http://h.example@b@x.example/", false, "the host does not end at the first"},
        {"http://h.example:8080/", false, "another port"},
        {"h.example", false, "no origin"},
    };
    zabtest::expectReadings([&list](const auto& url) { return list.find(url).has_value(); }, rows);
}

TEST(Passwords, TheLastLoginOfAnOriginHolds) {
    CLSPasswordsArray list;
    list.rememberAuthorization("http://[::1]:81/", "Basic djpx");   // v:q
    list.rememberAuthorization("http://[::1]:81/a", "Basic dTpw");  // u:p
    list.rememberAuthorization("http://[::1]:81/a", "Bearer djpx");
    const auto login = list.find("http://[::1]:81/b").value();
    EXPECT_EQ(login.user + ":" + login.password, "u:p") << "another scheme changes nothing";
}

TEST(Passwords, AFullListForgetsTheOriginThatItLearntFirst) {
    CLSPasswordsArray list;
    const auto origin = [](std::size_t number) {
        return "http://h.example:" + std::to_string(1000 + number) + "/";
    };
    for (std::size_t i = 0; i <= CLSPasswordsArray::kMostOrigins; ++i) list.remember(origin(i), {"u", "p"});
    EXPECT_FALSE(list.find(origin(0)));
    EXPECT_TRUE(list.find(origin(1)));
    EXPECT_TRUE(list.find(origin(CLSPasswordsArray::kMostOrigins)));
}

}  // namespace
}  // namespace zab
