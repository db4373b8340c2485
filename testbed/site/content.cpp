#include "content.h"

#include <openssl/sha.h>
#include <zlib.h>

#include <cstring>
#include <random>
#include <stdexcept>
#include <utility>

#include "exchanges.h"

namespace zab::site {
namespace {

constexpr std::string_view kAnyBrowser = "Mozilla/5.0 (";

// Bytes that do not compress and depend on every byte of the seed; the same with every library.
std::string generated(std::string_view seed, std::size_t size) {
    std::seed_seq sequence(seed.begin(), seed.end());
    std::mt19937 engine(sequence);
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(engine() >> 24);
    return bytes;
}

// Names what the request lacks, so that a wrong file tells at once what was lost on the way; empty when nothing
// is.
std::string_view missing(Guard guard, const Visit& visit) {
    switch (guard) {
        case Guard::none: return {};
        case Guard::session:
            if (visit.header("Cookie").find(kSessionCookie) == std::string::npos)
                return "the cookie of the session";
            if (visit.header("Referer") != "http://" + visit.header("Host") + std::string(kSessionPage))
                return "the referrer";
            return visit.header("User-Agent").starts_with(kAnyBrowser) ? "" : "a browser's user agent";
        case Guard::viewer:
            return visit.header("Cookie") == kViewerCookie ? "" : "this host's own cookie, alone";
        case Guard::basic: return visit.header("Authorization") == kBasicAuthorization ? "" : "the credentials";
        case Guard::form:
            if (visit.formBody.empty()) return "the form";
            return visit.header("Content-Type").empty() ? "the form's content type" : "";
    }
    return {};
}

}  // namespace

std::string withOrigins(std::string_view text, std::string_view port) {
    std::string whole(text);
    for (const auto& [mark, host] : {std::pair{"{site}", kSiteHost}, {"{media}", kMediaHost}})
        for (auto at = whole.find(mark); at != whole.npos; at = whole.find(mark, at))
            whole.replace(at, std::strlen(mark), "http://" + std::string(host) + ":" + std::string(port));
    return whole;
}

Reply replyTo(const Resource& resource, const Visit& visit) {
    if (!resource.location.empty()) return {resource.status, {}};
    if (const std::string_view lost = missing(resource.guard, visit); !lost.empty())
        return {resource.guard == Guard::basic ? 401 : resource.status,
                "This request came without " + std::string(lost) + ".\n"};
    if (resource.target == "/") return {resource.status, startPage()};
    if (!resource.text.empty()) {
        const std::string host = visit.header("Host");
        return {resource.status, withOrigins(resource.text, host.substr(host.find(':') + 1))};
    }
    std::string seed(resource.target);
    if (resource.guard == Guard::form)
        seed.append(1, '\n').append(visit.header("Content-Type")).append(1, '\n').append(visit.formBody);
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
