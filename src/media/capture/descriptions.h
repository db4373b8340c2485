// How entries are described, and named when nothing describes them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace zab {

/// The parts that are not empty, with one blank between two.
std::string joined(std::initializer_list<std::string_view> parts);

/// A file name as people read it: without the prefix that marks it as UTF-8.
std::string_view withoutNamePrefix(std::string_view fileName) noexcept;

/// The last path segment of an address, percent-decoded to bytes up to a NUL, without that prefix.
std::string fileNameOf(std::string_view url);

/// Percent-decoded bytes, up to the first NUL.
std::string percentDecoded(std::string_view text);

}  // namespace zab
