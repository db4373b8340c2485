#include "transfer/local_copy_win32.h"

#include <optional>

#include "binding/browser_string.h"
#include "binding/browser_text_win32.h"
#include "binding/handle_win32.h"
#include "binding/interface_ptr.h"
#include "binding/interfaces/helpers.h"

namespace zab {
namespace {

constexpr std::size_t kLongestPathBytes = 520;

std::optional<std::uint64_t> fileSizeBytes(const std::string& path) noexcept {
    const FileHandle file(CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    if (!file || GetFileSizeEx(file.get(), &size) == 0) return std::nullopt;
    return static_cast<std::uint64_t>(size.QuadPart);
}

}  // namespace

std::string usableCopy(std::u16string_view path, std::uint64_t sizeBytes) {
    std::string narrow = ansiFromUtf16(path);
    // What Windows puts in place of a character that the code page lacks names another file.
    const bool toldExactly =
        !narrow.empty() && narrow.size() <= kLongestPathBytes && utf16FromAnsi(narrow) == path;
    if (!toldExactly || fileSizeBytes(narrow) != sizeBytes) narrow.clear();
    return narrow;
}

std::string localCopyOf(std::string_view url, std::uint64_t sizeBytes) {
    const auto helper = service<iZABHelper5>();
    NarrowContainer address(url);
    WideContainer path;
    if (!helper || !address.ready() || !path.ready()) return {};
    if (failed(helper->GetBodyFile(address.get(), path.get()))) return {};
    return usableCopy(path.view(), sizeBytes);
}

}  // namespace zab
