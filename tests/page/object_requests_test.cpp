#include "page/object_requests.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

OBJECTREQUESTSARRAY_ITEM request(std::string url, std::string referrer = {}, std::uint64_t documentId = 0,
                                 nsISupports* document = nullptr) {
    OBJECTREQUESTSARRAY_ITEM record;
    record.url = std::move(url);
    record.referrer = std::move(referrer);
    record.documentId = documentId;
    record.document = document;
    return record;
}

std::string firstReferrer(CObjectRequestsArray& list, std::string_view url) {
    const auto* found = list.find(url);
    return found == nullptr ? "none" : found->referrer;
}

TEST(ObjectRequests, TheOldestOfEqualUrlsCounts) {
    CObjectRequestsArray list;
    list.add(request("http://h/b", "1"));
    list.add(request("http://h/a", "2"));
    list.add(request("http://h/a", "3"));
    EXPECT_EQ(firstReferrer(list, "http://h/a"), "2");
    EXPECT_EQ(firstReferrer(list, "http://h/A"), "none") << "exact";
    EXPECT_EQ(firstReferrer(list, "http://h/"), "none") << "whole";

    list.renameFirst("http://h/b", "http://h/a");
    EXPECT_EQ(firstReferrer(list, "http://h/a"), "1") << "a renamed record keeps its age";
    EXPECT_EQ(firstReferrer(list, "http://h/b"), "none");
    list.renameFirst("http://h/none", "http://h/c");
    EXPECT_EQ(list.count(), 3u);

    list.removeFirst("http://h/a");
    EXPECT_EQ(firstReferrer(list, "http://h/a"), "2");
    list.removeFirst("http://h/a");
    list.removeFirst("http://h/a");
    list.removeFirst("http://h/a");
    EXPECT_EQ(list.count(), 0u);
}

TEST(ObjectRequests, AreRemovedWithTheirDocument) {
    int pages[2];
    const auto page = [&](int i) { return reinterpret_cast<nsISupports*>(&pages[i]); };
    CObjectRequestsArray list;
    list.add(request("none", "none", 0, nullptr));
    list.add(request("object", "object", 0, page(0)));
    list.add(request("id", "id", 7, page(1)));
    list.removeOfDocument(nullptr, 0);
    EXPECT_EQ(list.count(), 3u) << "no document names none";
    list.removeOfDocument(page(0), 7);
    EXPECT_EQ(list.count(), 1u) << "either the object or the ID is enough";
    EXPECT_EQ(firstReferrer(list, "none"), "none");
    list.add(request("none", "second", 8));
    EXPECT_EQ(list.find("none", 8)->referrer, "second") << "of its own document";
    EXPECT_EQ(list.find("none", 0)->referrer, "none") << "of any";
    EXPECT_EQ(list.find("none", 9), nullptr);
    EXPECT_EQ(list.find("id"), nullptr);
}

TEST(ObjectRequests, TheOldestGoFirst) {
    CObjectRequestsArray list;
    for (std::size_t i = 0; i <= CObjectRequestsArray::kMostRecords; ++i) list.add(request(std::to_string(i)));
    EXPECT_EQ(list.count(), CObjectRequestsArray::kMostRecords);
    EXPECT_EQ(list.find("0"), nullptr);
    EXPECT_NE(list.find("1"), nullptr);

    auto posted = request("posted");
    posted.postBody.assign(CObjectRequestsArray::kMostPostBytes / 2, 'x');
    for (int i = 0; i < 2; ++i) list.add(posted);
    EXPECT_EQ(list.count(), CObjectRequestsArray::kMostRecords) << "exactly 8 MiB is held";
    posted.postBody = "x";
    list.add(posted);
    EXPECT_EQ(list.count(), 2u) << "one byte more: all that is older than the first large body goes with it";
    list.removeFirst("posted");
    posted.postBody.assign(CObjectRequestsArray::kMostPostBytes / 2, 'x');
    list.add(posted);
    EXPECT_EQ(list.count(), 2u) << "what was removed no longer counts";

    const std::string half(CObjectRequestsArray::kMostTextBytes / 2, 'x');
    CObjectRequestsArray again;
    for (int i = 0; i < 6; ++i) {
        auto large = request("http://h/" + std::to_string(i), half, 7);
        large.postBody.assign(CObjectRequestsArray::kMostPostBytes / 2, 'x');
        again.add(std::move(large));
        again.renameFirst("http://h/" + std::to_string(i), "renamed");
        i % 2 == 0 ? again.removeFirst("renamed") : again.removeOfDocument(nullptr, 7);
    }
    for (int i = 0; i < 3; ++i)
        again.add(request("small", std::string(CObjectRequestsArray::kMostTextBytes / 4, 'x')));
    EXPECT_EQ(again.count(), 3u) << "what was given back leaves its whole room";

    CObjectRequestsArray full;
    for (const char* url : {"a", "b"}) full.add(request(url, half.substr(1)));
    EXPECT_EQ(full.count(), 2u) << "exactly 8 MiB of text is held";
    full.renameFirst("b", "bb");
    EXPECT_EQ(full.count(), 1u) << "a new URL counts like an old one";
    list.add(request(half + half, half));
    EXPECT_EQ(list.count(), 1u) << "and the newest record stays, whatever it has";
    EXPECT_NE(list.find(half + half), nullptr);
}

TEST(ObjectRequests, ThePolicysRecordGivesWayToThatOfTheRequest) {
    CObjectRequestsArray list;
    auto told = request("http://h/a", "", 17), asked = request("http://h/a", "asked");
    told.kind = ObjectKind::audio;
    told.fromPolicy = true;
    list.add(told);
    list.addRequest(asked);
    ASSERT_EQ(list.count(), 1u);
    const auto* record = list.find("http://h/a");
    ASSERT_TRUE(record);
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
