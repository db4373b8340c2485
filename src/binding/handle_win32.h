// The owners of what CloseHandle closes.
#pragma once

#include "binding/owner.h"
#include "binding/wide_win32.h"

namespace zab {

/// Events, mutexes, threads, tokens, mappings: null when there is none.
struct HandleTraits {
    using Raw = HANDLE;
    static constexpr Raw none() noexcept { return nullptr; }
    static void close(Raw handle) noexcept { CloseHandle(handle); }
};
using Handle = Owner<HandleTraits>;

/// What CreateFile gives, with its own value for none.
struct FileTraits : HandleTraits {
    static Raw none() noexcept { return INVALID_HANDLE_VALUE; }
};
using FileHandle = Owner<FileTraits>;

}  // namespace zab
