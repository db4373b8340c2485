#include "scenarios/recorded.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace zab::testbed {

std::vector<zabprobe::Exchange> recordedExchanges(std::string_view capturePrefix) {
    std::vector<zabprobe::Exchange> all;
    for (const auto& file : std::filesystem::directory_iterator(ZAB_RECORDED)) {
        if (!file.path().filename().string().starts_with(capturePrefix)) continue;
        std::ifstream stream(file.path(), std::ios::binary);
        const std::string json(std::istreambuf_iterator<char>(stream), {});
        EXPECT_TRUE(zabprobe::visitHarEntries(json, [&](const auto& exchange) { all.push_back(exchange); }))
            << file.path();
    }
    return all;
}

Channel& play(Browser& browser, const zabprobe::Exchange& exchange, Page* page) {
    Request request{.url = exchange.url,
                    .method = exchange.method,
                    .headers = exchange.requestHeaders,
                    .loadFlags = exchange.loadFlags,
                    .page = page};
    if (exchange.bodySize > 0)
        request.upload = Upload{.bytes = std::string(static_cast<std::size_t>(exchange.bodySize), 'x')};
    auto& channel = browser.requests(std::move(request));
    if (!channel.cancelled() && exchange.status > 0)
        browser.answers(channel, static_cast<std::uint32_t>(exchange.status), exchange.responseHeaders);
    return channel;
}

}  // namespace zab::testbed
