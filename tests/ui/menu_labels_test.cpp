#include "ui/menu_labels.h"

#include <gtest/gtest.h>

#include "binding/utf.h"
#include "ui/menu_order.h"

namespace {

using namespace zab;

MediaEntry entry(std::string link, std::string description, std::uint32_t height = 0, std::uint32_t bitrate = 0,
                 std::uint64_t size = 0, std::uint32_t duration = 0) {
    MediaEntry made;
    made.link = std::move(link);
    made.description = std::move(description);
    made.height = height;
    made.bitrate = bitrate;
    made.size = size;
    made.duration = duration;
    return made;
}

std::string shown(const Menu& menu) {
    std::string text;
    for (std::size_t i = 0; i < menu.labels.size(); ++i)
        text += utf8FromUtf16(menu.labels[i]) + " -> " + utf8FromUtf16(menu.links.at(i)) + "\n";
    return text;
}

TEST(MenuLabels, FillInNumbersWhateverATranslatorWrote) {
    const struct {
        const char* format;
        const char* text;
        const char* why;
    } rows[] = {
        {"%ld hour(s) %d min", "7 hour(s) 30 min", "the built-in one"},
        {"%d:%d:%d %ld", "7:30:%d %ld", "more directives than numbers"},
        {"%s%n %I64d %5d %f %", "%s%n %I64d %5d %f %", "other directives are text"},
        {"100%% %d%", "100% 7%", "a percent sign, and one at the end"},
        {"%%d", "%d", "no directive behind a percent sign"},
    };
    for (const auto& row : rows) EXPECT_EQ(filledIn(row.format, {7, 30}), row.text) << row.why;
}

TEST(MenuLabels, TellSizesAndDurationsInWords) {
    const MessageTexts texts;
    const struct {
        std::uint64_t bytes;
        const char* text;
    } sizes[] = {{1, "1 Bytes"},
                 {1023, "1023 Bytes"},
                 {1024, "1 KB"},
                 {1024 * 1024 - 1, "1023 KB"},
                 {1024 * 1024 * 3 / 2, "1.5 MB"},
                 {1024ull * 1024 * 1024 * 5 / 4, "1.25 GB"},
                 {UINT64_MAX, "17179869183.99 GB"}};
    for (const auto& row : sizes) EXPECT_EQ(sizeText(row.bytes, texts), row.text);
    const struct {
        std::uint32_t seconds;
        const char* text;
    } durations[] = {{59, "59 sec"},
                     {60, "1 min 0 sec"},
                     {3599, "59 min 59 sec"},
                     {3600, "1 hour(s) 0 min"},
                     {UINT32_MAX, "1193046 hour(s) 28 min"}};
    for (const auto& row : durations) EXPECT_EQ(durationText(row.seconds, texts), row.text);
}

TEST(MenuLabels, StandBestFirstAndNameEachEntryOnce) {
    MediaEntry sound = entry("http://h/s.mp3", "s.mp3", 0, 320'000);
    sound.kind = EntryKind::audio;
    MediaEntry second = entry("http://h/l", "360p", 0, 0, 0, 61);
    second.secondUrl = "http://h/other";
    const std::vector<MediaEntry> entries = {
        sound,
        entry("http://h/l", "360p MP4"),
        second,
        entry("http://h/a", "1080p HD, high bitrate MP4", 0, 0, 1572864, 65),
        entry("http://h/b", "", 1080, 1),
        entry("http://h/c", "Ultra HD MP4"),
        entry("http://h/d", "x720p p 720px clip", 0, 0, 9),
        entry("http://h/l", "360p MP4"),
    };
    EXPECT_EQ(shown(mediaMenu(entries, MessageTexts{}, utf16FromUtf8)),
              "Ultra HD MP4 -> http://h/c\n"
              "http://h/b -> http://h/b\n"
              "1080p HD, high bitrate MP4, 1.5 MB 1 min 5 sec -> http://h/a\n"
              "360p MP4 -> http://h/l\n"
              "360p, 1 min 1 sec -> http://h/l#2\n"
              "360p MP4 -> http://h/l#3\n"
              "x720p p 720px clip, 9 Bytes -> http://h/d\n"
              "s.mp3 -> http://h/s.mp3\n"
              "Download all -> !ALL!\n");
    EXPECT_EQ(entryNamed(entries, "http://h/l"), 1u);
    EXPECT_EQ(entryNamed(entries, "http://h/l#2"), 2u);
    EXPECT_EQ(entryNamed(entries, "http://h/l#4"), std::nullopt);
    EXPECT_EQ(shown(mediaMenu(std::span(entries).first(1), MessageTexts{}, utf16FromUtf8)),
              "s.mp3 -> http://h/s.mp3\n")
        << "one entry is all there is";
}

TEST(MenuLabels, AreOneLineOfPlainTextWithWhatAStreamIs) {
    MediaEntry film = entry("hlstozab://http://h/m.m3u8", " Tom &\r\n Jerry\t", 720, 0, 0, 60);
    film.bitrate = 2'400'000;
    film.extension = "ts";
    MediaEntry told = entry("hlstozab://http://h/l.m3u8", "480p bitrate  900", 480);
    told.bitrate = 900'000;
    told.extension = "ts";
    const MediaEntry endless = entry("http://h/c", std::string(5000, 'x'));
    const Menu menu = mediaMenu(std::vector{film, told, endless}, MessageTexts{}, utf16FromUtf8);
    EXPECT_EQ(utf8FromUtf16(menu.labels.at(0)), "Tom && Jerry, 720p TS, 2400 kbit/s 1 min 0 sec");
    EXPECT_EQ(utf8FromUtf16(menu.labels.at(1)), "480p bitrate 900, TS");
    EXPECT_LT(menu.labels.at(2).size(), 200u);
}

}  // namespace
