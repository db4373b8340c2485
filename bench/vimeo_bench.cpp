#include "bench/bench.h"
#include "media/parsers/vimeo.h"

namespace {

using zabbench::repeated;

std::function<void()> parse(const std::string& body) {
    return [&body] { zab::CVimeoParser().parse(body); };
}

std::string player(std::size_t n) {
    return "<title>A film</title>" +
           repeated("<script>var filler% = {\"a\":[%,%],\"b\":\"c\"};</script>\n", n) + "\"progressive\":[" +
           repeated(
               "{\"profile\":174,\"width\":1280,\"mime\":\"video/mp4\",\"fps\":24,"
               "\"url\":\"https://v.example.com/%/720.mp4\",\"quality\":\"720p\",\"height\":720},",
               8) +
           "{}]";
}
std::string openedObjects(std::size_t n) { return "\"progressive\":" + std::string(n, '{'); }
std::string renditions(std::size_t n) {
    return "\"progressive\":" + repeated("{url:%,quality:1,mime:video/mp4},", n);
}
std::string members(std::size_t n) { return "\"progressive\":{" + repeated("\"url\":'%',", n); }
std::string openedQuotes(std::size_t n) {
    return "\"progressive\":" + repeated("{\"url", n) + repeated("}'", n);
}

const zabbench::Case kCases[] = {
    {"vimeo", "player page", player, 20'000, parse},
    {"vimeo", "opened objects", openedObjects, 1'000'000, parse},
    {"vimeo", "renditions", renditions, 20'000, parse},
    {"vimeo", "members of one object", members, 100'000, parse},
    {"vimeo", "opened quotes", openedQuotes, 100'000, parse},
};

}  // namespace
