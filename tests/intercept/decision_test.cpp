#include "intercept/decision.h"

#include <gtest/gtest.h>

#include "readings.h"

namespace zab {
namespace {

using zabtest::expectReadings;
using zabtest::ReadingOf;

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

/// With the integration off, and a data file that names a server.
struct OffAndSkipping : SettingsView {
    [[nodiscard]] std::optional<std::string> extensions() const override { return "mp4"; }
    [[nodiscard]] bool integrationOn() const override { return false; }
    [[nodiscard]] CExceptionServersList exceptionServers() const override { return CExceptionServersList(""); }
    [[nodiscard]] bool preventKeyHeld() const override { return false; }
    [[nodiscard]] bool forceKeyHeld() const override { return false; }
    [[nodiscard]] bool listenSkipped(std::string_view host) const override { return host == "skip"; }
    [[nodiscard]] std::uint32_t panelViewFlag() const override { return 1; }
};

struct Response {
    std::string_view url, type;
    std::uint32_t loadFlags = kEmbedded;
    std::string_view fileName = {}, typeName = {};
    std::int64_t length = 0;
    bool isAttachment = false, isEncoded = false;

    [[nodiscard]] ResponseFacts facts() const {
        return {url, 200, loadFlags, fileName, typeName, type, length, isAttachment, isEncoded};
    }
};

TEST(Decide, WhichResponsesAreTaken) {
    const ReadingOf<Reason, Response> rows[] = {
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
        {{"http://h/a.iso?x", "text/plain", kEmbedded, "", "", 256'001, false, true},
         Reason::partOfPage,
         "packed"},

        {{"http://h/a.zip?x#y", "", kFrame}, Reason::caughtAsDocument, "a link that was opened in a frame"},
        {{"http://h/a.rar.01", "", kTop}, Reason::caughtAsDocument, "a numbered part"},
        {{"http://h/blob/a.zip", "Text/HTML", kTop}, Reason::page, "a page about a file is a page"},
        {{"http://h/File:a.zip", "application/xhtml+xml", kTop}, Reason::page, "of either kind"},
        {{"http://h.zip", "", kTop}, Reason::withoutExtension, "a host is no file"},
        {{"http://h/a.zip", "", kTopLevelLoad}, Reason::partOfPage, "the document flag decides"},
    };
    const GivenSettings settings = settingsWith("");
    const auto read = [&settings](const Response& response) {
        const Decision decision = decide(response.facts(), settings);
        const bool caught =
            decision.reason >= Reason::caughtByFileName && decision.reason <= Reason::caughtAsDocument;
        const bool named = !response.fileName.empty();  // a name of Content-Type is not the server's choice
        EXPECT_EQ(decision.outcome == Outcome::transfer, caught) << response.url;
        EXPECT_EQ(decision.flags, !caught ? 0u : named ? 0x1008u : 8u) << response.url;
        return decision.reason;
    };
    expectReadings(read, rows);
}

TEST(Decide, SettingsSpareTransfersAndNothingElse) {
    const ResponseFacts video = Response{"http://h/a.mp4", "video/mp4", kFrame, "", "", 300'000}.facts();
    const std::pair<const char*, Reason> rows[] = {{"o", Reason::integrationOff},
                                                   {"p", Reason::preventKeyHeld},
                                                   {"x", Reason::serverExcepted},
                                                   {"b", Reason::noCatchList},
                                                   {"n", Reason::noCatchList}};
    for (const auto& [letters, reason] : rows) {
        const Decision spared = decide(video, settingsWith(letters));
        EXPECT_EQ(spared.outcome, Outcome::browser) << letters;
        EXPECT_EQ(spared.reason, reason) << letters;
        EXPECT_TRUE(spared.offer) << "what is not taken is still media";
    }
    const GivenSettings settings = settingsWith("");
    EXPECT_EQ(decide(video, settings).outcome, Outcome::transfer);
    EXPECT_FALSE(decide(video, settings).offer) << "what is taken is not offered too";
    const Decision failed = afterFailedTransfer(video, settings);
    EXPECT_EQ(failed.reason, Reason::transferFailed);
    EXPECT_TRUE(failed.offer) << "when the transfer failed it is";
}

TEST(Decide, ExtensionOfTheRecord) {
    const ReadingOf<std::string_view, Response> rows[] = {
        {{"http://h/a.ZIP", "application/zip"}, "ZIP", "equal in any case: as the address has it"},
        {{"http://h/a.bin", "application/zip"}, "ZIP", "the type replaces it"},
        {{"http://h/a.bin", "video/x-flv"}, "bin", "but not FLV"},
        {{"http://h/a.PHP", "video/x-flv"}, "FLV", "a dynamic page becomes FLV"},
        {{"http://h/a.php", ""}, "", "or nothing"},
        {{"http://h/a.php5", ""}, "php5", "whole extensions only"},
        {{"http://h/a.bin", "", kEmbedded, "b.php"}, "php", "a file name keeps it"},
        {{"http://h/a.bin", "application/zip", kEmbedded, "b"}, "ZIP", "a file name without one has none"},
        {{"http://h/a.zip", "", kEmbedded, "b"}, "", "the address is not asked then"},
    };
    const GivenSettings settings = settingsWith("");
    const auto read = [&](const Response& response) { return decide(response.facts(), settings).extension; };
    expectReadings(read, rows);
}

TEST(Decide, WhatIsOfferedAndWhatIsListenedTo) {
    static constexpr std::string_view kOffered = "offered", kSniffed = "sniff", kNeither{};
    const ReadingOf<std::string_view, Response> rows[] = {
        {{"http://h/a.MP3", "audio/mpeg"}, kOffered, "media of a page, and then not sniffed"},
        {{"http://h/a.mp3", "audio/mpeg", kTop}, kSniffed, "a top-level load has no page"},
        {{"http://h/a.txt", "video/x-flv"}, kOffered, "class FLV keeps the extension, but counts"},
        {{"http://h/a.FLV?x", "text/plain"}, kOffered, "so does the path"},
        {{"http://h/a.mpa", "text/css"}, kNeither, "the type replaced the extension"},
        {{"http://h/b.mp4", "", kFrame, "x.bin", "", 9}, kSniffed, "the name has the say"},
        {{"http://h/a.mp4", "", kEmbedded, "", "", 255'999}, kSniffed, "a small MP4"},
        {{"http://h/a.mp4", "", kEmbedded, "", "", 256'000}, kOffered, "a byte more"},
        {{"http://h/a.mp4", "", kEmbedded, "", "", 0}, kOffered, "an unknown length is not small"},
        {{"http://h/a.mp4", "", kEmbedded, "", "", 9, true}, kOffered, "nor an attachment"},
        {{"http://facebook.com/ajax/x.ts", ""}, "Facebook", "a listener speaks for it"},
        {{"http://r1.googlevideo.com/videoplayback?itag=18", "video/mp4"}, kNeither, "a stream"},
        {{"http://skip/a.m3u8", ""}, kNeither, "a server that gets no listener"},
        {{"http://skip/a.ts", ""}, kOffered, "its files are offered all the same"},
    };
    const auto read = [](const Response& response) {
        const Decision decision = decide(response.facts(), OffAndSkipping());
        EXPECT_EQ(decision.outcome == Outcome::listen, decision.listener != MediaKind::none) << response.url;
        return decision.offer ? kOffered : mediaKindName(decision.listener);
    };
    expectReadings(read, rows);
}

TEST(Decide, EveryStatusHasItsExamination) {
    for (const std::uint32_t status : {200u, 206u}) EXPECT_EQ(examinationOf(status), Examination::content);
    for (const std::uint32_t status : {301u, 302u, 303u, 307u})
        EXPECT_EQ(examinationOf(status), Examination::redirect);
    for (const std::uint32_t status : {0u, 201u, 304u, 308u, 404u})
        EXPECT_EQ(examinationOf(status), Examination::nothing);
    ResponseFacts facts = Response{"http://h/a.zip", "application/zip", kTop, "a.zip", "", 5}.facts();
    facts.status = 404;
    const Decision decision = decide(facts, settingsWith(""));
    EXPECT_EQ(decision.outcome, Outcome::browser);
    EXPECT_NE(sentenceOf(decision).find("status is 404;"), std::string::npos);
}

TEST(Decide, BeforeThereIsAResponse) {
    const auto request = [](std::string_view url, std::uint32_t loadFlags, const char* settings) {
        return decideRequest({url, loadFlags}, settingsWith(settings));
    };
    const auto policy = [](const PolicyFacts& facts, const char* settings) {
        return decidePolicy(facts, settingsWith(settings));
    };
    const auto redirect = [](std::string_view location) { return decideRedirect(location, settingsWith("x")); };
    const ReadingOf<Reason, Decision> rows[] = {
        {request("HTTPS://h/page", kTop, "fnx"), Reason::forced, "the force keys take anything"},
        {request("ftp://h/page", kTopLevelLoad, "f"), Reason::forced, "FTP too"},
        {request("http://h/", kFrame, "f"), Reason::notForced, "only what is loaded on top"},
        {request("httpx://h/", kTop, "f"), Reason::notForced, "another scheme"},
        {request("http://h/", kTop, "fo"), Reason::notForced, "integration off"},
        {request("http://h/", kTop, "fp"), Reason::notForced, "the prevent keys win"},

        {policy({6, "http://h/a"}, "fx"), Reason::forced, "whatever it is, whatever server has it"},
        {policy({6, "about:blank"}, "f"), Reason::partOfPage, "nothing that can be fetched"},
        {policy({7, "http://h/a"}, "f"), Reason::partOfPage, "a frame is no page"},
        {policy({6, "http://h/a.zip", true}, ""), Reason::notForced, "newer browsers wait for the response"},
        {policy({6, "http://h/a.zip?x#y", true, true}, ""), Reason::caughtAsDocument, "a click on a file"},
        {policy({6, "http://h/a.zip", false, true}, ""), Reason::notClicked, "no click"},
        {policy({6, "http://h/zip", true, true}, ""), Reason::withoutExtension, "no extension"},
        {policy({6, "http://h/a.htm?b.zip", true, true}, ""), Reason::notInCatchList, "a query names no file"},
        {policy({6, "http://h/a.zip", true, true}, "n"), Reason::noCatchList, "no list"},
        {policy({6, "http://h/a.zip", true, true}, "o"), Reason::integrationOff, "switched off"},

        {redirect("FTP://f/a.zip"), Reason::ftpRedirectCaught, "any letter case"},
        {redirect("ftp://f/a.rar.001"), Reason::notInCatchList, "no numbered parts"},
        {redirect("ftp://f/a.zip?x"), Reason::notInCatchList, "a mark"},
        {redirect("ftp://f.zip/a"), Reason::withoutExtension, "of the host"},
        {redirect("ftp://h/a.zip"), Reason::serverExcepted, "an excepted server"},
        {redirect("sftp://f/a.zip"), Reason::redirectFollowed, "another scheme: the browser follows"},
        {redirect(""), Reason::redirectWithoutLocation, "nowhere to go"},
    };
    const auto reason = [](const Decision& decision) {
        const bool taken = decision.reason == Reason::forced || decision.reason == Reason::caughtAsDocument ||
                           decision.reason == Reason::ftpRedirectCaught;
        EXPECT_EQ(decision.outcome, taken ? Outcome::transfer : Outcome::browser) << sentenceOf(decision);
        EXPECT_EQ(decision.flags, taken ? 0x804u : 0u) << sentenceOf(decision);
        return decision.reason;
    };
    expectReadings(reason, rows);
    EXPECT_EQ(request(kSentinelUrl, kTop, "f").outcome, Outcome::cancel);
}

TEST(Sentences, NameTheExtensionAndNoSecret) {
    const ReadingOf<std::string, Response> rows[] = {
        {{"http://h/a.\x80mg", "", kTop}, "\x80mg", "the extension, in whatever letters"},
        {{"http://u:pass.word@h?zip", "", kEmbedded, "", "", 0, true}, "", "a piece of a password is none"},
        {{"http://h/x", "", kTop, "a.img?key=secret"}, "img", "nothing that the name drags along"},
        {{"http://h/x", "", kTop, "a.&key=secret"}, "", "not at its beginning either"},
        {{"http://h/a.aaaaaaaaaaaaaaaaa", "", kTop}, "aaaaaaaaaaaaaaaa...", "no more than a word"},
        {{"http://h/a.7\xC3\xA9zzzzzzzzzzzzz", "", kTop}, "7\xC3\xA9zzzzzzzzzzzzz", "the whole of a short one"},
    };
    const auto quoted = [](const Response& response) {
        const std::string sentence = sentenceOf(decide(response.facts(), settingsWith("")));
        const auto quote = sentence.find('\'') + 1;  // 0: there is none
        return sentence.substr(quote, quote == 0 ? 0 : sentence.find('\'', quote) - quote);
    };
    expectReadings(quoted, rows);
}

}  // namespace
}  // namespace zab
