#include "browser/web_client.h"

#include <stdexcept>
#include <vector>

#include "binding/utf.h"
#include "binding/wide_win32.h"
// These need the types of the header above.
#include <bcrypt.h>
#include <winhttp.h>

namespace zab::testbed {
namespace {

constexpr int kTimeoutMs = 30'000;

[[noreturn]] void fail(const char* step) {
    throw std::runtime_error(std::string(step) + ": error " + std::to_string(GetLastError()));
}

HINTERNET session() {
    static const HINTERNET one = [] {
        const HINTERNET opened = WinHttpOpen(nullptr, WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0);
        WinHttpSetTimeouts(opened, kTimeoutMs, kTimeoutMs, kTimeoutMs, kTimeoutMs);
        return opened;
    }();
    return one;
}

/// The bytes of a header block, which WinHTTP widened with the ANSI code page.
std::string bytesOf(std::u16string_view block) {
    const int units = static_cast<int>(block.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, wide(block.data()), units, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide(block.data()), units, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

/// The server's header block: a status line, then "Name: value" lines.
Headers headersOf(HINTERNET request) {
    DWORD size = 0;
    WinHttpQueryHeaders(request, WINHTTP_QUERY_RAW_HEADERS_CRLF, nullptr, nullptr, &size, nullptr);
    std::u16string widened(size / sizeof(char16_t), u'\0');
    if (!WinHttpQueryHeaders(request, WINHTTP_QUERY_RAW_HEADERS_CRLF, nullptr, widened.data(), &size, nullptr))
        fail("headers");
    const std::string block = bytesOf(widened);
    Headers headers;
    std::size_t begin = block.find("\r\n");
    while (begin != std::string::npos) {
        begin += 2;
        const std::size_t end = block.find("\r\n", begin);
        const std::size_t colon = block.find(':', begin);
        if (end == std::string::npos || colon >= end) break;
        const std::size_t value = std::min(block.find_first_not_of(' ', colon + 1), end);
        headers.emplace_back(block.substr(begin, colon - begin), block.substr(value, end - value));
        begin = end;
    }
    return headers;
}

}  // namespace

WebAnswer::~WebAnswer() {
    if (request_ != nullptr) WinHttpCloseHandle(request_);
    if (connection_ != nullptr) WinHttpCloseHandle(connection_);
}

std::string WebAnswer::body() {
    std::string all;
    std::vector<char> piece(64 * 1024);
    for (DWORD got = 0;; all.append(piece.data(), got)) {
        if (!WinHttpReadData(request_, piece.data(), static_cast<DWORD>(piece.size()), &got)) fail("body");
        if (got == 0) return all;
    }
}

std::unique_ptr<WebAnswer> fetch(const Request& request, std::string_view form, const std::string& server) {
    const std::u16string url = utf16FromUtf8(request.url);
    URL_COMPONENTS parts{};
    parts.dwStructSize = sizeof(parts);
    parts.dwHostNameLength = parts.dwUrlPathLength = parts.dwExtraInfoLength = static_cast<DWORD>(-1);
    if (!WinHttpCrackUrl(wide(url), 0, 0, &parts)) fail("URL");
    std::wstring host(parts.lpszHostName, parts.dwHostNameLength);
    INTERNET_PORT port = parts.nPort;
    if (const auto colon = server.find(':'); colon != std::string::npos) {
        host.assign(server.begin(), server.begin() + static_cast<std::ptrdiff_t>(colon));
        port = static_cast<INTERNET_PORT>(std::stoi(server.substr(colon + 1)));
    }
    std::wstring path(parts.lpszUrlPath);
    path.resize(std::min(path.size(), path.find(L'#')));

    auto answer = std::make_unique<WebAnswer>();
    answer->connection_ = WinHttpConnect(session(), host.c_str(), port, 0);
    const std::u16string method = utf16FromUtf8(request.method);
    answer->request_ = WinHttpOpenRequest(
        answer->connection_, wide(method), path.c_str(), nullptr, nullptr, nullptr,
        WINHTTP_FLAG_ESCAPE_DISABLE | (parts.nScheme == INTERNET_SCHEME_HTTPS ? WINHTTP_FLAG_SECURE : 0));
    if (answer->request_ == nullptr) fail("request");
    DWORD ownWays = WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_AUTHENTICATION;
    WinHttpSetOption(answer->request_, WINHTTP_OPTION_DISABLE_FEATURE, &ownWays, sizeof(ownWays));
    for (const auto& [name, value] : request.headers) {
        const std::u16string line = utf16FromUtf8(name + ": " + value);
        WinHttpAddRequestHeaders(answer->request_, wide(line), static_cast<DWORD>(line.size()),
                                 WINHTTP_ADDREQ_FLAG_ADD | WINHTTP_ADDREQ_FLAG_REPLACE);
    }
    if (!WinHttpSendRequest(answer->request_, nullptr, 0, const_cast<char*>(form.data()),
                            static_cast<DWORD>(form.size()), static_cast<DWORD>(form.size()), 0))
        fail("send");
    if (!WinHttpReceiveResponse(answer->request_, nullptr)) fail("answer");
    DWORD status = 0, size = sizeof(status);
    WinHttpQueryHeaders(answer->request_, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER, nullptr,
                        &status, &size, nullptr);
    answer->status = status;
    answer->headers = headersOf(answer->request_);
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
    for (const UCHAR byte : digest) {
        digits += "0123456789abcdef"[byte >> 4];
        digits += "0123456789abcdef"[byte & 15];
    }
    return digits;
}

std::string resolved(const std::string& base, const std::string& location) {
    if (location.find("://") != std::string::npos) return location;
    const auto authority = base.find("://") + 3;
    const auto pathBegin = std::min(base.find('/', authority), base.size());
    if (location.starts_with('/')) return base.substr(0, pathBegin) + location;
    const auto pathEnd = std::min(base.find_first_of("?#", pathBegin), base.size());
    const auto folder = base.substr(0, pathEnd).rfind('/');
    return base.substr(0, folder < pathBegin ? pathBegin : folder) + "/" + location;
}

}  // namespace zab::testbed
