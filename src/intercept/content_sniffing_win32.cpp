#include <algorithm>
#include <string>
#include <string_view>

#include "binding/guard.h"
#include "binding/library_win32.h"
#include "binding/owner.h"
#include "binding/text.h"
#include "intercept/content_sniffing.h"
#include "intercept/mime_classes.h"

// Behind windows.h, which it needs.
#include <objbase.h>
#include <urlmon.h>

namespace zab {
namespace {

constexpr const char* kLibrary = "Urlmon.dll";
constexpr std::uint32_t kMostBytes = 256;

struct TaskMemoryTraits {
    using Raw = LPWSTR;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw memory) noexcept { CoTaskMemFree(memory); }
};

using Sniffer = decltype(FindMimeFromData);

/// Null: there is none now. Once found it stays.
Sniffer* sniffer() noexcept {
    static Sniffer* found = nullptr;
    if (found != nullptr) return found;
    const HMODULE loaded = GetModuleHandleA(kLibrary);
    found = exportOf<Sniffer>(loaded != nullptr ? loaded : LoadSystemLibrary(kLibrary), "FindMimeFromData");
    return found;
}

/// MIME types are ASCII; empty when there is none.
std::string sniffedType(const std::uint8_t* data, std::uint32_t length) {
    Sniffer* const sniff = sniffer();
    Owner<TaskMemoryTraits> type;
    // The sniffer takes its bytes without const and does not write to them.
    if (sniff == nullptr || FAILED(sniff(nullptr, nullptr, const_cast<std::uint8_t*>(data),
                                         std::min(length, kMostBytes), nullptr, 0, type.put(), 0)))
        return {};
    std::string narrow;
    if (type)
        for (const char16_t c : std::u16string_view(utf16(type.get()))) narrow += static_cast<char>(c);
    return narrow;
}

}  // namespace

bool SniffContentType(const std::uint8_t* data, std::uint32_t length, MyStrClass& classCode) noexcept {
    return guarded(false, [&] {
        if (data == nullptr || length == 0) return false;
        const std::string type = sniffedType(data, length);
        if (type.empty() || isOneOfIgnoringCase(type, kTypesWithoutNews)) return false;
        classCode.Set(ClassifyMimeType(type));
        return true;
    });
}

}  // namespace zab
