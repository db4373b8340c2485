#include "settings/long_path_win32.h"

#include <shlobj.h>

#include "binding/library_win32.h"
#include "binding/owner.h"

namespace zab {
namespace {

template <class Interface>
struct ComTraits {
    using Raw = Interface*;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw object) noexcept { object->Release(); }
};
template <class Interface>
using ComOwner = Owner<ComTraits<Interface>>;

}  // namespace

std::optional<std::u16string> longPathOf(const std::u16string& path) {
    const HMODULE shell = LoadSystemLibrary("SHELL32.dll");
    const auto desktopFolder = exportOf<HRESULT WINAPI(IShellFolder**)>(shell, "SHGetDesktopFolder");
    const auto pathOf = exportOf<BOOL WINAPI(LPCITEMIDLIST, LPWSTR)>(shell, "SHGetPathFromIDListW");
    const auto allocatorOf = exportOf<HRESULT WINAPI(IMalloc**)>(shell, "SHGetMalloc");
    if (desktopFolder == nullptr || pathOf == nullptr || allocatorOf == nullptr) return std::nullopt;

    ComOwner<IMalloc> allocator;
    ComOwner<IShellFolder> desktop;
    if (FAILED(allocatorOf(allocator.put())) || FAILED(desktopFolder(desktop.put()))) return std::nullopt;

    std::u16string name = path;
    LPITEMIDLIST item = nullptr;
    if (FAILED(desktop.get()->ParseDisplayName(nullptr, nullptr, wide(name.data()), nullptr, &item, nullptr)))
        return std::nullopt;
    char16_t longPath[MAX_PATH] = u"";
    const bool known = pathOf(item, wide(longPath)) != FALSE;
    allocator.get()->Free(item);
    if (!known || longPath[0] == u'\0') return std::nullopt;
    return std::u16string(longPath);
}

}  // namespace zab
