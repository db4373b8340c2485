// The one place where the module's UTF-16 text becomes the platform's wide characters and back.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <string>

namespace zab {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline const wchar_t* wide(const char16_t* text) noexcept { return reinterpret_cast<const wchar_t*>(text); }
inline wchar_t* wide(char16_t* text) noexcept { return reinterpret_cast<wchar_t*>(text); }
inline const wchar_t* wide(const std::u16string& text) noexcept { return wide(text.c_str()); }
inline const char16_t* utf16(const wchar_t* text) noexcept { return reinterpret_cast<const char16_t*>(text); }

}  // namespace zab
