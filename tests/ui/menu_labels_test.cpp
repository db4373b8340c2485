#include "ui/menu_labels.h"

#include "binding/utf.h"
#include "readings.h"
#include "ui/menu_order.h"

namespace {

using namespace zab;

std::string shown(const Menu& menu) {
    std::string text;
    for (std::size_t i = 0; i < menu.labels.size(); ++i)
        text += utf8FromUtf16(menu.labels[i]) + " -> " + utf8FromUtf16(menu.links.at(i)) + "\n";
    return text;
}

TEST(MenuLabels, FillInNumbersWhateverATranslatorWrote) {
    const auto read = [](const std::string& format) { return filledIn(format, {7, 30}); };
    const zabtest::Reading rows[] = {
        {"%ld hour(s) %d min", "7 hour(s) 30 min", "the built-in one"},
        {"%d:%d:%d %ld", "7:30:%d %ld", "more directives than numbers"},
        {"%s%n %I64d %5d %f %", "%s%n %I64d %5d %f %", "other directives are text"},
        {"100%% %d%", "100% 7%", "a percent sign, and one at the end"},
        {"%%d", "%d", "no directive behind a percent sign"},
    };
    zabtest::expectReadings(read, rows);
}

TEST(MenuLabels, TellSizesAndDurationsInWords) {
    constexpr std::uint64_t kMega = 1 << 20;
    std::string sizes, durations;
    for (const std::uint64_t bytes : {std::uint64_t{1}, std::uint64_t{1023}, std::uint64_t{1024}, kMega - 1,
                                      kMega, kMega * 3 / 2, kMega * 1280, UINT64_MAX})
        sizes += sizeText(bytes, MessageTexts{}) + "; ";
    EXPECT_EQ(sizes, "1 Bytes; 1023 Bytes; 1 KB; 1023 KB; 1.0 MB; 1.5 MB; 1.25 GB; 17179869183.99 GB; ");
    for (const std::uint32_t seconds : {59u, 60u, 3599u, 3600u, UINT32_MAX})
        durations += durationText(seconds, MessageTexts{}) + "; ";
    EXPECT_EQ(durations, "59 sec; 1 min 0 sec; 59 min 59 sec; 1 hour(s) 0 min; 1193046 hour(s) 28 min; ");
}

TEST(MenuLabels, StandBestFirstAndNameEachEntryOnce) {
    const std::vector<MediaEntry> entries = {
        {.link = "http://h/s.mp3", .description = "s.mp3", .kind = EntryKind::audio, .bitrate = 320'000},
        {.link = "http://h/l", .description = "360p MP4"},
        {.link = "http://h/l", .secondUrl = "http://h/other", .description = "360p", .duration = 61},
        {.link = "http://h/a", .description = "1080p HD, high bitrate MP4", .size = 1572864, .duration = 65},
        {.link = "http://h/b", .height = 1080, .bitrate = 1},
        {.link = "http://h/c", .description = "Ultra HD MP4"},
        {.link = "http://h/d", .description = "x720p p 720px clip", .size = 9},
        {.link = "http://h/l", .description = "360p MP4"},
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
    const std::string longest = std::string(159, 'x') + "\xF0\x9F\x98\x80";
    std::vector<MediaEntry> entries = {
        {.link = "hlstozab://m",
         .description = " Tom &\r\n Jerry\t",
         .duration = 60,
         .height = 720,
         .bitrate = 1000},
        {.link = "hlstozab://l", .description = "480p bitrate  900", .height = 480, .bitrate = 900'000},
        {.link = "hlstozab://n", .description = "sized", .size = 9, .bitrate = 1000},
        {.link = "hlstozab://s", .description = "slow", .bitrate = 999},
        {.link = "c", .description = longest + std::string(9, 'x')},
        {.link = "d", .description = std::string(161, 'y')}};
    for (auto& made : entries) made.extension = "ts";
    EXPECT_EQ(shown(mediaMenu(entries, MessageTexts{}, utf16FromUtf8)),
              "Tom && Jerry, 720p TS, 1 kbit/s 1 min 0 sec -> hlstozab://m\n"
              "480p bitrate 900, TS -> hlstozab://l\n"
              "sized, TS, 9 Bytes -> hlstozab://n\n"
              "slow, TS -> hlstozab://s\n" +
                  longest + "\xE2\x80\xA6 -> c\n" + std::string(160, 'y') +
                  "\xE2\x80\xA6 -> d\nDownload all -> !ALL!\n");
}

}  // namespace
