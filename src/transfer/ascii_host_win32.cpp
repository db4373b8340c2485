#include <array>

#include "binding/library_win32.h"
#include "binding/utf.h"
#include "transfer/ascii_host.h"

namespace zab {

std::optional<std::string> asciiHostOf(std::string_view host) {
    using IdnToAscii = int WINAPI(DWORD, LPCWSTR, int, LPWSTR, int);
    constexpr std::size_t kLongest = 253;  // of a name in the DNS
    const std::u16string name = utf16FromUtf8(host);
    if (name.empty() || name.size() > kLongest) return std::nullopt;
    const Library library(LoadSystemLibrary("Normaliz.dll"));
    const auto idnToAscii = exportOf<IdnToAscii>(library.get(), "IdnToAscii");
    if (idnToAscii == nullptr) return std::nullopt;
    std::array<wchar_t, kLongest + 1> ascii{};
    const int length = idnToAscii(0, wide(name.data()), static_cast<int>(name.size()), ascii.data(),
                                  static_cast<int>(ascii.size()));
    if (length <= 0) return std::nullopt;
    return std::string(ascii.begin(), ascii.begin() + length);
}

}  // namespace zab
