#include "scenarios/import_hook.h"

#include <bit>
#include <cstring>
#include <stdexcept>
#include <string>

#include "binding/wide_win32.h"
#include "browser/browser.h"

namespace zab::testbed {
namespace {

Browser* hookedBrowser = nullptr;
DWORD hookedThread = 0;

/// Whether this call fails.
bool fails(const HookedImport& import) {
    if (GetCurrentThreadId() != hookedThread || hookedBrowser == nullptr) return false;
    Faults& faults = hookedBrowser->faults();
    const DWORD error = GetLastError();
    if (import.failure == kCannotFail) faults.note(import.step);
    const bool result = import.failure != kCannotFail && faults.fails(import.step);
    SetLastError(result ? ERROR_NOT_ENOUGH_MEMORY : error);
    return result;
}

// Keeps the four register arguments, asks fails(import), and goes on to the target or answers the failure. It
// has no frame any more when the target runs, so exceptions pass it by.
constexpr unsigned char kTrampoline[] = {
    0x51, 0x52, 0x41, 0x50, 0x41, 0x51,              // push rcx, rdx, r8, r9
    0x48, 0x83, 0xEC, 0x28,                          // sub rsp, 40
    0x48, 0xB9, 0,    0,    0,    0,    0, 0, 0, 0,  // mov rcx, import
    0x48, 0xB8, 0,    0,    0,    0,    0, 0, 0, 0,  // mov rax, fails
    0xFF, 0xD0,                                      // call rax
    0x48, 0x83, 0xC4, 0x28,                          // add rsp, 40
    0x41, 0x59, 0x41, 0x58, 0x5A, 0x59,              // pop r9, r8, rdx, rcx
    0x84, 0xC0, 0x75, 0x0C,                          // test al, al; jnz to the failure
    0x48, 0xB8, 0,    0,    0,    0,    0, 0, 0, 0,  // mov rax, target
    0xFF, 0xE0,                                      // jmp rax
    0x48, 0xB8, 0,    0,    0,    0,    0, 0, 0, 0,  // mov rax, failure
    0xC3,                                            // ret
};
constexpr std::size_t kImportAt = 12, kFailsAt = 22, kTargetAt = 48, kFailureAt = 60;

void put(unsigned char* at, std::uint64_t operand) { std::memcpy(at, &operand, sizeof operand); }

void* trampolineTo(const void* target, const HookedImport& import) {
    auto* code = static_cast<unsigned char*>(
        VirtualAlloc(nullptr, sizeof kTrampoline, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
    if (code == nullptr) throw std::bad_alloc{};
    std::memcpy(code, kTrampoline, sizeof kTrampoline);
    put(code + kImportAt, std::bit_cast<std::uint64_t>(&import));
    put(code + kFailsAt, std::bit_cast<std::uint64_t>(&fails));
    put(code + kTargetAt, std::bit_cast<std::uint64_t>(import.instead != nullptr ? import.instead : target));
    put(code + kFailureAt, import.failure);
    return code;
}

/// Where the module keeps the address of an imported function.
void** importOf(char* base, const char* function) {
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const auto& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + place.VirtualAddress);
    for (; library->Name != 0; ++library) {
        const auto* names = reinterpret_cast<const std::uint64_t*>(base + library->OriginalFirstThunk);
        auto* places = reinterpret_cast<void**>(base + library->FirstThunk);
        for (; *names != 0; ++names, ++places) {
            if (IMAGE_SNAP_BY_ORDINAL64(*names)) continue;
            const auto* byName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + *names);
            if (std::strcmp(reinterpret_cast<const char*>(byName->Name), function) == 0) return places;
        }
    }
    throw std::runtime_error(std::string("the module does not import ") + function);
}

}  // namespace

ImportHook::ImportHook(Browser& browser, std::span<const HookedImport> imports) {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const char*>(browser.module().Observe), &module);
    hookedBrowser = &browser;
    hookedThread = GetCurrentThreadId();
    for (const HookedImport& import : imports) {
        void** const place = importOf(reinterpret_cast<char*>(module), import.function);
        DWORD old = 0;
        VirtualProtect(place, sizeof *place, PAGE_READWRITE, &old);
        *place = trampolineTo(*place, import);
        VirtualProtect(place, sizeof *place, old, &old);
    }
}

ImportHook::~ImportHook() { hookedBrowser = nullptr; }

}  // namespace zab::testbed
