#include <gtest/gtest.h>

#include "intercept/decision.h"
#include "intercept/load_types.h"
#include "page/object_requests.h"
#include "transfer/transfer_record.h"

using namespace zab;

namespace {

GivenSettings settingsWith(void (*change)(GivenSettings&)) {
    GivenSettings settings;
    settings.extensionList = "zip rar";
    change(settings);
    return settings;
}

TEST(Policy, TakesWhatTheUserForcesOrClicks) {
    constexpr auto nothing = [](GivenSettings&) {};
    constexpr auto force = [](GivenSettings& s) { s.forceKey = true; };
    constexpr auto prevent = [](GivenSettings& s) { s.preventKey = true; };
    constexpr auto off = [](GivenSettings& s) { s.integration = false; };
    constexpr auto except = [](GivenSettings& s) { s.exceptionList = "h"; };
    const struct {
        PolicyFacts facts;
        void (*change)(GivenSettings&);
        Outcome outcome;
        Reason reason;
        const char* why;
    } rows[] = {
        {{6, "http://h/a"}, force, Outcome::transfer, Reason::forced, "whatever it is"},
        {{6, "ftp://h/a"}, force, Outcome::transfer, Reason::forced, "FTP too"},
        {{6, "about:blank"}, force, Outcome::browser, Reason::partOfPage, "nothing that can be fetched"},
        {{7, "http://h/a"}, force, Outcome::browser, Reason::partOfPage, "a frame is no page"},
        {{3, "http://h/a.zip", true, true}, force, Outcome::browser, Reason::partOfPage, "nor is an image"},
        {{6, "http://h/a"},
         [](GivenSettings& s) { s.forceKey = s.preventKey = true; },
         Outcome::browser,
         Reason::notForced,
         "the prevent key is stronger"},
        {{6, "http://h/a"},
         [](GivenSettings& s) {
             s.forceKey = true;
             s.integration = false;
         },
         Outcome::browser,
         Reason::notForced,
         "so is the switch"},
        {{6, "http://h/a"},
         [](GivenSettings& s) {
             s.forceKey = true;
             s.exceptionList = "h";
         },
         Outcome::transfer,
         Reason::forced,
         "an excepted server is not"},
        {{6, "http://h/a.zip", true},
         nothing,
         Outcome::browser,
         Reason::notForced,
         "newer browsers wait for the response"},
        {{6, "http://h/a.zip?x#y", true, true},
         nothing,
         Outcome::transfer,
         Reason::caughtAsDocument,
         "a click on a file of the list"},
        {{6, "http://h/a.zip", false, true}, nothing, Outcome::browser, Reason::notClicked, "no click"},
        {{6, "http://h/zip", true, true}, nothing, Outcome::browser, Reason::withoutExtension, "no extension"},
        {{6, "http://h/a.htm?b.zip", true, true},
         nothing,
         Outcome::browser,
         Reason::notInCatchList,
         "a query names no file"},
        {{6, "http://h/a.zip", true, true}, prevent, Outcome::browser, Reason::preventKeyHeld, "prevented"},
        {{6, "http://h/a.zip", true, true}, off, Outcome::browser, Reason::integrationOff, "switched off"},
        {{6, "http://h/a.zip", true, true}, except, Outcome::browser, Reason::serverExcepted, "excepted"},
    };
    for (const auto& row : rows) {
        const Decision decision = decidePolicy(row.facts, settingsWith(row.change));
        EXPECT_EQ(decision.outcome, row.outcome) << row.why;
        EXPECT_EQ(decision.reason, row.reason) << row.why;
        EXPECT_EQ(decision.flags, row.outcome == Outcome::transfer ? transfer_flags::kForced : 0u) << row.why;
    }
}

TEST(Policy, GuessesTheKindOfAnObject) {
    EXPECT_EQ(objectKindOf("video/mp4", "mp3"), ObjectKind::video) << "the claimed type first";
    EXPECT_EQ(objectKindOf("Audio/x", ""), ObjectKind::audio);
    EXPECT_EQ(objectKindOf("application/octet-stream", "WMA"), ObjectKind::audio);
    EXPECT_EQ(objectKindOf("", "webm"), ObjectKind::video);
    EXPECT_EQ(objectKindOf("application/x-shockwave-flash", "swf"), ObjectKind::unknown);
}

TEST(Policy, ItsRecordGivesWayToThatOfTheRequest) {
    CObjectRequestsArray list;
    OBJECTREQUESTSARRAY_ITEM told, request;
    told.url = request.url = "http://h/a";
    told.documentId = 17;
    told.kind = ObjectKind::audio;
    told.fromPolicy = true;
    request.cookies = "c=1";
    list.add(told);
    list.addRequest(request);
    ASSERT_EQ(list.count(), 1u);
    const auto* record = list.find("http://h/a");
    ASSERT_TRUE(record);
    EXPECT_EQ(record->cookies, "c=1");
    EXPECT_EQ(record->kind, ObjectKind::audio);
    EXPECT_EQ(record->documentId, 17u);
    list.addRequest(request);
    EXPECT_EQ(list.count(), 2u) << "a page that asks twice is two requests";
}

}  // namespace
