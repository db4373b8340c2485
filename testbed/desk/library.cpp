#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <set>
#include <span>
#include <stdexcept>

#include "binding/never_destroyed.h"
#include "browser/library.h"
#include "desk/desk.h"

namespace zab::testbed {
namespace {

/// The data of a loaded library that its code can change. Read and written word by word, since it lies among
/// the zones that a sanitizer guards.
class LibraryState {
  public:
    explicit LibraryState(void* library) {
        link_map* map = nullptr;
        dlinfo(library, RTLD_DI_LINKMAP, &map);
        base_ = map->l_addr;
        dl_iterate_phdr(&addSegments, this);
    }

    /// Makes it as it was; what it pointed to stays known, as a library's that is never unloaded.
    void restore() {
        for (const auto& [word, saved] : atStart_) {
            const auto now = read(word);
            if (now == saved) continue;
            if (isAddress(now)) former_.insert(now);
            write(word, saved);
        }
    }

  private:
    using Word = std::uintptr_t;

    /// Whether a word may point into a heap; counters of a fuzz program's coverage do not.
    static bool isAddress(Word word) { return word % sizeof(Word) == 0 && word >> 47 == 0; }
    __attribute__((no_sanitize("address"))) static Word read(const volatile Word* word) { return *word; }
    __attribute__((no_sanitize("address"))) static void write(volatile Word* word, Word value) {
        *word = value;
    }

    static int addSegments(dl_phdr_info* info, std::size_t, void* state) {
        auto& self = *static_cast<LibraryState*>(state);
        if (info->dlpi_addr != self.base_) return 0;
        constexpr Word kPage = 4096;
        const std::span parts(info->dlpi_phdr, info->dlpi_phnum);
        Word readOnlyEnd = 0;
        for (const auto& part : parts)
            if (part.p_type == PT_GNU_RELRO)
                readOnlyEnd = (self.base_ + part.p_vaddr + part.p_memsz) / kPage * kPage;
        for (const auto& part : parts) {
            if (part.p_type != PT_LOAD || (part.p_flags & PF_W) == 0) continue;
            const Word begin = std::max(self.base_ + part.p_vaddr, readOnlyEnd);
            const Word end = self.base_ + part.p_vaddr + part.p_memsz;
            for (Word at = (begin + 7) / 8 * 8; at + 8 <= end; at += 8)
                self.atStart_.emplace_back(reinterpret_cast<Word*>(at), read(reinterpret_cast<Word*>(at)));
        }
        return 1;
    }

    ElfW(Addr) base_ = 0;
    std::vector<std::pair<Word*, Word>> atStart_;
    std::set<Word> former_;
};

std::set<std::string>& hiddenNames() {
    static std::set<std::string> names;
    return names;
}

}  // namespace

Desk& desk() noexcept {
    static NeverDestroyed<Desk> only;
    return only.get();
}

bool isLoaded(const std::string&) { return false; }

void* loadLibrary(const std::string& name) {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    const auto path = program.parent_path() / (name.substr(0, name.rfind(".dll")) + ".so");
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw std::runtime_error(dlerror());
    return library;
}

void* loadFreshModule(const std::string& name, int browserVersion) {
    void* library = loadLibrary(name);
    static auto& state = *new LibraryState(library);
    state.restore();
    desk().posted.clear();
    desk().browserVersion = browserVersion;
    auto& runtime = desk().runtime;
    runtime = {};
    runtime.module = loadLibrary("xul.dll");
    for (const auto& entry : kRuntimeEntryPoints)
        if (!hiddenNames().contains(entry.name))
            *reinterpret_cast<void**>(reinterpret_cast<char*>(&runtime) + entry.offset) =
                exportedBy(runtime.module, entry.name);
    reinterpret_cast<ZabDesk_Sit_t*>(exportedBy(library, "ZabDesk_Sit"))(&desk());
    return library;
}

void* exportedBy(void* library, const char* name) {
    void* address = dlsym(library, name);
    if (address == nullptr) throw std::runtime_error(std::string("a library lacks ") + name);
    return address;
}

std::shared_ptr<void> hidesExports(void* library, const std::set<std::string>& names) {
    hiddenNames() = names;
    return {library, [](void*) { hiddenNames().clear(); }};
}

}  // namespace zab::testbed
