#include <filesystem>
#include <stdexcept>
#include <utility>
#include <vector>

#include "binding/wide_win32.h"
#include "browser/library.h"

namespace zab::testbed {
namespace {

std::string besideProgram(const std::string& name) {
    return name.find_first_of("\\/") == name.npos ? programFolder() + name : name;
}

}  // namespace

std::string programFolder() {
    char program[MAX_PATH];
    const std::string path(program, GetModuleFileNameA(nullptr, program, MAX_PATH));
    return path.substr(0, path.rfind('\\') + 1);
}

bool isLoaded(const std::string& name) { return GetModuleHandleA(name.c_str()) != nullptr; }

void* loadLibrary(const std::string& name) {
    void* library = GetModuleHandleA(name.c_str());
    if (library == nullptr) library = LoadLibraryA(besideProgram(name).c_str());
    if (library == nullptr) throw std::runtime_error("cannot load " + name);
    return library;
}

void* loadFreshModule(const std::string& name, int) {
    static unsigned copies = 0;
    const auto folder =
        std::filesystem::temp_directory_path() / ("zab_modules_" + std::to_string(GetCurrentProcessId()));
    std::filesystem::create_directories(folder);
    const auto copy = folder / ("module" + std::to_string(++copies) + ".dll");
    std::filesystem::copy_file(besideProgram(name), copy, std::filesystem::copy_options::overwrite_existing);
    return loadLibrary(copy.string());
}

void* exportedBy(void* library, const char* name) {
    auto* address = reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
    if (address == nullptr) throw std::runtime_error(std::string("a library lacks ") + name);
    return address;
}

std::shared_ptr<void> hidesExports(void* library, const std::set<std::string>& names) {
    auto* base = static_cast<char*>(library);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const auto& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto* exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + place.VirtualAddress);
    const auto* rows = reinterpret_cast<const DWORD*>(base + exports->AddressOfNames);
    std::vector<std::pair<char*, char>> patches;
    for (const auto& name : names) {
        for (DWORD i = 0; i < exports->NumberOfNames; ++i) {
            char* text = base + rows[i];
            if (name != text) continue;
            // The last character alone changes, to the smallest one: the table stays sorted for the lookup.
            char* last = text + name.size() - 1;
            DWORD old = 0;
            VirtualProtect(last, 1, PAGE_READWRITE, &old);
            patches.emplace_back(last, *last);
            *last = '\x01';
        }
    }
    if (patches.size() != names.size()) throw std::runtime_error("a name to hide is not exported");
    return {library, [patches](void*) {
                for (const auto& [letter, original] : patches) *letter = original;
            }};
}

}  // namespace zab::testbed
