#include "web/encoding.h"

#include <array>
#include <cstdint>

#include "binding/text.h"

namespace zab {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static_assert(kAlphabet.size() == 64);

constexpr std::uint8_t kForeign = 64;

/// The value of each byte, kForeign outside the alphabet.
constexpr auto kValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(kForeign);
    std::uint8_t next = 0;
    for (const char c : kAlphabet) values[static_cast<std::uint8_t>(c)] = next++;
    return values;
}();

std::uint32_t byteAt(std::string_view bytes, std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); }

constexpr std::string_view kBasic = "Basic ";
constexpr std::size_t kEncodedWordPrefix = std::string_view{"=?UTF-8?"}.size();
constexpr std::string_view kBase64Word = "B?";

}  // namespace

std::string Base64Encode(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t held = bytes.size() - i;
        std::uint32_t group = byteAt(bytes, i) << 16;
        if (held > 1) group |= byteAt(bytes, i + 1) << 8;
        if (held > 2) group |= byteAt(bytes, i + 2);
        text += kAlphabet[group >> 18];
        text += kAlphabet[group >> 12 & 63];
        text += held > 1 ? kAlphabet[group >> 6 & 63] : '=';
        text += held > 2 ? kAlphabet[group & 63] : '=';
    }
    return text;
}

std::string Base64Decode(std::string_view text) {
    std::string bytes;
    std::uint32_t pending = 0;  // bits not yet given out, the oldest on top
    int pendingBits = 0;
    for (const char c : trimLeft(text, kSpaceAndTab)) {
        const std::uint8_t value = kValues[static_cast<std::uint8_t>(c)];
        if (value == kForeign) break;
        pending = pending << 6 | value;
        pendingBits += 6;
        if (pendingBits < 8) continue;
        pendingBits -= 8;
        bytes += static_cast<char>(pending >> pendingBits & 0xFF);
    }
    return bytes;
}

std::optional<BasicCredentials> ParseBasicCredentials(std::string_view headerValue) {
    const auto value = trimLeft(headerValue, " ");
    if (!startsWithIgnoringCase(value, kBasic)) return std::nullopt;
    const std::string decoded = Base64Decode(value.substr(kBasic.size()));
    const auto pair = upToNul(decoded);
    const auto colon = pair.find(':');
    if (colon == std::string_view::npos) return std::nullopt;
    return BasicCredentials{std::string(pair.substr(0, colon)), std::string(pair.substr(colon + 1))};
}

std::optional<std::string> DecodeEncodedWordFileName(std::string_view text) {
    if (text.size() < kEncodedWordPrefix) return std::nullopt;
    text.remove_prefix(kEncodedWordPrefix);
    if (!startsWithIgnoringCase(text, kBase64Word)) return std::nullopt;
    text.remove_prefix(kBase64Word.size());
    const auto end = text.find("?=");
    if (end == std::string_view::npos) return std::nullopt;
    const std::string decoded = Base64Decode(text.substr(0, end));
    return std::string(kUtf8NamePrefix).append(upToNul(decoded));
}

}  // namespace zab
