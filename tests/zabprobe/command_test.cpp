// The command as a stranger runs it: what it prints where, and how it ends.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>

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
    const fs::path folder = fs::temp_directory_path() / "zabprobe test";
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
    const std::string har = R"({"log":{"entries":[{"request":{"url":"http://h/a.zip","headers":[]},)"
                            R"("response":{"status":200,"headers":[]},"_resourceType":"document"}]}})";
    const struct {
        const char* arguments;
        std::string input;
        int status;
        const char* contains;  // of the output, or of the errors at status 2
    } rows[] = {
        {"hls", "#EXTM3U\n#EXTINF:1,\na.ts\n", 0, "\"a.ts\""},
        {"hls -", "#EXTM3U\n#EXTINF:1,\na.ts\n", 0, "\"a.ts\""},
        {"hls", "no playlist", 1, "\"segments\""},
        {"mp4", "no box", 1, "\"timescale\""},
        {"itag 22", "", 0, "\"720p HD\""},
        {"har --extensions zip", har, 0, "\"transfer\""},
        {"har", "{\"log\":{", 2, ""},
        {"har", std::string(100'000, '['), 2, ""},
        {"decide", R"([{"url":"https://r1.googlevideo.com/videoplayback?itag=18","status":200}])", 0,
         "\"offer\":1"},
        {"decide", "null", 1, "[]"},
        {"decide", "{\"url\":", 2, ""},
        {"hls /no/such/file", "", 2, "/no/such/file"},
        {"hls /", "", 2, ""},
        {"itag", "", 2, ""},
        {"nonsense", "", 2, ""},
        {"", "", 2, ""},
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
            EXPECT_TRUE(nlohmann::json::accept(outcome.output)) << outcome.output;
            EXPECT_NE(outcome.output.find(row.contains), std::string::npos) << outcome.output;
        }
    }
}

TEST(Zabprobe, ExplainsACaptureToPeople) {
    const auto explained = run("har --explain --extensions zip",
                               R"({"log":{"entries":[{"request":{"url":"http://h/a.iso","headers":[]},)"
                               R"("response":{"status":200,"headers":[]},"_resourceType":"document"}]}})");
    EXPECT_EQ(explained.status, 0);
    EXPECT_NE(explained.output.find("The extension 'iso' is not in the list"), std::string::npos)
        << explained.output;
    EXPECT_NE(explained.output.find("1 entry: "), std::string::npos) << explained.output;
}

}  // namespace
