// UrlUnescape as Windows answers it.

#include "binding/library_win32.h"
#include "binding/text.h"
#include "media/parsers/url_unescape.h"

namespace zab {
namespace {

constexpr DWORD kInPlace = 0x100000;

HMODULE open(std::shared_ptr<void>& library) {
    if (!library) library = std::make_shared<Library>(LoadSystemLibrary("Shlwapi.dll"));
    return static_cast<const Library*>(library.get())->get();
}

/// Calls the library's function on the text's own buffer and keeps what stands before its new end.
template <class Letter, class C>
void unescape(std::shared_ptr<void>& library, const char* function, std::basic_string<C>& text) {
    using UrlUnescape = HRESULT WINAPI(Letter*, Letter*, DWORD*, DWORD);
    if (text.find(C('%')) != text.npos) {
        const auto urlUnescape = exportOf<UrlUnescape>(open(library), function);
        if (urlUnescape != nullptr)
            urlUnescape(reinterpret_cast<Letter*>(text.data()), nullptr, nullptr, kInPlace);
    }
    text.resize(upToNul<C>(text).size());
}

}  // namespace

void UrlUnescaper::inPlace(std::string& text) { unescape<CHAR>(library_, "UrlUnescapeA", text); }
void UrlUnescaper::inPlace(std::u16string& text) { unescape<WCHAR>(library_, "UrlUnescapeW", text); }

}  // namespace zab
