// Parts of a URL, as views into it.
//
// Bytes as they stand: nothing is decoded, copied or allocated, every answer costs at most a few passes over
// the URL. What a URL does not have is an empty view. The authority is what stands behind the scheme's "://",
// up to "/", "?" or "#"; a text without it has neither host nor port, and all of it that stands behind the
// scheme is path.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zab {

/// What stands before the first ":"; empty when a "/", "?" or "#" comes first.
std::string_view schemeOf(std::string_view url) noexcept;
bool hasScheme(std::string_view url, std::string_view scheme) noexcept;

/// The authority without user and port; an IPv6 address keeps its brackets.
std::string_view hostOf(std::string_view url) noexcept;

/// Whether the host is `name` or lies below it ("www.example.com" for "example.com"), ignoring case.
bool isHostOrBelow(std::string_view host, std::string_view name) noexcept;

/// All that stands behind host and port: path, query and fragment.
std::string_view behindHost(std::string_view url) noexcept;

/// The same without its fragment.
std::string_view withoutFragment(std::string_view url) noexcept;

/// What stands before query and fragment.
std::string_view beforeQuery(std::string_view url) noexcept;

/// All up to the last "/" of the path, which is part of it.
std::string_view directoryOf(std::string_view url) noexcept;

/// The path alone.
std::string_view pathOf(std::string_view url) noexcept;

/// What stands behind the last "/" of the path.
std::string_view lastSegmentOf(std::string_view url) noexcept;

/// The text behind the last "." of a name; empty without one.
std::string_view extensionOf(std::string_view name) noexcept;

/// The value of the first parameter of this name (exact) in the query, undecoded.
std::optional<std::string_view> queryParameter(std::string_view url, std::string_view name) noexcept;

/// The port of a scheme (lower case) when an address names none; 0: it has none.
std::uint16_t defaultPortOf(std::string_view scheme) noexcept;

/// Removes ":80" of an http URL and ":443" of an https URL where a "/" follows. The port is looked for behind
/// the first "://", where the first of ":", "/" and "\" decides.
void NormalizeDefaultPort(std::string& url);

}  // namespace zab
