#include "settings/message_texts.h"

#include <algorithm>

#include "binding/text.h"

namespace zab {
namespace {

struct BuiltInText {
    TextId id;
    std::string_view text;
};

constexpr BuiltInText kBuiltInTexts[] = {
    {TextId::savingFlvTitle, "Saving FLV video"},
    {TextId::savingFlvHelp,
     "You can save FLV videos that you like by using \"Download FLV video content with ZAB\" menu item in "
     "browser context menu. \r\n\r\nBrowser Context menu shows when you right click on a web page (but not on "
     "an FLV player) in your browser or by using context menu key on the keyboard"},
    {TextId::noFlvFound,
     "Cannot find FLV video links on this web page.\r\nIt's possible that your browser has not requested the "
     "video file yet. You will need to wait until your browser makes the request and try again. In some cases "
     "you just need to press \"Play\" button in your web player."},
    {TextId::downloadWithZab, "Download with ZAB"},
    {TextId::downloadAllWithZab, "Download All with ZAB"},
    {TextId::noLinksFound,
     "Cannot find the links!\r\nIf this page does have links, please refresh this page, and try again. If the "
     "problem persists, please contact ZAB support team."},
    {TextId::video, "video"},
    {TextId::audio, "audio"},
    {TextId::downloadThis, "Download this %s"},
    {TextId::downloadThisWithZab, "Download this %s with ZAB"},
    {TextId::aboutPanel, "About this panel"},
    {TextId::close, "Close"},
    {TextId::aboutPanelText,
     "This is ZAB download panel.\r\nIt can be customized or turned off on \"ZAB->Options dialog->General "
     "tab\""},
    {TextId::panelTitle, "ZAB download panel"},
    {TextId::downloadFromPage, "Download %s from this page"},
    {TextId::downloadFromPageWithZab, "Download %s from this page with ZAB"},
    {TextId::gigabytes, "GB"},
    {TextId::megabytes, "MB"},
    {TextId::kilobytes, "KB"},
    {TextId::bytes, "Bytes"},
    {TextId::downloadAll, "Download all"},
    {TextId::fileCount, "(%ld %s files)"},
    {TextId::file, "file"},
    {TextId::managerRunsElevated,
     "Firefox cannot transfer file download to Zabrion because you have \"Run this program as an "
     "administrator\" box checked on the windows file properties dialog of ZABMan.exe. \r\n\r\nPlease open ZAB "
     "folder, right click on \"ZABMan.exe\", select \"Properties\" menu item, switch to \"Compatibility\" tab, "
     "and remove the tick from \"Run this program as an administrator\" checkbox."},
    {TextId::cannotTransfer, "Cannot transfer the download to ZAB"},
    {TextId::differentPrivileges,
     "It's possible that your browser and ZAB are set to run under different privileges (different Elevation "
     "levels).\r\n\r\nIf you run ZAB using \"Run as an administrator\" menu item, please exit ZAB (pick "
     "\"Tasks->Exit\" menu item from ZAB main window) and run ZAB again normally.\r\n\r\nMaybe you have \"Run "
     "this program as an administrator\" box checked on the Windows file properties dialog of ZABMan.exe. "
     "Please open ZAB folder, right click on \"ZABMan.exe\", select \"Properties\" menu item, switch to "
     "\"Compatibility\" tab, and remove the tick from \"Run this program as an administrator\" checkbox. Also "
     "you need to remove the compatibility with previous versions of Windows if there are any enabled. Please "
     "restart ZAB after that."},
    {TextId::checkBrowserProperties,
     "If \"Run this program as an administrator\" or \"compatibility with previous versions of Windows\" boxes "
     "are not checked for ZAB, please uncheck them on Windows properties of your browser."},
    {TextId::hoursMinutes, "%ld hour(s) %d min"},
    {TextId::minutesSeconds, "%d min %d sec"},
    {TextId::seconds, "%d sec"},
    {TextId::quality, "quality"},
};
static_assert(std::size(kBuiltInTexts) == kTextCount);

constexpr std::optional<std::size_t> indexOf(TextId id) noexcept {
    for (std::size_t i = 0; i < kTextCount; ++i)
        if (kBuiltInTexts[i].id == id) return i;
    return std::nullopt;
}

constexpr bool everyTextIsFoundAtItsPlace() {
    for (std::size_t i = 0; i < kTextCount; ++i)
        if (indexOf(kBuiltInTexts[i].id) != i) return false;
    return true;
}
static_assert(everyTextIsFoundAtItsPlace(), "no ID stands twice");

constexpr std::size_t kLongestLine = 8192;  // bytes, line feed included
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Lines of a file, each with its line feed. Holds one piece and one line, however long the file's lines are.
class LineReader {
  public:
    explicit LineReader(const ReadBytes& read) : read_(read) {}

    /// The next line, valid until the next call; an empty one in place of one that is too long. Nothing at the
    /// end.
    std::optional<std::string_view> next() {
        line_.clear();
        bool any = false, tooLong = false, ended = false;
        while (!ended && more()) {
            const std::string_view rest(piece_.data() + at_, end_ - at_);
            const auto lineFeed = rest.find('\n');
            ended = lineFeed != std::string_view::npos;
            const std::string_view part = ended ? rest.substr(0, lineFeed + 1) : rest;
            at_ += part.size();
            any = true;
            tooLong = tooLong || line_.size() + part.size() > kLongestLine;
            if (!tooLong) line_ += part;
        }
        if (!any) return std::nullopt;
        return tooLong ? std::string_view{} : std::string_view(line_);
    }

  private:
    bool more() {
        if (at_ == end_) {
            at_ = 0;
            end_ = std::min(read_(piece_.data(), piece_.size()), piece_.size());
        }
        return at_ != end_;
    }

    const ReadBytes& read_;
    std::array<char, 4096> piece_{};
    std::size_t at_ = 0, end_ = 0;  // what is left of the piece
    std::string line_;
};

void undoEscape(std::string& text, std::string_view escape, char character) {
    std::string result;
    std::size_t at = 0;
    for (auto found = text.find(escape); found != std::string::npos; found = text.find(escape, at)) {
        result.append(text, at, found - at);
        result += character;
        at = found + escape.size();
    }
    result.append(text, at);
    text = std::move(result);
}

/// A line of the file as the user sees it. The line's own end goes first, so that a text which ends in the
/// escape for a line feed keeps that one; a text of one or two bytes keeps even its end.
std::string shown(std::string text) {
    if (text.size() > 2 && text.back() == '\n') {
        text.pop_back();
        if (text.back() == '\r') text.pop_back();
    }
    // One after the other over the whole text: "\\n" is a backslash and a line feed.
    constexpr struct {
        std::string_view escape;
        char character;
    } kEscapes[] = {{"\\r", '\r'}, {"\\n", '\n'}, {"\\\"", '"'}, {"\\'", '\''}, {"\\\\", '\\'}};
    for (const auto& row : kEscapes) undoEscape(text, row.escape, row.character);
    return text;
}

/// What stands behind the first "=".
std::optional<std::string_view> valueOf(std::string_view line) noexcept {
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    return line.substr(equals + 1);
}

bool namesLanguage(std::string_view firstLine, std::uint32_t languageId) noexcept {
    std::uint32_t named = 0;
    const auto value = valueOf(firstLine);
    return firstLine.starts_with("lang") && value && scanHex32(*value, named) && named == languageId;
}

}  // namespace

MessageTexts::MessageTexts() {
    for (std::size_t i = 0; i < kTextCount; ++i) texts_[i].Set(kBuiltInTexts[i].text);
}

const MyStrClass& MessageTexts::operator[](TextId id) const noexcept { return texts_[*indexOf(id)]; }

bool MessageTexts::replace(std::int32_t id, std::string_view text) noexcept {
    const auto index = indexOf(static_cast<TextId>(id));
    if (index) texts_[*index].Set(text);
    return index.has_value();
}

bool overlayLanguageFile(const ReadBytes& read, std::uint32_t languageId, const ToUtf8& toUtf8,
                         MessageTexts& texts) {
    LineReader lines(read);
    std::string_view firstLine = upToNul(lines.next().value_or(std::string_view{}));
    const bool isUtf8 = firstLine.starts_with(kByteOrderMark);
    if (isUtf8) firstLine.remove_prefix(kByteOrderMark.size());
    if (!namesLanguage(firstLine, languageId)) return false;

    while (const auto next = lines.next()) {
        const std::string_view line = upToNul(*next);
        const auto value = valueOf(line);
        std::int32_t id = 0;
        if (!value || !scanInt32(line, id)) continue;
        std::optional<std::string> converted;
        if (!isUtf8 && toUtf8) converted = toUtf8(*value);
        texts.replace(id, shown(converted ? std::move(*converted) : std::string(*value)));
    }
    return true;
}

}  // namespace zab
