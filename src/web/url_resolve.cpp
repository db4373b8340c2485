#include "web/url_resolve.h"

#include <algorithm>

#include "binding/text.h"

namespace zab {
namespace {

bool isSchemeCharacter(char c) noexcept {
    return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
}

std::string_view schemeByGrammar(std::string_view text) noexcept {
    if (text.empty() || !isLetter(text.front())) return {};
    std::size_t end = 1;
    while (end < text.size() && isSchemeCharacter(text[end])) ++end;
    return end < text.size() && text[end] == ':' ? text.substr(0, end) : std::string_view{};
}

/// Cuts `text` at the first `mark` and gives what stands behind it; nothing without one.
std::optional<std::string_view> cutBehind(std::string_view& text, char mark) noexcept {
    const auto at = text.find(mark);
    if (at == std::string_view::npos) return std::nullopt;
    const std::string_view behind = text.substr(at + 1);
    text = text.substr(0, at);
    return behind;
}

/// Section 5.2.4, on the text behind `from`: a path that was just appended.
void removeDotSegments(std::string& text, std::size_t from) {
    if (text.find("/.", from) == std::string::npos && text.compare(from, 1, ".") != 0) return;
    // Dots at the start of a rootless path take their "/" with them; behind any other segment it stays.
    bool rooted = text.compare(from, 1, "/") == 0;
    std::size_t read = from, write = from;
    const std::size_t end = text.size();
    while (read < end) {
        // One segment at a time, with the "/" before it.
        const std::size_t begin = text[read] == '/' ? read + 1 : read;
        const std::size_t stop = std::min(text.find('/', begin), end);
        const std::string_view segment = std::string_view(text).substr(begin, stop - begin);
        const bool last = stop == end;
        if (segment == "." || segment == "..") {
            if (segment == "..") {
                while (write > from && text[write - 1] != '/') --write;
                if (write > from) --write;
            }
            if (last && rooted) text[write++] = '/';
        } else {
            const std::size_t source = rooted ? read : begin;
            for (std::size_t i = source; i < stop; ++i) text[write++] = text[i];
            rooted = true;
        }
        read = stop;
    }
    text.resize(write);
}

/// Section 5.2.3.
void appendMerged(std::string& target, const UrlReference& base, std::string_view path) {
    if (base.authority && base.path.empty()) {
        target += '/';
    } else {
        target += base.path.substr(0, base.path.rfind('/') + 1);  // npos + 1 is 0
    }
    target += path;
}

void appendPart(std::string& target, std::string_view mark, std::optional<std::string_view> part) {
    if (part) target.append(mark).append(*part);
}

// The leniencies.

constexpr std::string_view kWebSchemes[] = {"http", "https", "ftp", "mms"};

constexpr bool isSlash(char c) noexcept { return c == '/' || c == '\\'; }

std::size_t slashesAt(std::string_view text) noexcept {
    std::size_t count = 0;
    while (count < text.size() && isSlash(text[count])) ++count;
    return count;
}

std::string withoutWhiteSpace(std::string_view written) {
    const auto surrounds = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    while (!written.empty() && surrounds(written.front())) written.remove_prefix(1);
    while (!written.empty() && surrounds(written.back())) written.remove_suffix(1);
    std::string kept;
    kept.reserve(written.size() + 8);
    for (const char c : written)
        if (c != '\t' && c != '\n' && c != '\r') kept += c;
    return kept;
}

bool needsEscape(char c) noexcept {
    const auto byte = static_cast<unsigned char>(c);
    return byte <= ' ' || byte >= 0x7F || c == '"' || c == '<' || c == '>' || c == '`';
}

void appendEscaped(std::string& target, char c) {
    constexpr char kHex[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    target += '%';
    target += kHex[byte >> 4];
    target += kHex[byte & 15];
}

/// Path, query and fragment.
void appendBehindHost(std::string& target, std::string_view text) {
    bool inPath = true;
    for (const char c : text) {
        if (c == '?' || c == '#') inPath = false;
        if (inPath && c == '\\') {
            target += '/';
        } else if (needsEscape(c)) {
            appendEscaped(target, c);
        } else {
            target += c;
        }
    }
}

}  // namespace

UrlReference splitReference(std::string_view reference) noexcept {
    UrlReference parts;
    parts.scheme = schemeByGrammar(reference);
    std::string_view rest = reference;
    if (!parts.scheme.empty()) rest.remove_prefix(parts.scheme.size() + 1);
    parts.fragment = cutBehind(rest, '#');
    parts.query = cutBehind(rest, '?');
    if (rest.starts_with("//")) {
        const auto end = std::min(rest.find('/', 2), rest.size());
        parts.authority = rest.substr(2, end - 2);
        rest.remove_prefix(end);
    }
    parts.path = rest;
    return parts;
}

std::string resolveUrl(std::string_view base, std::string_view reference) {
    const UrlReference from = splitReference(base);
    const UrlReference to = splitReference(reference);
    const bool ownScheme = !to.scheme.empty();
    const bool ownAuthority = ownScheme || to.authority.has_value();
    const bool ownPath = ownAuthority || !to.path.empty();

    std::string target;
    target.reserve(base.size() + reference.size() + 1);
    const std::string_view scheme = ownScheme ? to.scheme : from.scheme;
    if (!scheme.empty()) target.append(scheme).append(":");
    appendPart(target, "//", ownAuthority ? to.authority : from.authority);
    const std::size_t path = target.size();
    if (!ownPath) {
        target += from.path;
    } else {
        if (ownAuthority || to.path.starts_with('/')) {
            target += to.path;
        } else {
            appendMerged(target, from, to.path);
        }
        removeDotSegments(target, path);
    }
    appendPart(target, "?", ownPath || to.query ? to.query : from.query);
    appendPart(target, "#", to.fragment);
    return target;
}

bool isWebScheme(std::string_view scheme) noexcept { return isOneOfIgnoringCase(scheme, kWebSchemes); }

std::string cleanedReference(std::string_view baseScheme, std::string_view written) {
    std::string text = withoutWhiteSpace(written);
    std::string_view rest = text;
    const std::string_view scheme = schemeByGrammar(rest);
    if (!scheme.empty() && !isWebScheme(scheme)) return text;
    std::string target;
    target.reserve(text.size() + 8);
    if (!scheme.empty()) rest.remove_prefix(scheme.size() + 1);
    const std::size_t slashes = slashesAt(rest);
    // "http:page" on an http page is a relative reference to browsers, "https:host" there is an address.
    const bool addressed = !scheme.empty() && !equalsIgnoringCase(scheme, baseScheme);
    if (addressed || slashes >= 2) {
        if (!scheme.empty()) target.append(scheme).append(":");
        target += "//";
        rest.remove_prefix(slashes);
        const auto end = std::min(rest.find_first_of("/\\?#"), rest.size());
        target += rest.substr(0, end);
        rest.remove_prefix(end);
    }
    appendBehindHost(target, rest);
    return target;
}

std::string withoutEscapes(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const auto value = text.front() == '%' ? hexDigits(text.substr(1), 2) : std::nullopt;
        plain += value ? static_cast<char>(*value) : text.front();
        text.remove_prefix(value ? 3 : 1);
    }
    return plain;
}

}  // namespace zab
