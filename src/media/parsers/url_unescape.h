// "%XX" undone in place, as UrlUnescapeA and UrlUnescapeW of Windows' Shlwapi do it with their in-place flag.
//
// In the module Windows itself answers (url_unescape_win32.cpp); natively the portable equal below does, and a
// test under Wine holds the two together. Everything is undone, also behind "?" and "#"; a "%" without two
// hexadecimal digits stays; a NUL and "%00" end the text.
#pragma once

#include <memory>
#include <string>

namespace zab {

/// Keeps the library of Windows from the first text that holds a "%" to its own end. When there is no such
/// library or function, texts stay as they are.
class UrlUnescaper {
  public:
    void inPlace(std::string& text);
    /// Each "%XX" becomes one UTF-16 unit: nothing is decoded as UTF-8.
    void inPlace(std::u16string& text);

  private:
    std::shared_ptr<void> library_;
};

/// The portable equal. Linear.
void unescapePortably(std::string& text);
void unescapePortably(std::u16string& text);

}  // namespace zab
