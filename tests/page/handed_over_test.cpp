#include "page/handed_over.h"

#include <gtest/gtest.h>

#include <string>

using namespace zab;

namespace {

using State = HandedOver::State;
using std::chrono::seconds;

/// Never called, so any address will do.
const nsISupports* channel(int number) {
    static const char addresses[4]{};
    return reinterpret_cast<const nsISupports*>(&addresses[number]);
}

constexpr HandedOver::Time kNow{};
constexpr const char* kUrl = "http://h/a";

void policyTried(HandedOver& record, bool made) {
    record.begins(nullptr, kUrl);
    record.ends(nullptr, kUrl, made, kNow);
}

TEST(HandedOver, ANavigationOfThePolicyIsOneRequest) {
    HandedOver record;
    record.begins(nullptr, kUrl);
    EXPECT_EQ(record.loadStarts(channel(2), kUrl, kNow + HandedOver::kPatience * 2), State::notYet)
        << "the policy's own load starts when its call has ended";
    record.ends(nullptr, kUrl, true, kNow);
    EXPECT_EQ(record.loadStarts(channel(0), "http://h/b", kNow), State::notYet) << "another address";
    EXPECT_EQ(record.loadStarts(channel(1), "http://h/a#x", kNow + HandedOver::kPatience), State::made)
        << "a fragment makes no other navigation";
    EXPECT_EQ(record.loadStarts(channel(2), kUrl, kNow), State::notYet) << "the page asks again";
}

TEST(HandedOver, WhatThePolicyIsAskedAnewIsANewNavigation) {
    HandedOver record;
    for (const char* asked : {kUrl, ""}) {  // the same address, or one that was not to be read
        policyTried(record, true);
        record.policyAsked(asked);
        EXPECT_EQ(record.loadStarts(channel(0), kUrl, kNow), State::notYet) << asked;
    }
    policyTried(record, true);
    EXPECT_EQ(record.loadStarts(channel(0), kUrl, kNow + HandedOver::kPatience + seconds(1)), State::notYet)
        << "too late to be the refused one";
}

TEST(HandedOver, AChannelIsHandedOverOnceUntilItServesAgain) {
    HandedOver record;
    record.begins(channel(0), kUrl);
    EXPECT_EQ(record.stateOf(channel(0), kUrl), State::underWay) << "a notification inside the call";
    EXPECT_EQ(record.stateOf(channel(1), kUrl), State::notYet) << "another request for the same";
    record.ends(channel(0), kUrl, false, kNow);
    EXPECT_EQ(record.stateOf(channel(0), kUrl), State::failed) << "which is not tried again";
    EXPECT_EQ(record.stateOf(channel(0), "http://h/b"), State::notYet);
    record.channelStarts(channel(0));
    EXPECT_EQ(record.stateOf(channel(0), kUrl), State::notYet) << "its address serves another request";
}

TEST(HandedOver, AFailedNavigationStaysSoWhereverItLeads) {
    HandedOver record;
    policyTried(record, false);
    EXPECT_EQ(record.loadStarts(channel(0), kUrl, kNow), State::failed);
    record.redirected(channel(0), kUrl, "http://h/b#x", kNow);
    EXPECT_EQ(record.loadStarts(channel(1), "http://h/b", kNow), State::failed) << "on the redirect's channel";
    EXPECT_EQ(record.loadStarts(channel(2), "http://h/b", kNow), State::notYet) << "asked for anew";
}

TEST(HandedOver, RemembersABoundedNumber) {
    HandedOver record;
    for (std::size_t i = 0; i <= HandedOver::kMost; ++i) record.begins(channel(0), kUrl + std::to_string(i));
    EXPECT_EQ(record.stateOf(channel(0), "http://h/a0"), State::notYet);
    EXPECT_EQ(record.stateOf(channel(0), "http://h/a1"), State::underWay);

    const std::string half(HandedOver::kMostBytes / 2, 'x');
    for (const int number : {1, 2}) record.begins(channel(number), half);
    EXPECT_EQ(record.stateOf(channel(1), half), State::underWay) << "exactly as many bytes as are kept";
    EXPECT_EQ(record.stateOf(channel(0), kUrl + std::to_string(HandedOver::kMost)), State::notYet);
    record.begins(channel(0), half + half + half);
    EXPECT_EQ(record.stateOf(channel(0), half + half + half), State::underWay) << "the newest always stays";
    EXPECT_EQ(record.stateOf(channel(2), half), State::notYet);
}

}  // namespace
