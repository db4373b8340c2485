// Libraries and their functions, found at run time.
#pragma once

#include <cstring>

#include "binding/wide_win32.h"

namespace zab {

/// A library of Windows, from the system folder first and then by the normal search order; null when there is
/// none. It stays loaded for the life of the process.
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
