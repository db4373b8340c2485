#include "binding/version_resource_win32.h"

#include "binding/owner.h"
#include "binding/text.h"
#include "binding/wide_win32.h"

#include <winver.h>

namespace zab {
namespace {

struct GlobalMemoryTraits {
    using Raw = HGLOBAL;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw memory) noexcept { GlobalFree(memory); }
};
using GlobalMemory = Owner<GlobalMemoryTraits>;

/// The address of a locked block is both what is used and what is unlocked.
class GlobalLockHold {
  public:
    explicit GlobalLockHold(const GlobalMemory& memory) noexcept
        : memory_(memory.get()), address_(GlobalLock(memory_)) {}
    ~GlobalLockHold() {
        if (address_ != nullptr) GlobalUnlock(memory_);
    }
    GlobalLockHold(const GlobalLockHold&) = delete;
    GlobalLockHold& operator=(const GlobalLockHold&) = delete;

    [[nodiscard]] void* address() const noexcept { return address_; }

  private:
    HGLOBAL memory_;
    void* address_;
};

struct Translation {
    WORD language;
    WORD codePage;
};

/// A value of a version resource: a view into the resource, with its size in units of the value's kind.
struct Value {
    const void* data = nullptr;
    UINT size = 0;
};

Value valueOf(const void* resource, const std::u16string& block) {
    void* data = nullptr;
    UINT size = 0;
    if (!VerQueryValueW(resource, wide(block), &data, &size)) return {};
    return {data, size};
}

std::u16string hex4(WORD word) {
    std::u16string digits;
    for (int shift = 12; shift >= 0; shift -= 4) digits += u"0123456789abcdef"[word >> shift & 15];
    return digits;
}

std::optional<std::u16string> textIn(const void* resource, const char16_t* name) {
    const Value translation = valueOf(resource, u"\\VarFileInfo\\Translation");
    if (translation.data == nullptr || translation.size < sizeof(Translation)) return std::nullopt;
    const auto first = *static_cast<const Translation*>(translation.data);
    const Value text =
        valueOf(resource, u"\\StringFileInfo\\" + hex4(first.language) + hex4(first.codePage) + u"\\" + name);
    if (text.data == nullptr) return std::nullopt;
    const std::u16string_view characters(static_cast<const char16_t*>(text.data), text.size);
    return std::u16string(upToNul(characters));
}

}  // namespace

std::optional<std::u16string> executablePath() {
    char16_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, wide(path), MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return std::nullopt;  // at the limit the path is cut
    return std::u16string(path, length);
}

std::optional<std::u16string> versionResourceText(const std::u16string& path, const char16_t* name) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(wide(path), &ignored);
    if (size == 0) return std::nullopt;
    const GlobalMemory memory(GlobalAlloc(GMEM_MOVEABLE, size));
    if (!memory) return std::nullopt;
    const GlobalLockHold lock(memory);
    if (lock.address() == nullptr) return std::nullopt;
    if (!GetFileVersionInfoW(wide(path), 0, size, lock.address())) return std::nullopt;
    return textIn(lock.address(), name);
}

}  // namespace zab
