#include "browser/runtime_library.h"

#include <stdexcept>

#include "binding/wide_win32.h"

namespace zab::testbed {

RuntimeLibrary::RuntimeLibrary(const std::string& path) {
    entries.module = LoadLibraryA(path.c_str());
    if (entries.module == nullptr) throw std::runtime_error("cannot load " + path);
    for (const auto& entry : kRuntimeEntryPoints)
        *reinterpret_cast<void**>(reinterpret_cast<char*>(&entries) + entry.offset) = find(entry.name);
    setHost = reinterpret_cast<StandIn_SetHost_t*>(find("StandIn_SetHost"));
    callModule = reinterpret_cast<StandIn_Call_t*>(find("StandIn_Call"));
    callSlot = reinterpret_cast<StandIn_CallSlot_t*>(find("StandIn_CallSlot"));
    table = reinterpret_cast<StandIn_Table_t*>(find("StandIn_Table"))();
    balance = reinterpret_cast<StandIn_Balance_t*>(find("StandIn_Balance"))();
}

void* RuntimeLibrary::find(const char* name) const {
    auto* entry = reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(entries.module), name));
    if (entry == nullptr) throw std::runtime_error(std::string("the runtime lacks ") + name);
    return entry;
}

HiddenExports::HiddenExports(void* library, const std::vector<std::string>& names) {
    auto* base = static_cast<char*>(library);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const auto& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto* exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + place.VirtualAddress);
    const auto* rows = reinterpret_cast<const DWORD*>(base + exports->AddressOfNames);
    for (const auto& name : names) {
        for (DWORD i = 0; i < exports->NumberOfNames; ++i) {
            char* text = base + rows[i];
            if (name != text) continue;
            // The last character alone changes, to the smallest one: the table stays sorted for the lookup.
            char* last = text + name.size() - 1;
            DWORD old = 0;
            VirtualProtect(last, 1, PAGE_READWRITE, &old);
            patches_.push_back({last, *last});
            *last = '\x01';
        }
    }
    if (patches_.size() != names.size()) throw std::runtime_error("a name to hide is not exported");
}

HiddenExports::~HiddenExports() {
    for (const auto& patch : patches_) *patch.place = patch.original;
}

// What stands behind the text shows in every result that was read past its length.

PassedText::PassedText(const RuntimeLibrary& runtime, std::string_view text)
    : runtime_(runtime), isWide_(false), narrow_(std::string(text) + "<behind the text>") {
    runtime_.entries.NS_CStringContainerInit2(&storage_, narrow_.data(),
                                              static_cast<std::uint32_t>(text.size()), 2 | 8);
}

PassedText::PassedText(const RuntimeLibrary& runtime, std::u16string_view text)
    : runtime_(runtime), isWide_(true), wide_(std::u16string(text) + u"<behind the text>") {
    runtime_.entries.NS_StringContainerInit2(&storage_, wide_.data(), static_cast<std::uint32_t>(text.size()),
                                             2 | 8);
}

PassedText::~PassedText() {
    isWide_ ? runtime_.entries.NS_StringContainerFinish(&storage_)
            : runtime_.entries.NS_CStringContainerFinish(&storage_);
}

}  // namespace zab::testbed
