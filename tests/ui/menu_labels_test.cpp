#include "ui/menu_labels.h"

#include "binding/utf.h"
#include "readings.h"
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
    std::vector<MediaEntry> entries = {
        entry("hlstozab://m", " Tom &\r\n Jerry\t", 720, 1000, 0, 60),
        entry("hlstozab://l", "480p bitrate  900", 480, 900'000), entry("hlstozab://n", "sized", 0, 1000, 9),
        entry("hlstozab://s", "slow", 0, 999),
        entry("c", std::string(159, 'x') + "\xF0\x9F\x98\x80" + std::string(9, 'x'))};
    for (auto& made : entries) made.extension = "ts";
    EXPECT_EQ(shown(mediaMenu(entries, MessageTexts{}, utf16FromUtf8)),
              "Tom && Jerry, 720p TS, 1 kbit/s 1 min 0 sec -> hlstozab://m\n"
              "480p bitrate 900, TS -> hlstozab://l\n"
              "sized, TS, 9 Bytes -> hlstozab://n\n"
              "slow, TS -> hlstozab://s\n" +
                  std::string(159, 'x') + "\xF0\x9F\x98\x80\xE2\x80\xA6 -> c\nDownload all -> !ALL!\n");
}

}  // namespace
