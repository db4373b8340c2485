// Pieces of Windows paths, as views. "\\" and "/" separate, a drive's ":" too.
#pragma once

#include <string>
#include <string_view>

namespace zab {

/// Drive and folder, the separator at the end included; empty for a bare file name.
constexpr std::u16string_view folderOf(std::u16string_view path) noexcept {
    return path.substr(0, path.find_last_of(u"\\/:") + 1);
}

/// The file name without folder and extension.
constexpr std::u16string_view fileStemOf(std::u16string_view path) noexcept {
    const auto name = path.substr(folderOf(path).size());
    return name.substr(0, name.rfind(u'.'));
}

/// What stands before the last backslash: the folder of a program file. Without a backslash there is none.
constexpr std::u16string_view programFolderOf(std::u16string_view path) noexcept {
    const auto last = path.rfind(u'\\');
    return last == std::u16string_view::npos ? std::u16string_view{} : path.substr(0, last);
}

/// Whether a file name is a short one (8.3) that Windows made from a long one.
constexpr bool looksShortened(std::u16string_view fileName) noexcept {
    return fileName.find(u'~') != std::u16string_view::npos;
}

/// One narrow character for each character; "?" for what ASCII does not have.
std::string asciiOf(std::u16string_view text);

}  // namespace zab
