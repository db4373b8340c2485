#include "web_client/web_client.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "binding/browser_text_win32.h"
#include "binding/owner.h"
#include "binding/utf.h"
#include "binding/wide_win32.h"
// These need the types of the header above.
#include <bcrypt.h>
#include <winhttp.h>

namespace zab::testbed {
namespace {

constexpr int kTimeoutMs = 10'000;

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
    std::string all, piece(64 * 1024, '\0');
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
    WinHttpSetTimeouts(session.get(), kTimeoutMs, kTimeoutMs, kTimeoutMs, kTimeoutMs);
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
        const std::u16string line = utf16FromUtf8(name + ": " + value);
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

std::string sha256Of(std::string_view bytes) {
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
    UCHAR digest[32]{};
    BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0);
    BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0);
    BCryptHashData(hash, reinterpret_cast<UCHAR*>(const_cast<char*>(bytes.data())),
                   static_cast<ULONG>(bytes.size()), 0);
    BCryptFinishHash(hash, digest, sizeof(digest), 0);
    BCryptDestroyHash(hash);
    BCryptCloseAlgorithmProvider(algorithm, 0);
    std::string digits;
    for (const UCHAR byte : digest) digits += {"0123456789abcdef"[byte >> 4], "0123456789abcdef"[byte & 15]};
    return digits;
}

}  // namespace zab::testbed
