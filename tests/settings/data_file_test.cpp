#include "settings/data_file.h"

#include <gtest/gtest.h>

#include "readings.h"
#include "settings/data_file_check.h"

namespace zab {
namespace {

TEST(DataFile, SaysWhatItsLinesSay) {
    const std::string longPattern(4096 - std::string("listen.skip=").size(), 'a');
    const zabtest::Reading rows[] = {
        // the pairing, the servers to skip, a bar, those taken as they are
        {"", "0|", "an empty file: defaults"},
        {"youtube.pairing=2\nlisten.skip=*.ads.net\nhls.asis=tv.example.com", "2 *.ads.net| tv.example.com",
         "the last line needs no end"},
        {"listen.skip=a\r\nlisten.skip=b\r\n", "0 a b|", "names may repeat; CR LF ends a line too"},
        {"youtube.pairing=1\nyoutube.pairing=2\n", "2|", "of a single value the last one"},
        {"youtube.pairing=3\n", "0|", "out of range: as if absent"},
        {"youtube.pairing=2\nyoutube.pairing=x\nyoutube.pairing=12\n", "2|", "no such value"},
        {"#listen.skip=a\nlisten.skip=a#b\n", "0 a#b|", "a comment begins a line only"},
        {"new.name=1\nnothing\n=x\nlisten.skip=\nListen.Skip=a\n", "0|", "nothing that is known"},
        {" listen.skip = a \n", "0 a|", "white space around name and value"},
        {"listen.skip=a=b\n", "0 a=b|", "the first equals sign divides"},
        {"listen.skip=" + longPattern + "\n", "0 " + longPattern + "|", "a line of 4,096 bytes"},
        {"listen.skip=a" + longPattern + "\nhls.asis=b", "0| b", "one of 4,097 is skipped, alone"},
        {std::string("listen.skip=a\n\0listen.skip=b\n", 28), "0 a|", "the text ends at its first NUL"},
    };
    const auto read = [](const std::string& contents) {
        zabtest::checkDataFile({reinterpret_cast<const std::uint8_t*>(contents.data()), contents.size()});
        const auto record = parseDataFile(contents);
        std::string all = std::to_string(record->youtubePairing);
        for (const auto& pattern : record->listenSkip) all += " " + pattern;
        all += "|";
        for (const auto& pattern : record->hlsAsIs) all += " " + pattern;
        return all;
    };
    zabtest::expectReadings(read, rows);
}

TEST(DataFile, PatternsNameHosts) {
    const auto record = parseDataFile("listen.skip=*.ads.net\nlisten.skip=one.example\nhls.asis=TV.example\n");
    EXPECT_TRUE(record->skipsListening("one.example"));
    EXPECT_FALSE(record->skipsListening("ads.net"));
    EXPECT_FALSE(record->skipsListening("tv.example")) << "each list stands for itself";
    EXPECT_TRUE(record->takesVariantsAsTheyStand("tv.example"));
}

}  // namespace
}  // namespace zab
