// The command as a stranger runs it: what it prints where, and how it ends.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
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
        {"har --explain", har, 0, "1 entry: "},
        {"har", "{\"log\":{", 2, ""},
        {"decide", R"([{"url":"https://r1.googlevideo.com/videoplayback?itag=18","status":200}])", 0,
         "\"offer\":1"},
        {"decide", "null", 1, "[]"},
        {"decide", "{\"url\":", 2, ""},
        {"hls /no/such/file", "", 2, "/no/such/file"},
        {"hls /", "", 2, ""},
        {"itag", "", 2, ""},
        {"nonsense", "", 2, ""},
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

/// An entry of a capture that has no page names: its start in seconds, address, referrer, type, body.
nlohmann::json harEntry(int second, const char* url, const char* referrer, const char* type,
                        const nlohmann::json& body) {
    const auto headers = [](const char* name, const char* value) {
        return nlohmann::json::array({{{"name", name}, {"value", value}}});
    };
    const bool isPage = std::string_view(referrer).empty();
    return {{"startedDateTime", "2020-02-29T23:59:0" + std::to_string(second) + ".250+01:00"},
            {"time", 100},
            {"_resourceType", isPage ? "document" : "xhr"},
            {"request", {{"url", url}, {"headers", headers("referer", referrer)}}},
            {"response",
             {{"status", 200}, {"headers", headers("Content-Type", type)}, {"content", {{"text", body}}}}}};
}

TEST(Zabprobe, ShowsTheMenusOfACapturesPages) {
    constexpr const char *kHls = "application/vnd.apple.mpegurl", *kHtml = "text/html";
    const char* media = "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n1.ts\n#EXT-X-ENDLIST\n";
    const nlohmann::json entries = {
        harEntry(0, "http://a/film", "", kHtml, "<p>"),
        harEntry(0, "http://b/film", "", kHtml, "<video src=/b.mp4>"),
        harEntry(3, "http://a/m/low.m3u8", "http://a/film", kHls, media),
        harEntry(2, "http://a/m/1.m3u8", "http://a/", kHls,
                 "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=9,RESOLUTION=4x480\nlow.m3u8\n"
                 "#EXT-X-STREAM-INF:BANDWIDTH=9,RESOLUTION=4x720\nhigh.m3u8\n"),
        harEntry(4, "http://a/m/1.ts", "http://a/film", "video/mp2t", nullptr),
        harEntry(4, "http://a/m/2", "http://a/film", "audio/x-unheard", nullptr),
        harEntry(4, "http://a/m/live.f4m", "http://a/film", "application/f4m+xml",
                 "<manifest><bootstrapInfo id=b>AA</bootstrapInfo><media url=x bootstrapInfoId=b /><drm>"),
        harEntry(4, "http://a/m.mpd", "http://a/film", "application/dash+xml", "<MPD>"),
    };
    const std::string har = nlohmann::json{{"log", {{"entries", entries}}}}.dump();
    const nlohmann::json pages = nlohmann::json::parse(run("har --page", har).output);
    ASSERT_EQ(pages.size(), 2u);
    std::string menu, silent;
    for (const auto& choice : pages[0]["menu"]) menu += choice["label"].get<std::string>() + "; ";
    for (const auto& response : pages[0]["silent"])
        silent += response["url"].get<std::string>() + " " + response["why"].get<std::string>() + "\n";
    EXPECT_EQ(menu.find("720p"), 0u) << menu;
    EXPECT_EQ(pages[0]["menu"].size(), 2u) << "the master playlist came first: " << menu;
    EXPECT_EQ(silent,
              "http://a/film Nothing was found in it.\n"
              "http://a/m/low.m3u8 The playlist belongs to a stream that is held already.\n"
              "http://a/m/1.ts It is a segment of a stream.\n"
              "http://a/m/2 The capture does not hold this body.\n"
              "http://a/m/live.f4m The stream is protected.\n"
              "http://a/m.mpd Its kind is read by a library of the download manager, which is not here.\n");
    EXPECT_EQ(pages[1]["url"], "http://b/film");
    EXPECT_EQ(pages[1]["menu"][0]["link"], "http://b/b.mp4");
    const std::string table = run("har --page --explain", har).output;
    EXPECT_NE(table.find("    http://a/m/1.ts"), std::string::npos) << table;
}

TEST(Zabprobe, ListsEachRecordedFilmAsItsViewersWould) {
    const auto menuOf = [](const std::string& capture) {
        const std::string path = ZAB_RECORDED "/streams-" + capture + ".har";
        const auto pages = nlohmann::json::parse(run("har --page '" + path + "'", "").output);
        std::string menu;
        for (const auto& page : pages)
            for (const auto& choice : page["menu"])
                menu += choice["kind"].get<std::string>() + " " + choice["extension"].get<std::string>() + " " +
                        choice["label"].get<std::string>() + "; ";
        return menu;
    };
    const zabtest::Reading rows[] = {
        {"hls-ts",
         "video ts 1080p bitrate 4882, TS, 1 min 30 sec; video ts 720p bitrate 2441, TS, 1 min 30 sec; "
         "video ts 360p bitrate 878, TS; ",
         ""},
        {"hls-fmp4",
         "video mp4 720p bitrate 2734, MP4, 1 min 20 sec; video mp4 480p bitrate 1171, MP4, 1 min 20 sec; "
         "audio mp4 Deutsch de, MP4, 1 min 20 sec; ",
         ""},
        {"hls-live", "video ts 540p bitrate 1757, TS; video ts 360p bitrate 781, TS; ", "no durations"},
        {"hls-packed", "video ts 720p bitrate 2929, TS, 2 min 0 sec; video ts 480p bitrate 1464, TS; ", ""},
        {"hls-iframe", "video ts 1080p bitrate 2929, TS; video ts 480p bitrate 976, TS, 1 min 0 sec; ", ""},
        {"hls-app",
         "video mp4 720p bitrate 2148, MP4, 1 min 0 sec; video mp4 720p bitrate 2148, MP4, 1 min 30 sec; "
         "video ts 480p bitrate 1074, TS; video ts 480p bitrate 1074, TS; ",
         "two films"},
        {"dash", "", "needs the download manager's library"},
        {"radio", "audio mp3 one.mp3; audio aac two.aac; ", "a list of links"},
    };
    zabtest::expectReadings(menuOf, rows);
}

}  // namespace
