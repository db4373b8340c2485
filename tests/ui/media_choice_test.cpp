#include "ui/media_choice.h"

#include <gtest/gtest.h>

namespace zab {
namespace {

using enum ChoiceOrigin;

/// Page 7 offers four entries and requested objects; in page 8 links are selected.
struct Lists {
    Lists() {
        auto& media = pages.open({{nullptr, 7}, "", 0, 77}).media;
        media.offer({.link = "hlstozab://a", .extra = "360", .height = 360});
        media.offer({.link = "low.mp4", .extra = "240", .height = 240});
        media.offer({.link = "hlstozab://a", .extra = "720", .height = 720});
        media.offer({.link = "kept.mp4", .extra = "1080", .height = 1080, .inMenu = false});
        for (const std::uint64_t document : {9, 7})
            requests.examined.add({.url = "o.mp4",
                                   .pageUrl = "page",
                                   .referrer = "referrer",
                                   .cookies = "cookies",
                                   .userAgent = "agent",
                                   .authorization = "Basic dTpw",
                                   .description = "description",
                                   .documentId = document});
        for (const char* url : {"http://cdn/file.mp3", "low.mp4"})
            requests.requested.add({.url = url, .documentId = 7});
    }
    RequestLists requests;
    MediaPages pages;
    SelectedLinks selection{8, "list", 88, {"1.zip", "2.zip"}, 0};
    ChoiceLists all{requests, pages, selection};
};

/// The texts of a transfer, in one.
std::string textsOf(const TransferRecord& record) {
    std::string texts;
    for (const auto* text :
         {&record.url, &record.secondUrl, &record.extraData, &record.description, &record.typeHint,
          &record.pageUrl, &record.pageTitle, &record.referrer, &record.cookies, &record.cookiesFrom,
          &record.userAgent, &record.user, &record.password})
        texts += *text + '|';
    return texts;
}

TEST(MediaChoice, NamesEntriesThenWhatThePageRequested) {
    Lists lists;
    const struct {
        const char16_t *url, *page;
        ChoiceOrigin origin;
        WindowHandle controller;
        const char* media;  // address and height of each
        const char* why;
    } rows[] = {
        {u"hlstozab://a", u"7", pageController, 77, "hlstozab://a 360; ", "the first of its link"},
        {u"hlstozab://a#2", u"7", pageController, 77, "hlstozab://a 720; ", "the second"},
        {u"hlstozab://a#3", u"7", pageController, 77, "", "there is no third"},
        {u"low.mp4", u"7", pageController, 77, "low.mp4 240; ", "an entry, before a request of its address"},
        {u"!ALL!", u"7", pageController, 77, "hlstozab://a 720; hlstozab://a 360; low.mp4 240; ",
         "what the menu shows, best first"},
        {u"kept.mp4", u"7", pageController, 77, "kept.mp4 1080; ", "kept for whoever asks for it by name"},
        {u"!ALL!", u"8", pageController, 0, "", "not the selection: that has its own window"},
        {u"!ALL!", u"8", processController, 88, "1.zip ; 2.zip ; ", "the whole selection"},
        {u"2.zip", u"8", processController, 88, "2.zip ; ", "one of it"},
        {u"2.zip", u"7", processController, 77, "", "of another page"},
        {u"o.mp4", u"7", processController, 77, "o.mp4 ; ", "a request"},
        {u"o.mp4", u"8", pageController, 0, "", "another page's"},
        {u"o.mp4", u"", pageController, 0, "", "no page told: not any page's"},
        {u"x/[[IMPORT]]/cdn/file.mp3", u"7", pageController, 77, "http://cdn/file.mp3 ; ", "by a marker"},
        {u"", u"7", pageController, 77, "", "nothing asked for"},
    };
    for (const auto& row : rows) {
        MediaRequest request;
        request.mediaUrl = row.url;
        request.pageIdentity = row.page;
        const ChosenMedia chosen = chosenMedia(request, row.origin, lists.all);
        EXPECT_EQ(chosen.controller, row.controller) << row.why;
        EXPECT_EQ(chosen.pageKnown, row.controller != 0) << row.why;
        std::string media;
        for (std::size_t i = 0; i < chosen.count(); ++i)
            media += chosen.transfer(i).url + " " + chosen.transfer(i).extraData + "; ";
        EXPECT_EQ(media, row.media) << row.why;
    }
}

TEST(MediaChoice, GoesOutWhole) {
    const MediaEntry whole{.link = "link",
                           .secondUrl = "second",
                           .extra = "0",
                           .description = "Film 720p",
                           .extension = "FLV",
                           .size = 5'000'000'000,
                           .page = {7, "page", "title", "referrer", "cookies", "agent", "namedBy"}};
    EXPECT_EQ(textsOf(transferOf(whole)),
              "link|second|0|Film 720p|FLV|page|title|referrer|cookies|namedBy|agent|||");
    EXPECT_EQ(transferOf(whole).sizeBytes, whole.size);
    const MediaEntry page[] = {{.link = "old"}, {.link = "middle"}, whole};
    const auto newest = newestTransfers(page, 2);
    ASSERT_EQ(newest.size(), 2u);
    EXPECT_EQ(newest[0].typeHint, "flv");
    EXPECT_EQ(newest[1].url, "middle");

    Lists lists;
    MediaRequest request = decodeMediaRequest({});
    request.mediaUrl = u"o.mp4";
    request.pageIdentity = u"7";
    EXPECT_EQ(textsOf(chosenMedia(request, pageController, lists.all).transfer(0)),
              "o.mp4|||description|flv|page||referrer|cookies||agent|u|p|")
        << "what is not told is what the browser sent";
    request.pageUrl = u"told";
    request.description = u"caf\u00E9";
    request.cookies = u"c=told";
    request.referrer = u"from";
    EXPECT_EQ(textsOf(chosenMedia(request, pageController, lists.all).transfer(0)),
              "o.mp4|||caf\xC3\xA9|flv|page||from|c=told||agent|u|p|")
        << "whose cookies travel is not for the asker to say";
}

TEST(MediaChoice, AudioIsTold) {
    const auto isAudio = [](const char16_t* extension, const char16_t* stream) {
        MediaRequest request;
        request.extension = extension;
        request.streamName = stream;
        return requestedKind(request) == ObjectKind::audio;
    };
    EXPECT_TRUE(isAudio(u"MP3", u"") && isAudio(u"flv", u"mp3:a"));
    EXPECT_FALSE(isAudio(u"m4a", u"") || isAudio(u"flv", u"a mp3:"));
}

}  // namespace
}  // namespace zab
