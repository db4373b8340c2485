// Calls of the module into Windows, seen and failed from outside: its import table leads through here.
//
// Each call on the browser's thread is a step of the browser's faults, under the function's name. The module
// stays as it is shipped.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>

namespace zab::testbed {

class Browser;

/// In place of a failure: for functions that give something back, whose calls are counted only.
inline constexpr std::uint64_t kCannotFail = ~0ull;

struct HookedImport {
    const char* function;
    std::uint64_t failure = 0;    // what a failed call answers
    const void* instead{};        // runs in the function's place, on every thread; null: the function itself
    const char* step = function;  // what the faults call it
};

class ImportHook {
  public:
    /// The rows are used for as long as the process runs. Throws std::runtime_error when the module imports no
    /// such function.
    ImportHook(Browser& browser, std::span<const HookedImport> imports);
    /// The table keeps leading through here, because threads of the module may be in a call; steps are no
    /// longer counted.
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;
};

}  // namespace zab::testbed
