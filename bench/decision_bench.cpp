// What a response costs the module beside the browser's own calls: its headers are visited, then it is decided.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>

#include "bench/bench.h"
#include "binding/text.h"
#include "intercept/decision.h"

namespace {

struct Header {
    std::string_view name, value;
};
struct Response {
    std::string_view url;
    std::vector<Header> headers;
};

std::string_view nextLine(std::string_view& text) {
    const std::string_view line = zab::upTo(text, '\n');
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

/// A URL line, header lines, an empty line.
std::vector<Response> responsesOf(std::string_view text) {
    std::vector<Response> responses;
    while (!text.empty()) {
        auto& response = responses.emplace_back();
        response.url = nextLine(text);
        for (auto line = nextLine(text); !line.empty(); line = nextLine(text)) {
            const auto name = zab::upTo(line, ':');
            response.headers.push_back({name, line.substr(name.size() + 2)});
        }
    }
    return responses;
}

template <std::uint32_t LoadFlags>
std::function<void()> decideAll(const std::string& body) {
    const auto responses = std::make_shared<std::vector<Response>>(responsesOf(body));
    const auto scratch = std::make_shared<zab::CapturedHeaders>();
    const auto settings = std::make_shared<zab::GivenSettings>();
    settings->extensionList =
        "3gp 7z aac ace aif apk arj asf avi bin bz2 exe gz iso img lzh m4a m4v mkv mov mp3 "
        "mp4 mpa mpe mpeg mpg msi msu ogg ogv pdf plj ppt pps qt ra rar rm sea sit tar tif "
        "tiff wav wma wmv z zip";
    return [=] {
        std::size_t told = 0;
        for (const auto& response : *responses) {
            scratch->clear();
            scratch->url.assign(response.url);
            for (const auto& [name, value] : response.headers) zab::visitHeader(*scratch, name, value);
            told +=
                static_cast<std::size_t>(zab::decide(zab::factsOf(*scratch, 200, LoadFlags), *settings).reason);
        }
        benchmark::DoNotOptimize(told);
    };
}

constexpr std::string_view kOrdinaryHeaders =
    "Date: Tue, 24 Nov 2026 22:36:43 GMT\n"
    "Server: Apache\n"
    "Cache-Control: max-age=31536000, public\n"
    "ETag: \"5f2b-4c7a1e5d8f60\"\n"
    "Accept-Ranges: bytes\n";

std::string images(std::size_t n) {
    return zabbench::repeated("https://static.example.com/assets/2024/teaser/picture_%.jpg?w=640&v=1.%\n" +
                                  std::string(kOrdinaryHeaders) +
                                  "Content-Type: image/jpeg\nContent-Length: 48211\n\n",
                              n);
}

std::string downloads(std::size_t n) {
    return zabbench::repeated("https://files.example.com/get?id=%&token=4f2b9c7a1e5d8f60\n" +
                                  std::string(kOrdinaryHeaders) +
                                  "Content-Type: application/zip; charset=binary\nContent-Length: 73400320\n"
                                  "Content-Disposition: attachment; filename=\"archive % (final).zip\"\n\n",
                              n);
}

const zabbench::Case kCases[] = {
    {"decision", "uninteresting responses", images, 10'000, decideAll<0>},
    {"decision", "downloads", downloads, 10'000, decideAll<zab::kDocumentLoad | zab::kTopLevelLoad>},
};

}  // namespace
