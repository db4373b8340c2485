#include <cstdio>

#include "binding/browser_text_win32.h"
#include "binding/guard.h"
#include "binding/owner.h"
#include "binding/utf.h"
#include "binding/wide_win32.h"
#include "settings/message_texts.h"
#include "settings/paths.h"
#include "settings/settings_store.h"

namespace zab {
namespace {

constexpr std::uint32_t kPrimaryEnglish = 9;
constexpr std::uint32_t kDefaultSublanguage = 1024;

struct StreamTraits {
    using Raw = std::FILE*;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw file) noexcept { std::fclose(file); }
};

struct SearchTraits {
    using Raw = HANDLE;
    static Raw none() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(Raw search) noexcept { FindClose(search); }
};

/// Conversion from the ANSI code page of a language; empty when Windows does not know one.
ToUtf8 conversionFor(std::uint32_t languageId) {
    const DWORD_PTR locale = languageId <= kDefaultSublanguage ? languageId + kDefaultSublanguage : languageId;
    CHARSETINFO charset{};
    if (!TranslateCharsetInfo(reinterpret_cast<DWORD*>(locale), &charset, TCI_SRCLOCALE)) return {};
    return [codePage = charset.ciACP](std::string_view text) -> std::optional<std::string> {
        const auto wideText = utf16FromNarrow(text, codePage);
        if (!wideText) return std::nullopt;
        return utf8FromUtf16(*wideText);
    };
}

void overlayFile(const std::u16string& path, std::uint32_t languageId, const ToUtf8& toUtf8,
                 MessageTexts& texts) {
    const Owner<StreamTraits> stream(_wfopen(wide(path), L"r"));
    if (!stream) return;
    overlayLanguageFile([&](char* into, std::size_t size) { return std::fread(into, 1, size, stream.get()); },
                        languageId, toUtf8, texts);
}

void loadLanguage(MessageTexts& texts) {
    const auto setting = languageId();
    if (!setting) return;
    const std::uint32_t language = *setting & 0xFFFF;
    const auto program = exePath();
    if (language == kPrimaryEnglish || !program) return;

    const std::u16string folder = std::u16string(folderOf(*program)) + u"Languages\\";
    WIN32_FIND_DATAW found{};
    const Owner<SearchTraits> search(FindFirstFileW(wide(folder + u"zab_*.lng"), &found));
    if (!search) return;
    const ToUtf8 toUtf8 = conversionFor(language);
    do {
        overlayFile(folder + utf16(found.cFileName), language, toUtf8, texts);
    } while (FindNextFileW(search.get(), &found));
}

}  // namespace

void LoadLanguage(MessageTexts& texts) noexcept {
    texts.loaded = 1;
    guarded([&] { loadLanguage(texts); });
}

const MessageTexts& messageTexts() {
    static const MessageTexts texts = [] {
        MessageTexts loading;
        LoadLanguage(loading);
        return loading;
    }();
    return texts;
}

}  // namespace zab
