#include "download.h"

#include <windows.h>

#include <bcrypt.h>
#include <winhttp.h>

#include <functional>
#include <sstream>
#include <string_view>
#include <vector>

#include "binding/owner.h"
#include "web/encoding.h"
#include "web/url_resolve.h"

namespace zab::testbed {
namespace {

struct HttpTraits {
    using Raw = HINTERNET;
    static Raw none() { return nullptr; }
    static void close(Raw handle) { WinHttpCloseHandle(handle); }
};
using HttpHandle = Owner<HttpTraits>;

class Sha256 {
  public:
    Sha256() {
        BCryptOpenAlgorithmProvider(&algorithm_, BCRYPT_SHA256_ALGORITHM, nullptr, 0);
        BCryptCreateHash(algorithm_, &hash_, nullptr, 0, nullptr, 0, 0);
    }
    ~Sha256() {
        BCryptDestroyHash(hash_);
        BCryptCloseAlgorithmProvider(algorithm_, 0);
    }
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;

    void add(unsigned char* bytes, DWORD count) { BCryptHashData(hash_, bytes, count, 0); }

    std::string hexadecimal() {
        static constexpr char kDigits[] = "0123456789abcdef";
        unsigned char digest[32]{};
        BCryptFinishHash(hash_, digest, sizeof(digest), 0);
        std::string text;
        for (const unsigned char byte : digest) text.append({kDigits[byte >> 4], kDigits[byte & 15]});
        return text;
    }

  private:
    BCRYPT_ALG_HANDLE algorithm_ = nullptr;
    BCRYPT_HASH_HANDLE hash_ = nullptr;
};

struct Target {
    bool secure;
    INTERNET_PORT port;
    std::wstring host;
    std::wstring object;  // path and query as they stand
};

std::optional<Target> targetOf(const std::wstring& url) {
    URL_COMPONENTS parts{};
    parts.dwStructSize = sizeof(parts);
    parts.dwSchemeLength = parts.dwHostNameLength = parts.dwUrlPathLength = parts.dwExtraInfoLength = DWORD(-1);
    if (!WinHttpCrackUrl(url.c_str(), 0, 0, &parts)) return std::nullopt;
    std::wstring object(parts.lpszUrlPath, parts.dwUrlPathLength);
    object.append(parts.lpszExtraInfo, parts.dwExtraInfoLength);
    return Target{parts.nScheme == INTERNET_SCHEME_HTTPS, parts.nPort,
                  std::wstring(parts.lpszHostName, parts.dwHostNameLength), std::move(object)};
}

std::wstring headersOf(const DownloadOrder& order) {
    std::wstring headers;
    const auto add = [&](const wchar_t* name, const std::wstring& value) {
        if (!value.empty()) headers.append(name).append(L": ").append(value).append(L"\r\n");
    };
    add(L"Referer", order.referrer);
    add(L"Cookie", order.cookies);
    if (order.postBody) add(L"Content-Type", order.postContentType);
    if (!order.user.empty()) {
        const std::string token = Base64Encode(order.user + ":" + order.password);
        add(L"Authorization", L"Basic " + std::wstring(token.begin(), token.end()));
    }
    return headers;
}

bool sendRequest(HINTERNET request, const DownloadOrder& order) {
    DWORD ownCookies = WINHTTP_DISABLE_COOKIES;
    WinHttpSetOption(request, WINHTTP_OPTION_DISABLE_FEATURE, &ownCookies, sizeof(ownCookies));
    std::string body = order.postBody.value_or("");
    const auto length = static_cast<DWORD>(body.size());
    const std::wstring headers = headersOf(order);
    return WinHttpSendRequest(request, headers.empty() ? WINHTTP_NO_ADDITIONAL_HEADERS : headers.c_str(),
                              static_cast<DWORD>(headers.size()), body.data(), length, length, 0) &&
           WinHttpReceiveResponse(request, nullptr);
}

using Sink = std::function<void(unsigned char* bytes, DWORD count)>;

/// Gives the status.
std::optional<DWORD> readResponse(HINTERNET request, const Sink& sink) {
    DWORD status = 0;
    DWORD size = sizeof(status);
    if (!WinHttpQueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER, nullptr, &status,
                             &size, nullptr))
        return std::nullopt;
    unsigned char buffer[16384];
    for (;;) {
        DWORD count = 0;
        if (!WinHttpReadData(request, buffer, sizeof(buffer), &count)) return std::nullopt;
        if (count == 0) return status;
        sink(buffer, count);
    }
}

std::optional<DWORD> fetch(const DownloadOrder& order, const std::wstring& url, const Sink& sink) {
    const auto target = targetOf(url);
    if (!target) return std::nullopt;
    const HttpHandle session(
        WinHttpOpen(order.userAgent.c_str(), WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0));
    if (!session) return std::nullopt;
    WinHttpSetTimeouts(session.get(), 5000, 5000, 10000, 10000);
    const HttpHandle connection(WinHttpConnect(session.get(), target->host.c_str(), target->port, 0));
    const HttpHandle request(
        WinHttpOpenRequest(connection.get(), order.postBody ? L"POST" : L"GET", target->object.c_str(), nullptr,
                           WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                           WINHTTP_FLAG_ESCAPE_DISABLE | WINHTTP_FLAG_ESCAPE_DISABLE_QUERY |
                               (target->secure ? WINHTTP_FLAG_SECURE : 0u)));
    if (!request || !sendRequest(request.get(), order)) return std::nullopt;
    return readResponse(request.get(), sink);
}

constexpr std::wstring_view kHlsSchemes[] = {L"hlstozab://", L"hls2tozab://"};  // the second: with sound apart

/// The addresses of the files that an HLS media playlist names: its initialisation map and its segments.
void addPartsOf(const std::wstring& address, const DownloadOrder& order, std::vector<std::wstring>& parts) {
    constexpr std::string_view kMap = "#EXT-X-MAP:URI=\"";
    std::string playlist;
    fetch(order, address,
          [&](unsigned char* bytes, DWORD count) { playlist.append(reinterpret_cast<char*>(bytes), count); });
    const std::string base(address.begin(), address.end());
    std::istringstream lines(playlist);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(kMap)) line = line.substr(kMap.size(), line.rfind('"') - kMap.size());
        if (line.empty() || line.front() == '#') continue;
        const std::string url = resolveUrl(base, line);
        parts.emplace_back(url.begin(), url.end());
    }
}

/// The addresses of the files that make up the download.
std::vector<std::wstring> partsOf(const DownloadOrder& order) {
    std::vector<std::wstring> parts;
    for (const auto scheme : kHlsSchemes)
        if (order.url.starts_with(scheme)) addPartsOf(order.url.substr(scheme.size()), order, parts);
    if (parts.empty()) return {order.url};
    if (!order.secondUrl.empty()) addPartsOf(order.secondUrl, order, parts);
    return parts;
}

}  // namespace

std::optional<Downloaded> download(const DownloadOrder& order) {
    Downloaded result;
    Sha256 hash;
    for (const std::wstring& part : partsOf(order)) {
        const auto status = fetch(order, part, [&](unsigned char* bytes, DWORD count) {
            hash.add(bytes, count);
            result.sizeBytes += count;
        });
        if (!status) return std::nullopt;
        result.status = *status;
    }
    if (result.status == 0) return std::nullopt;
    result.sha256 = hash.hexadecimal();
    return result;
}

}  // namespace zab::testbed
