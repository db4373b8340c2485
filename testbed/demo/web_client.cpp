#include "demo/web_client.h"

#include <sstream>
#include <stdexcept>

#include "binding/browser_text_win32.h"
#include "binding/owner.h"
#include "binding/utf.h"
#include "binding/wide_win32.h"
#include "web/encoding.h"
#include "web/url_resolve.h"
// It needs the types of the header above.
#include <winhttp.h>

namespace zab::demo {
namespace {

using nlohmann::json;

struct HttpTraits {
    using Raw = HINTERNET;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw handle) noexcept { WinHttpCloseHandle(handle); }
};
using HttpHandle = Owner<HttpTraits>;

void require(BOOL succeeded, const char* step) {
    if (!succeeded) throw std::runtime_error(std::string(step) + ": error " + std::to_string(GetLastError()));
}

/// The server's header block: a status line, then "Name: value" lines. WinHTTP widens it with the ANSI code
/// page.
std::vector<std::pair<std::string, std::string>> headersOf(HINTERNET request) {
    DWORD size = 0;
    WinHttpQueryHeaders(request, WINHTTP_QUERY_RAW_HEADERS_CRLF, nullptr, nullptr, &size, nullptr);
    std::u16string block(size / sizeof(char16_t), u'\0');
    require(WinHttpQueryHeaders(request, WINHTTP_QUERY_RAW_HEADERS_CRLF, nullptr, block.data(), &size, nullptr),
            "headers");
    std::vector<std::pair<std::string, std::string>> headers;
    std::istringstream lines(ansiFromUtf16(block));
    for (std::string name, value; std::getline(lines, value);) {
        const auto colon = value.find(':');
        if (colon == std::string::npos) continue;
        name = value.substr(0, colon);
        value.erase(0, value.find_first_not_of(' ', colon + 1));
        value.resize(value.find_last_not_of('\r') + 1);
        headers.emplace_back(name, value);
    }
    return headers;
}

std::string bodyOf(HINTERNET request) {
    std::string all, piece(1 << 16, '\0');
    for (DWORD got = 0;; all.append(piece, 0, got)) {
        require(WinHttpReadData(request, piece.data(), static_cast<DWORD>(piece.size()), &got), "body");
        if (got == 0) return all;
    }
}

}  // namespace

WebAnswer fetch(const WebRequest& request) {
    const std::u16string url = utf16FromUtf8(request.url.substr(0, request.url.find('#')));
    URL_COMPONENTS parts{};
    parts.dwStructSize = sizeof(parts);
    parts.dwHostNameLength = parts.dwUrlPathLength = static_cast<DWORD>(-1);
    require(WinHttpCrackUrl(wide(url), 0, 0, &parts), "URL");
    std::wstring host(parts.lpszHostName, parts.dwHostNameLength);
    INTERNET_PORT port = parts.nPort;
    if (const auto colon = request.server.find(':'); colon != std::string::npos) {
        host.assign(request.server.begin(), request.server.begin() + static_cast<std::ptrdiff_t>(colon));
        port = static_cast<INTERNET_PORT>(std::stoi(request.server.substr(colon + 1)));
    }

    const HttpHandle session(WinHttpOpen(nullptr, WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0));
    const HttpHandle connection(WinHttpConnect(session.get(), host.c_str(), port, 0));
    // Path and query, which stand behind it, go out as they are.
    const HttpHandle asked(WinHttpOpenRequest(
        connection.get(), wide(utf16FromUtf8(request.method)), parts.lpszUrlPath, nullptr, nullptr, nullptr,
        WINHTTP_FLAG_ESCAPE_DISABLE | WINHTTP_FLAG_ESCAPE_DISABLE_QUERY |
            (parts.nScheme == INTERNET_SCHEME_HTTPS ? WINHTTP_FLAG_SECURE : 0u)));
    DWORD ownWays = WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_AUTHENTICATION |
                    (request.followsRedirects ? 0 : WINHTTP_DISABLE_REDIRECTS);
    WinHttpSetOption(asked.get(), WINHTTP_OPTION_DISABLE_FEATURE, &ownWays, sizeof(ownWays));
    for (const auto& [name, value] : request.headers) {
        const std::u16string line = utf16FromUtf8(name).append(u": ").append(utf16FromUtf8(value));
        WinHttpAddRequestHeaders(asked.get(), wide(line), static_cast<DWORD>(line.size()),
                                 WINHTTP_ADDREQ_FLAG_ADD | WINHTTP_ADDREQ_FLAG_REPLACE);
    }
    const auto length = static_cast<DWORD>(request.body.size());
    require(
        WinHttpSendRequest(asked.get(), nullptr, 0, const_cast<char*>(request.body.data()), length, length, 0),
        "send");
    require(WinHttpReceiveResponse(asked.get(), nullptr), "answer");
    WebAnswer answer;
    DWORD size = sizeof(answer.status);
    WinHttpQueryHeaders(asked.get(), WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER, nullptr,
                        &answer.status, &size, nullptr);
    answer.headers = headersOf(asked.get());
    answer.body = bodyOf(asked.get());
    return answer;
}

// What a transfer leads to.

namespace {

constexpr std::string_view kHlsSchemes[] = {"hlstozab://", "hls2tozab://"};  // the second: with sound apart
constexpr std::size_t kUserAgent = 0, kPostType = 4, kSecondUrl = 12;        // of the extra data

/// Empty when it is absent.
std::string textOf(const json& value) { return value.is_string() ? value.get<std::string>() : std::string(); }

std::string extraOf(const json& transfer, std::size_t element) {
    const json& extra = transfer.at("extraData");
    return extra.is_array() && element < extra.size() ? textOf(extra[element]) : std::string();
}

/// Bytes as the browser's side had them: in the ANSI code page.
std::string bytesOf(const json& value) { return ansiFromUtf16(utf16FromUtf8(textOf(value))); }

WebRequest requestOf(const json& transfer) {
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
void addPartsOf(const WebRequest& playlist, std::vector<std::string>& parts) {
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

std::string downloadOf(const json& transfer) {
    WebRequest request = requestOf(transfer);
    std::string whole;
    for (const std::string& part : partsOf(request, extraOf(transfer, kSecondUrl))) {
        request.url = part;
        whole += fetch(request).body;
    }
    return whole;
}

}  // namespace zab::demo
