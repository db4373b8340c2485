// Encodings for the runtime as it is built natively.
#include <cstring>
#include <string>

#include "binding/utf.h"
#include "freestanding.h"

namespace {

/// Windows counts first and writes then; what does not fit is not written.
template <class Char>
int written(const std::basic_string<Char>& text, Char* out, int room) {
    const auto size = static_cast<int>(text.size());
    if (room == 0) return size;
    if (room < size) return 0;
    std::memcpy(out, text.data(), text.size() * sizeof(Char));
    return size;
}

}  // namespace

int MultiByteToWideChar(uint32_t codePage, uint32_t, const char* text, int bytes, char16_t* out, int units) {
    const std::string_view from(text, static_cast<size_t>(bytes));
    std::u16string to;
    if (codePage != 0) {
        if (zab::wellFormedUtf8(from) == from) to = zab::utf16FromUtf8(from);
    } else {
        for (const char c : from) to += static_cast<unsigned char>(c);
    }
    return written(to, out, units);
}

int WideCharToMultiByte(uint32_t codePage, uint32_t, const char16_t* text, int units, char* out, int bytes,
                        const char*, int*) {
    const std::u16string_view from(text, static_cast<size_t>(units));
    std::string to;
    if (codePage != 0) {
        to = zab::utf8FromUtf16(from);
    } else {
        for (const char16_t c : from) to += c < 0x100 ? static_cast<char>(c) : '?';
    }
    return written(to, out, bytes);
}
