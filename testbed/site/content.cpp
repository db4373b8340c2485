#include "content.h"

#include <openssl/sha.h>
#include <zlib.h>

#include <cstdint>
#include <stdexcept>

#include "exchanges.h"

namespace zab::site {
namespace {

constexpr std::string_view kAnyBrowser = "Mozilla/5.0 (";

// Bytes that do not compress and depend on every byte of the seed (FNV-1a, then xorshift64*).
std::string generated(std::string_view seed, std::size_t size) {
    std::uint64_t state = 0xcbf29ce484222325u;
    for (const char c : seed) state = (state ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
    std::string bytes;
    bytes.reserve(size);
    while (bytes.size() < size) {
        state ^= state >> 12;
        state ^= state << 25;
        state ^= state >> 27;
        bytes += static_cast<char>((state * 0x2545f4914f6cdd1du) >> 56);
    }
    return bytes;
}

// Names what the request lacks, so that a wrong file tells at once what was lost on the way; empty when nothing
// is.
std::string_view missing(Guard guard, const Visit& visit) {
    switch (guard) {
        case Guard::none: return {};
        case Guard::session:
            if (visit.cookie.find(kSessionCookie) == visit.cookie.npos) return "the cookie of the session";
            if (visit.referer != "http://" + std::string(visit.host) + std::string(kSessionPage))
                return "the referrer";
            return visit.userAgent.substr(0, kAnyBrowser.size()) == kAnyBrowser ? "" : "a browser's user agent";
        case Guard::basic: return visit.authorization == kBasicAuthorization ? "" : "the credentials";
        case Guard::form:
            if (visit.formBody.empty()) return "the form";
            return visit.formType.empty() ? "the form's content type" : "";
    }
    return {};
}

}  // namespace

Reply replyTo(const Resource& resource, const Visit& visit) {
    if (!resource.location.empty()) return {resource.status, {}};
    if (const std::string_view lost = missing(resource.guard, visit); !lost.empty())
        return {resource.guard == Guard::basic ? 401 : resource.status,
                "This request came without " + std::string(lost) + ".\n"};
    if (resource.target == "/") return {resource.status, startPage()};
    if (!resource.text.empty()) return {resource.status, std::string(resource.text)};
    std::string seed(resource.target);
    if (resource.guard == Guard::form)
        seed.append(1, '\n').append(visit.formType).append(1, '\n').append(visit.formBody);
    return {resource.status, generated(seed, resource.size)};
}

std::string sha256Of(std::string_view bytes) {
    unsigned char digest[SHA256_DIGEST_LENGTH];
    SHA256(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), digest);
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : digest) text.append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 15]);
    return text;
}

std::string gzipOf(std::string_view bytes) {
    constexpr int kGzipWindow = 15 + 16;  // 16 asks for the gzip wrapper
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, kGzipWindow, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("zlib does not start");
    std::string packed(deflateBound(&stream, bytes.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END) throw std::runtime_error("zlib does not finish");
    return packed;
}

}  // namespace zab::site
