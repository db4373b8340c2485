// The portable equal of UrlUnescape, and its use where there is no Windows to ask.

#include "media/parsers/url_unescape.h"

#include <cstddef>

#include "binding/text.h"

namespace zab {
namespace {

template <class C>
void unescape(std::basic_string<C>& text) {
    std::size_t to = 0;
    for (std::size_t from = 0; from < text.size(); ++from) {
        C c = text[from];
        if (c == C('%') && text.size() - from > 2) {
            const int high = hexValue(text[from + 1]), low = hexValue(text[from + 2]);
            if (high >= 0 && low >= 0) {
                c = static_cast<C>(high * 16 + low);
                from += 2;
            }
        }
        if (c == C(0)) break;
        text[to++] = c;
    }
    text.resize(to);
}

}  // namespace

void unescapePortably(std::string& text) { unescape(text); }
void unescapePortably(std::u16string& text) { unescape(text); }

#ifndef _WIN32
void UrlUnescaper::inPlace(std::string& text) { unescapePortably(text); }
void UrlUnescaper::inPlace(std::u16string& text) { unescapePortably(text); }
#endif

}  // namespace zab
