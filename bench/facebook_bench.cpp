#include <memory>

#include "bench/bench.h"
#include "binding/utf.h"
#include "media/parsers/facebook.h"

namespace {

using zabbench::repeated;

std::function<void()> parse(const std::string& body) {
    return [text = std::make_shared<std::u16string>(zab::utf16FromUtf8(body))] {
        zab::CFacebookParser().parse(*text);
    };
}

std::string page(std::size_t n) {
    return repeated("<div class=\"x1lliihq\" data-id=\"%\"><span>Some text of a post</span></div>\n", n) +
           repeated(
               "videoData:[{is_hds:false,video_id:\"%\",hd_src:\"https:\\/\\/v.example.com\\/hd.mp4\","
               "sd_src:\"https:\\/\\/v.example.com\\/sd.mp4\",dash_manifest:\"\\u003CMPD "
               "mediaPresentationDuration=\\\"PT0H2M3.4S\\\"\\u003E\"}]\n",
               10);
}
std::string markersWithoutValues(std::size_t n) { return repeated("videoData:", n); }
std::string blocksOfOneAddress(std::size_t n) {
    return markersWithoutValues(n) + "hd_src:'" + std::string(n, 'x') + '\'';
}
std::string keysWithoutValues(std::size_t n) { return repeated("videoData:hd_src:sd_src:\"hd_src\":", n); }
std::string durationsWithoutEnd(std::size_t n) {
    return "sd_src:'' " + repeated("videoData:dash_manifest,mediaPresentationDuration=P1D", n) + "sd_src:''";
}
std::string openedQuotes(std::size_t n) { return repeated("videoData:hd_src:'sd_src:\"", n); }

const zabbench::Case kCases[] = {
    {"facebook", "page", page, 20'000, parse},
    {"facebook", "markers without values", markersWithoutValues, 50'000, parse},
    {"facebook", "blocks of one address", blocksOfOneAddress, 50'000, parse},
    {"facebook", "keys without values", keysWithoutValues, 50'000, parse},
    {"facebook", "durations without end", durationsWithoutEnd, 50'000, parse},
    {"facebook", "opened quotes", openedQuotes, 50'000, parse},
};

}  // namespace
