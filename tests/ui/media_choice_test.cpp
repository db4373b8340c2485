#include "ui/media_choice.h"

#include <gtest/gtest.h>

#include "binding/utf.h"

namespace zab {
namespace {

using enum ChoiceOrigin;

MediaEntry entry(std::string link, std::uint32_t height = 0) {
    MediaEntry result;
    result.link = std::move(link);
    result.extra = std::to_string(height);
    result.height = height;
    return result;
}

OBJECTREQUESTSARRAY_ITEM object(std::string url, std::uint64_t document) {
    OBJECTREQUESTSARRAY_ITEM item;
    item.url = std::move(url);
    item.documentId = document;
    item.pageUrl = "http://h.example/page";
    item.cookies = "c=browser";
    item.referrer = "http://h.example/from";
    item.userAgent = "agent";
    item.authorization = "Basic dTpw";
    return item;
}

/// Page 7 offers three entries and requested objects; in page 8 links are selected.
struct Lists {
    Lists() {
        auto& page =
            pages.open({.document = {nullptr, 7}, .url = "http://h.example/", .controller = 77});
        page.media.offer(entry("hlstozab://http://h.example/a.m3u8", 360));
        page.media.offer(entry("http://h.example/low.mp4", 240));
        page.media.offer(entry("hlstozab://http://h.example/a.m3u8", 720));
        MediaEntry kept = entry("http://h.example/kept.mp4", 1080);
        kept.inMenu = false;
        page.media.offer(kept);
        for (const std::uint64_t document : {9, 7})
            requests.examined.add(object("http://h.example/o.mp4", document));
        requests.requested.add(object("http://cdn/file.mp3", 7));
        requests.requested.add(object("http://h.example/low.mp4", 7));
        selection = {8, "http://h.example/list", 88, {"http://h.example/1.zip", "http://h.example/2.zip"}, 0};
    }
    RequestLists requests;
    MediaPages pages;
    SelectedLinks selection;
    ChoiceLists all{requests, pages, selection};
};

TEST(MediaChoice, NamesEntriesThenWhatThePageRequested) {
    Lists lists;
    // "~" in the table: the host and its scheme.
    const auto whole = [](std::string text) {
        for (auto mark = text.find('~'); mark != text.npos; mark = text.find('~'))
            text.replace(mark, 1, "http://h.example/");
        return text;
    };
    const struct {
        const char* url;
        const char16_t* page;
        ChoiceOrigin origin;
        WindowHandle controller;
        const char* media;  // address and height of each
        const char* why;
    } rows[] = {
        {"hlstozab://~a.m3u8", u"7", pageController, 77, "hlstozab://~a.m3u8 360; ", "the first of its link"},
        {"hlstozab://~a.m3u8#2", u"7", pageController, 77, "hlstozab://~a.m3u8 720; ", "the second"},
        {"hlstozab://~a.m3u8#3", u"7", pageController, 77, "", "there is no third"},
        {"~low.mp4", u"7", pageController, 77, "~low.mp4 240; ", "an entry, before a request of its address"},
        {"!ALL!", u"7", pageController, 77, "hlstozab://~a.m3u8 720; hlstozab://~a.m3u8 360; ~low.mp4 240; ",
         "what the menu shows, best first"},
        {"~kept.mp4", u"7", pageController, 77, "~kept.mp4 1080; ", "kept for whoever asks for it by name"},
        {"!ALL!", u"8", pageController, 0, "", "not the selection: that has its own window"},
        {"!ALL!", u"8", processController, 88, "~1.zip ; ~2.zip ; ", "the whole selection"},
        {"~2.zip", u"8", processController, 88, "~2.zip ; ", "one of it"},
        {"~2.zip", u"7", processController, 77, "", "of another page"},
        {"~o.mp4", u"7", processController, 77, "~o.mp4 ; ", "a request"},
        {"~o.mp4", u"8", pageController, 0, "", "another page's"},
        {"~o.mp4", u"", pageController, 0, "", "no page told: not any page's"},
        {"rtmp://h/[[IMPORT]]/cdn/file.mp3", u"7", pageController, 77, "http://cdn/file.mp3 ; ",
         "known under the address behind its marker"},
        {"~o.mp4/[[DYNAMIC]]/2", u"7", pageController, 77, "~o.mp4 ; ", "and before it"},
        {"", u"7", pageController, 77, "", "nothing asked for"},
    };
    for (const auto& row : rows) {
        MediaRequest request;
        request.mediaUrl = utf16FromUtf8(whole(row.url));
        request.pageIdentity = row.page;
        const ChosenMedia chosen = chosenMedia(request, row.origin, lists.all);
        EXPECT_EQ(chosen.controller, row.controller) << row.why;
        std::string media;
        for (std::size_t i = 0; i < chosen.count(); ++i)
            media += chosen.transfer(i).url + " " + chosen.transfer(i).extraData + "; ";
        EXPECT_EQ(media, whole(row.media)) << row.why;
    }
}

TEST(MediaChoice, ARequestTellsMoreThanTheBrowserKnew) {
    Lists lists;
    MediaRequest request = decodeMediaRequest({});
    request.mediaUrl = u"http://h.example/o.mp4";
    request.pageIdentity = u"7";
    request.pageUrl = u"http://h.example/told";
    request.description = u"caf\u00E9";
    request.cookies = u"c=told";
    const ChosenMedia media = chosenMedia(request, pageController, lists.all);
    ASSERT_EQ(media.count(), 1u);
    const TransferRecord record = media.transfer(0);
    EXPECT_EQ(record.pageUrl, "http://h.example/page") << "whose cookies travel is not for the asker to say";
    EXPECT_EQ(record.description, "caf\xC3\xA9");
    EXPECT_EQ(record.cookies, "c=told");
    EXPECT_EQ(record.referrer, "http://h.example/from") << "what is not told is what the browser sent";
    EXPECT_EQ(record.userAgent, "agent");
    EXPECT_EQ(record.user + ":" + record.password, "u:p");
    EXPECT_EQ(record.typeHint, "flv");
    EXPECT_EQ(record.flags, 0u);
}

TEST(MediaChoice, AudioIsTold) {
    const struct {
        const char16_t *extension, *stream;
        ObjectKind kind;
    } rows[] = {{u"MP3", u"", ObjectKind::audio},
                {u"wma", u"", ObjectKind::audio},
                {u"m4a", u"", ObjectKind::video},
                {u"flv", u"mp3:a", ObjectKind::audio},
                {u"flv", u"a mp3:", ObjectKind::video}};
    for (const auto& row : rows) {
        MediaRequest request;
        request.extension = row.extension;
        request.streamName = row.stream;
        EXPECT_EQ(requestedKind(request), row.kind);
    }
}

TEST(MediaChoice, AnEntryGoesOutWhole) {
    MediaEntry whole = entry("hls2tozab://http://h.example/v.m3u8");
    whole.secondUrl = "http://h.example/a.m3u8";
    whole.extra = "<x/>";
    whole.description = "Film 720p";
    whole.extension = "FLV";
    whole.size = 5'000'000'000;
    whole.page = {7, "page", "title", "referrer", "c=1", "agent", "http://h.example/"};
    const TransferRecord record = transferOf(whole);
    const std::string told[] = {record.url,      record.secondUrl, record.extraData, record.description,
                                record.typeHint, record.pageUrl,   record.pageTitle, record.referrer,
                                record.cookies,  record.userAgent};
    const std::string expected[] = {whole.link, whole.secondUrl, "<x/>",     "Film 720p", "FLV",
                                    "page",     "title",         "referrer", "c=1",       "agent"};
    for (std::size_t i = 0; i < std::size(expected); ++i) EXPECT_EQ(told[i], expected[i]);
    EXPECT_EQ(record.sizeBytes, whole.size);
    EXPECT_EQ(record.flags, 0u);
    EXPECT_FALSE(record.bodyOffered);

    const MediaEntry page[] = {entry("old"), entry("middle"), whole};
    const auto newest = newestTransfers(page, 2);
    ASSERT_EQ(newest.size(), 2u);
    EXPECT_EQ(newest[0].typeHint, "flv");
    EXPECT_EQ(newest[1].url, "middle");
}

}  // namespace
}  // namespace zab
