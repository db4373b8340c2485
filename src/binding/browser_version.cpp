#include "binding/browser_version.h"

#include <limits>

#include "binding/text.h"

namespace zab {
namespace {

constexpr std::size_t kFileVersionLimit = 127;  // characters
constexpr std::u16string_view kPaleMoon = u"\\palemoon.exe";
constexpr std::int32_t kPaleMoonTreatedAs = 28;
constexpr std::int32_t kPaleMoonOwnNumbersEnd = 4;

constexpr std::int32_t kXulAlone = 22;
constexpr const char16_t* kLibraries[] = {u"xpcom.dll", u"xul.dll"};

constinit std::int32_t g_browserMajorVersion = kUnknownBrowserVersion;

}  // namespace

std::int32_t majorOfFileVersion(std::u16string_view fileVersion) noexcept {
    const auto text = fileVersion.substr(0, kFileVersionLimit);
    const bool commas = text.find(u',') != std::u16string_view::npos;
    const auto major =
        leadingDigits(upTo(text, commas ? u',' : u'.'), std::numeric_limits<std::int32_t>::max());
    return static_cast<std::int32_t>(major.value_or(0));
}

std::int32_t treatedAsVersion(std::int32_t major, std::u16string_view executable) noexcept {
    const auto fileName = executable.find_last_of(u'\\');
    if (fileName == std::u16string_view::npos) return major;
    if (!equalsIgnoringCase(executable.substr(fileName), kPaleMoon)) return major;
    return major < kPaleMoonOwnNumbersEnd ? major : kPaleMoonTreatedAs;
}

std::span<const char16_t* const> runtimeLibraries(std::int32_t major) noexcept {
    const std::span<const char16_t* const> all{kLibraries};
    return major < kXulAlone ? all : all.last(1);
}

std::u16string_view folderOf(std::u16string_view path) noexcept {
    return path.substr(0, path.find_last_of(u'\\') + 1);
}

std::int32_t browserMajorVersion() noexcept { return g_browserMajorVersion; }
void setBrowserMajorVersion(std::int32_t major) noexcept { g_browserMajorVersion = major; }

}  // namespace zab
