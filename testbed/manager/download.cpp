#include "download.h"

#include <sstream>

#include "binding/browser_text_win32.h"
#include "binding/utf.h"
#include "web/encoding.h"
#include "web/url_resolve.h"
#include "web_client/web_client.h"

namespace zab::testbed {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kHlsSchemes[] = {"hlstozab://", "hls2tozab://"};  // the second: with sound apart
constexpr std::size_t kUserAgent = 0, kPostType = 4, kSecondUrl = 12;        // of the extra data

/// Empty when it is absent.
std::string textOf(const Json& value) { return value.is_string() ? value.get<std::string>() : std::string(); }

std::string extraOf(const Json& transfer, std::size_t element) {
    const Json& extra = transfer.at("extraData");
    return extra.is_array() && element < extra.size() ? textOf(extra[element]) : std::string();
}

/// Bytes as the browser's side had them: in the ANSI code page.
std::string bytesOf(const Json& value) { return ansiFromUtf16(utf16FromUtf8(textOf(value))); }

WebRequest requestOf(const Json& transfer) {
    WebRequest request{.url = textOf(transfer.at("url")), .followsRedirects = true};
    const auto add = [&](const char* name, const std::string& value) {
        if (!value.empty()) request.headers.emplace_back(name, value);
    };
    add("User-Agent", extraOf(transfer, kUserAgent));
    add("Referer", textOf(transfer.at("referrer")));
    add("Cookie", textOf(transfer.at("cookies")));
    if (const std::string user = bytesOf(transfer.at("user")); !user.empty())
        add("Authorization", "Basic " + Base64Encode(user + ":" + bytesOf(transfer.at("password"))));
    if (!transfer.at("postData").is_null()) {
        request.method = "POST";
        request.body = bytesOf(transfer.at("postData"));
        add("Content-Type", extraOf(transfer, kPostType));
    }
    return request;
}

/// The addresses of the files that an HLS media playlist names: its initialisation map and its segments.
void addPartsOf(WebRequest playlist, std::vector<std::string>& parts) {
    constexpr std::string_view kMap = "#EXT-X-MAP:URI=\"";
    std::istringstream lines(fetch(playlist).body);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(kMap)) line = line.substr(kMap.size(), line.rfind('"') - kMap.size());
        if (!line.empty() && line.front() != '#') parts.push_back(resolveUrl(playlist.url, line));
    }
}

/// The addresses of the files that make up the download.
std::vector<std::string> partsOf(WebRequest request, const std::string& secondUrl) {
    std::vector<std::string> parts;
    for (const auto scheme : kHlsSchemes) {
        if (!request.url.starts_with(scheme)) continue;
        request.url.erase(0, scheme.size());
        addPartsOf(request, parts);
        request.url = secondUrl;
        if (!secondUrl.empty()) addPartsOf(request, parts);
        return parts;
    }
    return {request.url};
}

}  // namespace

Json download(const Json& transfer) {
    WebRequest request = requestOf(transfer);
    std::string whole;
    std::uint32_t status = 0;
    for (const std::string& part : partsOf(request, extraOf(transfer, kSecondUrl))) {
        request.url = part;
        const WebAnswer answer = fetch(request);
        status = answer.status;
        whole += answer.body;
    }
    return {{"status", status}, {"size", whole.size()}, {"sha256", sha256Of(whole)}};
}

}  // namespace zab::testbed
