// The command as a stranger runs it: what it prints where, and how it ends.

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "readings.h"

namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

struct Outcome {
    int status;
    std::string output, errors;
};

Outcome run(const std::string& arguments, const std::string& input) {
    // Its own: several checkouts may be tested at once.
    const fs::path folder = fs::temp_directory_path() / ("zabprobe test " + std::to_string(getpid()));
    fs::create_directories(folder);
    std::ofstream(folder / "in", std::ios::binary) << input;
    const auto quoted = [&](const char* name) { return "'" + (folder / name).string() + "'"; };
    const std::string command = std::string("'" ZAB_PROBE "' ") + arguments + " <" + quoted("in") + " >" +
                                quoted("out") + " 2>" + quoted("err");
    const int status = std::system(command.c_str());
    Outcome outcome{WEXITSTATUS(status), contentsOf(folder / "out"), contentsOf(folder / "err")};
    fs::remove_all(folder);
    return outcome;
}

TEST(Zabprobe, AnswersOrSaysInOneLineWhyNot) {
    const std::string har = R"({"log":{"entries":[{"request":{"url":"http://h/a.iso","headers":[]},)"
                            R"("response":{"status":200,"headers":[]},"_resourceType":"document"}]}})";
    const struct {
        const char* arguments;
        std::string input;
        int status;
        const char* contains;  // of the output, or of the errors at status 2
    } rows[] = {
        {"hls -", "#EXTM3U\n#EXTINF:1,\na.ts\n", 0, "\"a.ts\""},
        {"mp4", "no box", 1, "\"timescale\""},
        {"itag 22", "", 0, "\"720p HD\""},
        {"har --extensions iso", har, 0, "\"transfer\""},
        {"har --explain --extensions zip", har, 0, "The extension 'iso' is not in the list"},
        {"har --page --explain", har, 0, "    http://h/a.iso"},
        {"decide", R"([{"url":"https://r1.googlevideo.com/videoplayback?itag=18","status":200}])", 0,
         "\"offer\":1"},
        {"decide", "null", 1, "[]"},
        {"decide", "{\"url\":", 2, ""},
        {"hls /no/such/file", "", 2, "/no/such/file"},
        {"itag", "", 2, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.arguments) + " < " + row.input.substr(0, 20));
        const Outcome outcome = run(row.arguments, row.input);
        EXPECT_EQ(outcome.status, row.status);
        if (row.status == 2) {
            EXPECT_EQ(outcome.output, "");
            EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
            EXPECT_NE(outcome.errors.find(row.contains), std::string::npos) << outcome.errors;
        } else {
            const bool isForPeople =
                std::string_view(row.arguments).find("--explain") != std::string_view::npos;
            EXPECT_NE(nlohmann::json::accept(outcome.output), isForPeople) << outcome.output;
            EXPECT_NE(outcome.output.find(row.contains), std::string::npos) << outcome.output;
        }
    }
}

TEST(Zabprobe, ListsEachRecordedFilmAsItsViewersWould) {
    std::map<std::string, int> silent;
    const auto menuOf = [&silent](const std::string& capture) {
        const std::string path = ZAB_RECORDED "/streams-" + capture + ".har";
        const auto pages = nlohmann::json::parse(run("har --page '" + path + "'", "").output);
        std::string menu;
        for (const auto& page : pages) {
            for (const auto& choice : page["menu"])
                menu += choice["kind"].get<std::string>() + " " + choice["extension"].get<std::string>() + " " +
                        choice["label"].get<std::string>() + "; ";
            for (const auto& response : page["silent"]) ++silent[response["why"]];
        }
        return menu;
    };
    const zabtest::Reading rows[] = {
        {"hls-fmp4",
         "video mp4 720p bitrate 2734, MP4, 1 min 20 sec; video mp4 480p bitrate 1171, MP4, 1 min 20 sec; "
         "audio mp4 Deutsch de, MP4, 1 min 20 sec; ",
         ""},
        {"hls-live", "video ts 540p bitrate 1757, TS; video ts 360p bitrate 781, TS; ", "no durations"},
        {"hls-iframe", "video ts 1080p bitrate 2929, TS; video ts 480p bitrate 976, TS, 1 min 0 sec; ", ""},
        {"dash", "", "needs the download manager's library"},
        {"radio", "audio mp3 one.mp3; audio aac two.aac; ", "a list of links"},
    };
    zabtest::expectReadings(menuOf, rows);
    const std::map<std::string, int> expected = {
        {"It is a segment of a stream.", 35},
        {"Its kind is read by a library of the download manager, which is not here.", 1},
        {"Nothing was found in it.", 5},
        {"The playlist belongs to a stream that is held already.", 11},
    };
    EXPECT_EQ(silent, expected);
}

TEST(Zabprobe, FindsThePagesOfACaptureThatNamesNoneAndHasNoOrder) {
    auto capture = nlohmann::json::parse(contentsOf(ZAB_RECORDED "/streams-hls-app.har"));
    auto& entries = capture["log"]["entries"];
    for (auto& entry : entries) entry.erase("pageref");
    std::reverse(entries.begin() + 1, entries.end());
    const auto pages = nlohmann::json::parse(run("har --page", capture.dump()).output);
    ASSERT_EQ(pages.size(), 3u);
    for (const std::size_t film : {1, 2}) EXPECT_EQ(pages[film]["menu"].size(), 2u) << pages[film];
}

}  // namespace
