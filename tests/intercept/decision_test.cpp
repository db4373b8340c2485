#include "intercept/decision.h"

#include <gtest/gtest.h>

#include "transfer/transfer_record.h"

namespace zab {
namespace {

/// Settings with a letter for each that is not as most users have it.
GivenSettings settingsWith(std::string_view letters) {
    const auto has = [letters](char letter) { return letters.find(letter) != letters.npos; };
    GivenSettings settings;
    if (!has('n')) settings.extensionList = has('b') ? " " : "zip rar iso mp4 m3u8";  // no list, a blank one
    settings.integration = !has('o');
    settings.preventKey = has('p');
    settings.forceKey = has('f');
    if (has('x')) settings.exceptionList = "h";
    return settings;
}

constexpr std::uint32_t kEmbedded = 0, kFrame = kDocumentLoad, kTop = kDocumentLoad | kTopLevelLoad;

/// Counts the questions that reach the registry.
struct CountedSettings : SettingsView {
    GivenSettings given = settingsWith("");
    mutable int reads = 0;

    [[nodiscard]] std::optional<std::string> extensions() const override { return ++reads, given.extensions(); }
    [[nodiscard]] bool integrationOn() const override { return ++reads, given.integrationOn(); }
    [[nodiscard]] CExceptionServersList exceptionServers() const override {
        return ++reads, given.exceptionServers();
    }
    [[nodiscard]] bool preventKeyHeld() const override { return ++reads, given.preventKeyHeld(); }
    [[nodiscard]] bool forceKeyHeld() const override { return ++reads, given.forceKeyHeld(); }
    [[nodiscard]] bool listenSkipped(std::string_view host) const override { return host == "skip"; }
    [[nodiscard]] std::uint32_t panelViewFlag() const override { return ++reads, given.panelViewFlag(); }
};

struct Response {
    std::string_view url, type;
    std::uint32_t loadFlags = kEmbedded;
    std::string_view fileName = {}, typeName = {};
    std::int64_t length = 0;
    bool isAttachment = false;

    [[nodiscard]] ResponseFacts facts() const {
        ResponseFacts facts;
        facts.url = url;
        facts.status = 200;
        facts.loadFlags = loadFlags;
        facts.fileName = fileName;
        facts.contentTypeName = typeName;
        facts.contentType = type;
        facts.contentLength = length;
        facts.isAttachment = isAttachment;
        return facts;
    }
};

TEST(Decide, WhichResponsesAreTaken) {
    const struct {
        Response response;
        Reason reason;
        const char* why;
    } rows[] = {
        {{"http://h/x", "text/html", kEmbedded, "a.zip"}, Reason::caughtByFileName, "the server named it"},
        {{"http://h/x", "", kEmbedded, "utf-8''a.rar.001"}, Reason::caughtByFileName, "numbered part"},
        {{"http://h/a.zip", "", kTop, "a.txt"}, Reason::notInCatchList, "the name outweighs the address"},
        {{"http://h/a.zip", "", kTop, "readme"}, Reason::withoutExtension, "even one without extension"},
        {{"http://h/x", "a/b", kEmbedded, "", "a.zip"}, Reason::caughtByFileName, "the type's name parameter"},
        {{"http://h/x", "a/b", kTop, "a.txt", "a.zip"}, Reason::notInCatchList, "only when there is no other"},

        {{"http://h/a.zip?x", "", kEmbedded, "", "", 0, true}, Reason::caughtByAttachmentUrl, "attachment"},
        {{"http://h/a.zip", "", kEmbedded, "", "", 0, true}, Reason::partOfPage, "only with a query"},
        {{"http://h.zip?x", "", kEmbedded, "", "", 0, true}, Reason::caughtByAttachmentUrl, "even of the host"},
        {{"http://h.zip/x?y", "", kEmbedded, "", "", 0, true}, Reason::partOfPage, "a mark behind the dot"},
        {{"http://h/a.rar.001?x", "", kEmbedded, "", "", 0, true}, Reason::notInCatchList, "no numbered parts"},

        {{"http://h/a.zip?x", "application/zip"}, Reason::caughtByType, "type and extension agree"},
        {{"http://h/a.rar?x", "application/zip"}, Reason::partOfPage, "they do not"},
        {{"http://h/a.iso?x", "Application/Octet-Stream"}, Reason::caughtByType, "a binary type"},
        {{"http://h/a.iso?x", "application/x-msdownload"}, Reason::partOfPage, "not every type of its class"},

        {{"http://h/a.iso?x", "text/plain", kEmbedded, "", "", 256'001}, Reason::caughtAsLongText, "long text"},
        {{"http://h/a.iso?x", "text/plain", kEmbedded, "", "", 256'000}, Reason::partOfPage, "a byte less"},

        {{"http://h/a.zip", "", kTop}, Reason::caughtAsDocument, "a link that was opened"},
        {{"http://h/a.zip?x#y", "", kFrame}, Reason::caughtAsDocument, "in a frame, with a query"},
        {{"http://h/a.zip#b.txt", "", kTop}, Reason::caughtAsDocument, "a fragment"},
        {{"http://h/a.rar.01", "", kTop}, Reason::caughtAsDocument, "a numbered part"},
        {{"http://h/blob/a.zip", "Text/HTML", kTop}, Reason::page, "a page about a file is a page"},
        {{"http://h/File:a.zip", "application/xhtml+xml", kTop}, Reason::page, "of either kind"},
        {{"http://h/x", "text/html", kTop, "a.zip"}, Reason::caughtByFileName, "but a named file is a file"},
        {{"http://h.zip", "", kTop}, Reason::withoutExtension, "a host is no file"},
        {{"http://h/d.zip/x", "", kTop}, Reason::withoutExtension, "nor is a folder"},
        {{"http://h/a.zip", "", kTopLevelLoad}, Reason::partOfPage, "the document flag decides"},
    };
    const GivenSettings settings = settingsWith("");
    for (const auto& row : rows) {
        const Decision decision = decide(row.response.facts(), settings);
        EXPECT_EQ(decision.reason, row.reason) << row.response.url << ": " << row.why << sentenceOf(decision);
        const bool caught = row.reason >= Reason::caughtByFileName && row.reason <= Reason::caughtAsDocument;
        EXPECT_EQ(decision.outcome == Outcome::transfer, caught) << row.response.url << ": " << row.why;
    }
}

TEST(Decide, SettingsSpareTransfersAndNothingElse) {
    const Response archive{"http://h/a.zip", "application/zip", kFrame};
    const Response video{"http://h/a.mp4", "video/mp4", kFrame, "", "", 300'000};
    const std::pair<const char*, Reason> rows[] = {{"o", Reason::integrationOff},
                                                   {"p", Reason::preventKeyHeld},
                                                   {"x", Reason::serverExcepted},
                                                   {"b", Reason::noCatchList},
                                                   {"n", Reason::noCatchList}};
    for (const auto& [letters, reason] : rows) {
        const GivenSettings settings = settingsWith(letters);
        EXPECT_EQ(decide(archive.facts(), settings).reason, reason);
        EXPECT_EQ(decide(archive.facts(), settings).outcome, Outcome::browser);
        const Decision spared = decide(video.facts(), settings);
        EXPECT_EQ(spared.reason, reason);
        EXPECT_TRUE(spared.offer) << "what is not taken is still media";
    }
    const GivenSettings settings = settingsWith("");
    EXPECT_EQ(decide(video.facts(), settings).outcome, Outcome::transfer);
    EXPECT_FALSE(decide(video.facts(), settings).offer) << "what is taken is not offered too";
    const Decision failed = afterFailedTransfer(video.facts(), settings);
    EXPECT_EQ(failed.reason, Reason::transferFailed);
    EXPECT_TRUE(failed.offer) << "when the transfer failed it is";
}

TEST(Decide, ExtensionOfTheRecord) {
    const struct {
        std::string_view url, type, fileName, extension;
        const char* why;
    } rows[] = {
        {"http://h/a.ZIP", "application/zip", "", "ZIP", "equal in any case: as the address has it"},
        {"http://h/a.bin", "application/zip", "", "ZIP", "the type replaces it"},
        {"http://h/a", "text/html", "", "html", "where there was none"},
        {"http://h/a.bin", "video/x-flv", "", "bin", "but not FLV"},
        {"http://h/a", "video/x-flv", "", "", "not even for none"},
        {"http://h/a.PHP", "video/x-flv", "", "FLV", "a dynamic page becomes FLV"},
        {"http://h/a.php", "", "", "", "or nothing"},
        {"http://h/a.php5", "", "", "php5", "whole extensions only"},
        {"http://h/a.bin", "", "b.php", "php", "a file name keeps it"},
        {"http://h/a.bin", "application/zip", "b", "ZIP", "a file name without one counts as none"},
        {"http://h/a.zip", "", "b", "", "the address is not asked then"},
    };
    const GivenSettings settings = settingsWith("");
    for (const auto& row : rows) {
        const Response response{row.url, row.type, kEmbedded, row.fileName};
        EXPECT_EQ(decide(response.facts(), settings).extension, row.extension) << row.why << ": " << row.url;
    }
}

TEST(Decide, WhatIsOfferedAndWhatIsListenedTo) {
    const struct {
        Response response;
        bool offer;
        MediaKind listener;
        const char* why;
    } rows[] = {
        {{"http://h/a.MP3", "audio/mpeg"}, true, MediaKind::none, "media of a page, and then not sniffed"},
        {{"http://h/a.mp3", "audio/mpeg", kTop}, false, MediaKind::sniff, "a top-level load has no page"},
        {{"http://h/a", "video/webm"}, true, MediaKind::none, "by its type"},
        {{"http://h/a.txt", "video/x-flv"}, true, MediaKind::none, "class FLV keeps the extension, but counts"},
        {{"http://h/a.FLV?x", "text/plain"}, true, MediaKind::none, "so does the path"},
        {{"http://h/a.mpa", "text/css"}, false, MediaKind::none, "the type replaced the extension"},
        {{"http://h/b.mp4", "", kFrame, "x.bin", "", 9}, false, MediaKind::sniff, "the name has the say"},
        {{"http://h/a.mp4", "", kEmbedded, "", "", 255'999}, false, MediaKind::sniff, "a small MP4"},
        {{"http://h/a.mp4", "", kEmbedded, "", "", 256'000}, true, MediaKind::none, "a byte more"},
        {{"http://h/a.mp4", "", kEmbedded, "", "", 0}, true, MediaKind::none, "an unknown length is not small"},
        {{"http://h/a.mp4", "", kEmbedded, "", "", 9, true}, true, MediaKind::none, "nor an attachment"},
        {{"http://h/ajax/x.ts", "video/mpegts"}, true, MediaKind::none, "not on the host of that path"},
        {{"http://facebook.com/ajax/x.ts", ""}, false, MediaKind::facebook, "a listener speaks for it"},
        {{"http://r1.googlevideo.com/videoplayback?itag=18", "video/mp4"}, false, MediaKind::none, "a stream"},
        {{"http://skip/a.m3u8", ""}, false, MediaKind::none, "a server that gets no listener"},
        {{"http://skip/a.ts", ""}, true, MediaKind::none, "its files are offered all the same"},
    };
    CountedSettings settings;
    settings.given.integration = false;
    for (const auto& row : rows) {
        const Decision decision = decide(row.response.facts(), settings);
        EXPECT_EQ(decision.offer, row.offer) << row.why;
        EXPECT_EQ(mediaKindName(decision.listener), mediaKindName(row.listener)) << row.why;
        EXPECT_EQ(decision.outcome == Outcome::listen, row.listener != MediaKind::none) << row.why;
    }
}

TEST(Decide, FlagsAndLength) {
    const GivenSettings settings = settingsWith("");
    ResponseFacts facts = Response{"http://h/a.zip", "", kTop, "", "", 77}.facts();
    facts.contentTypeName = "a.zip";
    EXPECT_EQ(decide(facts, settings).flags, 8u) << "a name of Content-Type is not the server's choice";
    EXPECT_EQ(decide(facts, settings).contentLength, 77);
    facts.isEncoded = true;
    EXPECT_EQ(decide(facts, settings).contentLength, 0) << "the length of the packed body tells nothing";
    facts.fileName = "a.zip";
    EXPECT_EQ(decide(facts, settings).flags, 0x1008u);
    facts.postBodyUnavailable = true;
    EXPECT_EQ(decide(facts, settings).flags, 0x1000008u);
}

TEST(Decide, AResponseThatNoListCouldCatchReadsNoSetting) {
    const struct {
        Response response;
        int reads;
        const char* why;
    } rows[] = {
        {{"http://h/a.png?v=1", "image/png"}, 0, "an image with a query"},
        {{"http://h/pic.php?v=a.zip", "image/jpeg"}, 0, "its extension is not that of its type"},
        {{"http://h/a.js?v=2", "application/javascript"}, 0, "a script with a query"},
        {{"http://h/a.css?v=2", "text/css"}, 1, "a list may hold \"css\": it is read once"},
        {{"http://h/page.html", "text/html", kFrame}, 0, "a page with one"},
        {{"http://h/page.html", "text/html", kTop}, 1, "on top: whether pages are read"},
        {{"http://h/a.rar.001", "", kTop}, 4, "a part: the list once, and what spares transfers"},
    };
    for (const auto& row : rows) {
        CountedSettings settings;
        static_cast<void>(decide(row.response.facts(), settings));
        EXPECT_EQ(settings.reads, row.reads) << row.why;
    }
}

TEST(Decide, EveryStatusHasItsExamination) {
    for (const std::uint32_t status : {200u, 206u}) EXPECT_EQ(examinationOf(status), Examination::content);
    for (const std::uint32_t status : {301u, 302u, 303u, 307u})
        EXPECT_EQ(examinationOf(status), Examination::redirect);
    for (const std::uint32_t status : {0u, 201u, 204u, 300u, 304u, 308u, 404u, 500u})
        EXPECT_EQ(examinationOf(status), Examination::nothing);
    ResponseFacts facts = Response{"http://h/a.zip", "application/zip", kTop, "a.zip", "", 5}.facts();
    facts.status = 404;
    const Decision decision = decide(facts, CountedSettings{});
    EXPECT_EQ(decision.outcome, Outcome::browser);
    EXPECT_EQ(decision.extension, "");
    EXPECT_EQ(decision.contentLength, 0);
    EXPECT_EQ(sentenceOf(decision),
              "The response status is 404; only responses of status 200 and 206 are caught.");
}

TEST(DecideRequest, SentinelAndForceKeys) {
    const std::string sentinel(kSentinelUrl);
    EXPECT_EQ(sentinel, "http://www.mozilla.org/thisrequestistransferredtozab.stop");
    const struct {
        std::string url;
        std::uint32_t loadFlags;
        const char* settings;
        Outcome outcome;
        const char* why;
    } rows[] = {
        {sentinel, kEmbedded, "", Outcome::cancel, "exact"},
        {sentinel + "?", kEmbedded, "", Outcome::browser, "longer"},
        {"HTTPS://h/page", kTop, "fnx", Outcome::transfer, "the force keys take anything"},
        {"ftp://h/page", kTopLevelLoad, "f", Outcome::transfer, "FTP too"},
        {"http://h/a.zip", kFrame, "f", Outcome::browser, "only what is loaded on top"},
        {"about:blank", kTop, "f", Outcome::browser, "another scheme"},
        {"httpx://h/", kTop, "f", Outcome::browser, "a longer scheme"},
        {"http://h/", kTop, "fo", Outcome::browser, "integration off"},
        {"http://h/", kTop, "fp", Outcome::browser, "the prevent keys win"},
        {"http://h/", kTop, "", Outcome::browser, "no force keys"},
    };
    for (const auto& row : rows) {
        const Decision decision = decideRequest({row.url, row.loadFlags}, settingsWith(row.settings));
        EXPECT_EQ(decision.outcome, row.outcome) << row.why;
        EXPECT_EQ(decision.flags, row.outcome == Outcome::transfer ? 0x804u : 0u) << row.why;
    }
}

TEST(DecidePolicy, TakesWhatTheUserForcesOrClicks) {
    const struct {
        PolicyFacts facts;
        const char* settings;
        Reason reason;
        const char* why;
    } rows[] = {
        {{6, "http://h/a"}, "fx", Reason::forced, "whatever it is, whatever server has it"},
        {{6, "about:blank"}, "f", Reason::partOfPage, "nothing that can be fetched"},
        {{7, "http://h/a"}, "f", Reason::partOfPage, "a frame is no page"},
        {{6, "http://h/a"}, "fp", Reason::notForced, "the prevent key is stronger"},
        {{6, "http://h/a"}, "fo", Reason::notForced, "so is the switch"},
        {{6, "http://h/a.zip", true}, "", Reason::notForced, "newer browsers wait for the response"},
        {{6, "http://h/a.zip?x#y", true, true}, "", Reason::caughtAsDocument, "a click on a file of the list"},
        {{6, "http://h/a.zip", false, true}, "", Reason::notClicked, "no click"},
        {{6, "http://h/zip", true, true}, "", Reason::withoutExtension, "no extension"},
        {{6, "http://h/a.htm?b.zip", true, true}, "", Reason::notInCatchList, "a query names no file"},
        {{6, "http://h/a.zip", true, true}, "n", Reason::noCatchList, "no list"},
        {{6, "http://h/a.zip", true, true}, "p", Reason::preventKeyHeld, "prevented"},
        {{6, "http://h/a.zip", true, true}, "o", Reason::integrationOff, "switched off"},
        {{6, "http://h/a.zip", true, true}, "x", Reason::serverExcepted, "excepted"},
    };
    for (const auto& row : rows) {
        const Decision decision = decidePolicy(row.facts, settingsWith(row.settings));
        const bool taken = row.reason == Reason::forced || row.reason == Reason::caughtAsDocument;
        EXPECT_EQ(decision.reason, row.reason) << row.why;
        EXPECT_EQ(decision.outcome, taken ? Outcome::transfer : Outcome::browser) << row.why;
        EXPECT_EQ(decision.flags, taken ? transfer_flags::kForced : 0u) << row.why;
    }
}

TEST(DecideRedirect, OnlyFtpIsTakenOver) {
    const struct {
        std::string_view location;
        Reason reason;
        const char* why;
    } rows[] = {
        {"FTP://f/a.zip", Reason::ftpRedirectCaught, "any letter case"},
        {"ftp://f/a.rar.001", Reason::notInCatchList, "no numbered parts"},
        {"ftp://f/a.zip?x", Reason::notInCatchList, "a mark"},
        {"ftp://f.zip/a", Reason::withoutExtension, "of the host"},
        {"ftp://h/a.zip", Reason::serverExcepted, "an excepted server"},
        {"http://f/a.zip", Reason::redirectFollowed, "the browser follows"},
        {"sftp://f/a.zip", Reason::redirectFollowed, "another scheme"},
        {"", Reason::redirectWithoutLocation, "nowhere to go"},
    };
    const GivenSettings settings = settingsWith("x");
    for (const auto& row : rows) {
        const Decision decision = decideRedirect(row.location, settings);
        const bool taken = row.reason == Reason::ftpRedirectCaught;
        EXPECT_EQ(decision.reason, row.reason) << row.why;
        EXPECT_EQ(decision.outcome, taken ? Outcome::transfer : Outcome::browser) << row.why;
        EXPECT_EQ(decision.flags, taken ? 0x804u : 0u) << row.why;
    }
}

TEST(Sentences, NameTheExtensionAndNoSecret) {
    const GivenSettings settings = settingsWith("");
    const struct {
        Response response;
        std::string_view quoted;
        const char* why;
    } rows[] = {
        {{"http://h/a.img", "", kTop}, "'img'", "the extension"},
        {{"http://u:pass.word@h?zip", "", kEmbedded, "", "", 0, true}, "", "a piece of a password is none"},
        {{"http://h/x", "", kTop, "a.img?key=secret"}, "'img'", "nothing that the name drags along"},
        {{"http://h/a.aaaaaaaaaaaaaaaaaaaaaaaaa", "", kTop}, "'aaaaaaaaaaaaaaaa...'", "no more than a word"},
    };
    for (const auto& row : rows) {
        const std::string sentence = sentenceOf(decide(row.response.facts(), settings));
        EXPECT_NE(sentence.find(row.quoted), std::string::npos) << row.why << ": " << sentence;
        for (const char* secret : {"word@", "secret", "key="})
            EXPECT_EQ(sentence.find(secret), std::string::npos) << row.why << ": " << sentence;
    }
}

}  // namespace
}  // namespace zab
