#include "page/passwords.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

TEST(Passwords, BelongToSchemeHostAndPort) {
    CLSPasswordsArray list;
    list.remember("http://h.example/private/", {"u", "p"});
    const struct {
        const char* url;
        bool found;
        const char* why;
    } rows[] = {
        {"http://h.example/elsewhere?q", true, "the same origin"},
        {"HTTP://x@H.Example:80", true, "the scheme's own port, in any letter case"},
        {"http://a@b@h.example/", true, "the user ends at the last at sign"},
        {"http://h.example@b@x.example/", false, "the host does not end at the first"},
        {"https://h.example/", false, "another scheme"},
        {"http://h.example:8080/", false, "another port"},
        {"http://www.h.example/", false, "another host"},
        {"h.example", false, "no origin"},
    };
    for (const auto& row : rows) EXPECT_EQ(list.find(row.url).has_value(), row.found) << row.why;
}

TEST(Passwords, TheLastLoginOfAnOriginHolds) {
    CLSPasswordsArray list;
    list.rememberAuthorization("http://[::1]:81/", "Basic dTpw");  // u:p
    list.rememberAuthorization("http://[::1]:81/a", "Bearer dTpw");
    EXPECT_EQ(list.find("http://[::1]:81/b").value().password, "p") << "another scheme changes nothing";
    list.rememberAuthorization("http://[::1]:81/a", "Basic djpx");  // v:q
    EXPECT_EQ(list.find("http://[::1]:81/b").value().user, "v");
    EXPECT_EQ(list.find("http://[::1]:81/b").value().password, "q");
}

TEST(Passwords, AFullListForgetsTheOriginThatItLearntFirst) {
    CLSPasswordsArray list;
    for (std::size_t i = 0; i <= CLSPasswordsArray::kMostOrigins; ++i)
        list.remember("http://h.example:" + std::to_string(1000 + i) + "/", {"u", "p"});
    EXPECT_FALSE(list.find("http://h.example:1000/"));
    EXPECT_TRUE(list.find("http://h.example:1001/"));
    EXPECT_TRUE(list.find("http://h.example:" + std::to_string(1000 + CLSPasswordsArray::kMostOrigins)));
}

}  // namespace
}  // namespace zab
