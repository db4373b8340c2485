// A function of a library that lies beside the download manager's program.
#pragma once

#include <string_view>

#include "binding/library_win32.h"
#include "settings/settings_store.h"

namespace zab {

/// The library is loaded when the function is first needed, and stays for the life of the process. One that is
/// missing, or lacks the function, is looked for again at the next use. For one thread.
template <class Function>
class CompanionFunction {
  public:
    constexpr CompanionFunction(std::u16string_view library, const char* name) noexcept
        : library_(library), name_(name) {}

    /// Null: there is none now.
    Function* function() {
        if (function_ == nullptr) load();
        return function_;
    }

  private:
    void load() {
        const auto path = companionPath(library_);
        Library library(path ? LoadLibraryW(wide(*path)) : nullptr);
        function_ = exportOf<Function>(library.get(), name_);
        if (function_ != nullptr) (void)library.release();
    }

    std::u16string_view library_;
    const char* name_;
    Function* function_ = nullptr;
};

}  // namespace zab
