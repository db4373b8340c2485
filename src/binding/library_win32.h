// Libraries and their functions, found at run time.
#pragma once

#include <cstring>

#include "binding/owner.h"
#include "binding/wide_win32.h"

namespace zab {

struct LibraryTraits {
    using Raw = HMODULE;
    static constexpr Raw none() noexcept { return nullptr; }
    static void close(Raw library) noexcept { FreeLibrary(library); }
};
/// One reference to a loaded library.
using Library = Owner<LibraryTraits>;

/// A library of Windows, from the system folder first and then by the normal search order; null when there is
/// none. The caller owns one reference.
HMODULE LoadSystemLibrary(const char* name) noexcept;

/// An exported function, null when the library (which may be null) does not export it:
///     const auto unescape = exportOf<HRESULT WINAPI(PSTR, PSTR, DWORD*, DWORD)>(library, "UrlUnescapeA");
template <class Function>
Function* exportOf(HMODULE library, const char* name) noexcept {
    if (library == nullptr) return nullptr;
    const FARPROC address = GetProcAddress(library, name);
    Function* function = nullptr;
    static_assert(sizeof(function) == sizeof(address));
    std::memcpy(&function, &address, sizeof(function));
    return function;
}

}  // namespace zab
