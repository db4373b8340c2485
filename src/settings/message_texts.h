// The texts that the user sees, in UTF-8: English ones built in, overlaid from the download manager's language
// file.
//
// A language file's first line is "lang=" and the language identifier in hexadecimal; every other line is a
// message ID in decimal, "=", and the text, in which \r, \n, \", \' and \\ stand for the characters. A file
// that begins with the UTF-8 byte order mark is UTF-8, any other is in the ANSI code page of its language.
// Lines longer than 8,192 bytes are left out.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "binding/my_str.h"

namespace zab {

/// The number by which a language file names a text.
enum class TextId : std::uint32_t {
    savingFlvTitle = 20790,
    savingFlvHelp = 20791,
    noFlvFound = 20792,
    downloadWithZab = 20793,
    downloadAllWithZab = 20794,
    noLinksFound = 20795,
    video = 20850,
    audio = 20851,
    downloadThis = 20852,         // %s: video or audio
    downloadThisWithZab = 20853,  // %s
    aboutPanel = 20854,
    close = 20855,
    aboutPanelText = 20856,
    panelTitle = 20857,
    downloadFromPage = 20858,         // %s
    downloadFromPageWithZab = 20859,  // %s
    gigabytes = 20576,
    megabytes = 20577,
    kilobytes = 20578,
    bytes = 20579,
    downloadAll = 20860,
    fileCount = 20861,  // %ld, %s
    file = 20862,
    managerRunsElevated = 20865,
    cannotTransfer = 20905,
    differentPrivileges = 20906,
    checkBrowserProperties = 20907,
    hoursMinutes = 20421,    // %ld, %d
    minutesSeconds = 20422,  // %d, %d
    seconds = 20423,         // %d
    quality = 20942,
};

inline constexpr std::size_t kTextCount = 31;

class MessageTexts {
  public:
    /// The built-in texts.
    MessageTexts();

    [[nodiscard]] const MyStrClass& operator[](TextId id) const noexcept;
    /// A text that a stranger wrote, format directives included: it is never handed to printf.
    bool replace(std::int32_t id, std::string_view text) noexcept;  // false: no such ID

    std::uint32_t loaded = 0;  // 1: the language was looked for

  private:
    std::array<MyStrClass, kTextCount> texts_;
};

/// Puts up to `size` next bytes of a file into `into` and says how many; 0 at its end.
using ReadBytes = std::function<std::size_t(char* into, std::size_t size)>;
/// Text of the file's code page as UTF-8; nothing when it cannot be converted, and the text stays as it is.
using ToUtf8 = std::function<std::optional<std::string>(std::string_view)>;

/// Replaces the texts that the file names, when it is one of the language `languageId` (16 bits). False: it is
/// not. `toUtf8` serves files without a byte order mark; empty: their texts stay as they are.
bool overlayLanguageFile(const ReadBytes& read, std::uint32_t languageId, const ToUtf8& toUtf8,
                         MessageTexts& texts);

/// Overlays every language file of the language that the user chose, in the order of the folder; the built-in
/// texts stay where the settings name no language or English.
void LoadLanguage(MessageTexts& texts) noexcept;

/// The texts of this process, loaded on first use.
const MessageTexts& messageTexts();

}  // namespace zab
