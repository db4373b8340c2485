#include "page/object_requests.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

constexpr std::size_t kMostRecords = CObjectRequestsArray::kMostRecords,
                      kHalfPost = CObjectRequestsArray::kMostPostBytes / 2,
                      kHalfText = CObjectRequestsArray::kMostTextBytes / 2;

OBJECTREQUESTSARRAY_ITEM request(std::string url, std::string referrer = {}, std::uint64_t documentId = 0,
                                 std::size_t postBytes = 0) {
    OBJECTREQUESTSARRAY_ITEM record;
    record.url = std::move(url);
    record.referrer = std::move(referrer);
    record.documentId = documentId;
    record.postBody.assign(postBytes, 'x');
    return record;
}

std::string referrerOf(CObjectRequestsArray& list, std::string_view url, std::uint64_t documentId = 0) {
    const auto* found = documentId == 0 ? list.find(url) : list.find(url, documentId);
    return found == nullptr ? "none" : found->referrer;
}

TEST(ObjectRequests, TheOldestOfEqualUrlsCounts) {
    CObjectRequestsArray list;
    list.add(request("http://h/b", "1"));
    list.add(request("http://h/a", "2"));
    list.add(request("http://h/a", "3"));
    EXPECT_EQ(referrerOf(list, "http://h/a"), "2");
    EXPECT_EQ(referrerOf(list, "http://h/A"), "none") << "exact";
    EXPECT_EQ(referrerOf(list, "http://h/"), "none") << "whole";

    list.renameFirst("http://h/b", "http://h/a");
    EXPECT_EQ(referrerOf(list, "http://h/a"), "1") << "a renamed record keeps its age";
    EXPECT_EQ(referrerOf(list, "http://h/b"), "none");
    list.renameFirst("http://h/none", "http://h/c");
    list.removeFirst("http://h/a");
    EXPECT_EQ(referrerOf(list, "http://h/a"), "2");
    for (int i = 0; i < 3; ++i) list.removeFirst("http://h/a");
    EXPECT_EQ(list.count(), 0u);
}

TEST(ObjectRequests, BelongToTheirDocument) {
    CObjectRequestsArray list;
    list.add(request("none", "first"));
    list.add(request("none", "second", 8));
    list.removeOfDocument(nullptr, 0);
    list.removeOfDocument(nullptr, 9);
    EXPECT_EQ(list.count(), 2u) << "no document names none";
    EXPECT_EQ(referrerOf(list, "none", 8), "second") << "of its own document";
    EXPECT_EQ(list.find("none", 0)->referrer, "first") << "of any";
    EXPECT_EQ(referrerOf(list, "none", 9), "none");
}

TEST(ObjectRequests, TheOldestGoFirst) {
    CObjectRequestsArray list;
    for (std::size_t i = 0; i <= kMostRecords; ++i) list.add(request(std::to_string(i)));
    EXPECT_EQ(list.count(), kMostRecords);
    EXPECT_EQ(list.find("0"), nullptr);
    EXPECT_NE(list.find("1"), nullptr);

    for (int i = 0; i < 2; ++i) list.add(request("posted", "", 0, kHalfPost));
    EXPECT_EQ(list.count(), kMostRecords) << "exactly 8 MiB is held";
    list.add(request("posted", "", 0, 1));
    EXPECT_EQ(list.count(), 2u) << "one byte more: all that is older than the first large body goes with it";

    const std::string half(kHalfText, 'x');
    CObjectRequestsArray full;
    for (const char* url : {"a", "b"}) full.add(request(url, half.substr(1)));
    EXPECT_EQ(full.count(), 2u) << "exactly 8 MiB of text is held";
    full.renameFirst("b", "bb");
    EXPECT_EQ(full.count(), 1u) << "a new URL counts like an old one";
    full.add(request(half + half, half));
    EXPECT_EQ(full.count(), 1u) << "and the newest record stays, whatever it has";
    EXPECT_NE(full.find(half + half), nullptr);
}

TEST(ObjectRequests, WhatIsRemovedGivesBackItsWholeRoom) {
    CObjectRequestsArray list;
    for (int i = 0; i < 6; ++i) {
        list.add(request("http://h/" + std::to_string(i), std::string(kHalfText, 'x'), 7, kHalfPost));
        list.renameFirst("http://h/" + std::to_string(i), "renamed");
        i % 2 == 0 ? list.removeFirst("renamed") : list.removeOfDocument(nullptr, 7);
    }
    for (int i = 0; i < 2; ++i) list.add(request("large", std::string(kHalfText - 5, 'x'), 0, kHalfPost));
    EXPECT_EQ(list.count(), 2u);
}

TEST(ObjectRequests, ThePolicysRecordGivesWayToThatOfTheRequest) {
    CObjectRequestsArray list;
    auto told = request("http://h/a", "", 17), asked = request("http://h/a", "asked");
    told.kind = ObjectKind::audio;
    told.fromPolicy = true;
    list.add(told);
    list.addRequest(asked);
    ASSERT_EQ(list.count(), 1u);
    const auto* record = list.find("http://h/a", 0);
    EXPECT_EQ(record->referrer, "asked");
    EXPECT_EQ(record->kind, ObjectKind::audio);
    EXPECT_EQ(record->documentId, 17u);
    list.addRequest(asked);
    EXPECT_EQ(list.count(), 2u) << "a page that asks twice is two requests";

    EXPECT_EQ(objectKindOf("video/mp4", "mp3"), ObjectKind::video) << "the claimed type first";
    EXPECT_EQ(objectKindOf("Audio/x", ""), ObjectKind::audio);
    EXPECT_EQ(objectKindOf("application/octet-stream", "WMA"), ObjectKind::audio);
    EXPECT_EQ(objectKindOf("", "webm"), ObjectKind::video);
    EXPECT_EQ(objectKindOf("application/x-shockwave-flash", "swf"), ObjectKind::unknown);
}

}  // namespace
}  // namespace zab
