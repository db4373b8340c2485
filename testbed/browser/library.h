// Libraries of the bed's process: the module, and the runtime with text in its containers. Under Windows as
// they are; natively the same code, built as libraries of the machine.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "binding/runtime.h"
#include "runtime/standin.h"

namespace zab::testbed {

/// With its last backslash. Under Windows only.
std::string programFolder();

/// The library that is loaded under this name, else the one beside the program (or at a path). It stays loaded.
/// Throws std::runtime_error.
void* loadLibrary(const std::string& name);
bool isLoaded(const std::string& name);

/// The module with its state as it is after loading, whatever earlier browsers did with it. Natively it takes
/// the browser for one of this version; under Windows it looks itself.
void* loadFreshModule(const std::string& name, int browserVersion);

/// Throws std::runtime_error when the library has no such export.
void* exportedBy(void* library, const char* name);

/// Takes exported names out of a library as long as the result is kept, so that a look-up does not find them.
std::shared_ptr<void> hidesExports(void* library, const std::set<std::string>& names);

/// The loaded runtime. The library stays in the process, as a browser's does.
class RuntimeLibrary {
  public:
    /// Throws std::runtime_error.
    explicit RuntimeLibrary(const std::string& name);

    XpcomRuntime entries{};
    StandIn_SetHost_t* setHost = nullptr;
    StandIn_Call_t* callModule = nullptr;
    StandIn_CallSlot_t* callSlot = nullptr;
    const void* table = nullptr;
    const std::int32_t* containers = nullptr;  // initialised and not finished

    [[nodiscard]] void* handle() const noexcept { return entries.module; }
};

/// Text as a browser passes it: part of a larger buffer, without a terminator.
class PassedText {
  public:
    PassedText(const RuntimeLibrary& runtime, std::string_view text);
    PassedText(const RuntimeLibrary& runtime, std::u16string_view text);
    ~PassedText();
    PassedText(const PassedText&) = delete;
    PassedText& operator=(const PassedText&) = delete;

    operator const nsACString*() const { return reinterpret_cast<const nsACString*>(&storage_); }
    operator const nsAString*() const { return reinterpret_cast<const nsAString*>(&storage_); }
    [[nodiscard]] std::uint64_t argument() const { return reinterpret_cast<std::uint64_t>(&storage_); }

  private:
    const RuntimeLibrary& runtime_;
    bool isWide_;
    std::string narrow_;
    std::u16string wide_;
    StringContainerStorage storage_{};
};

}  // namespace zab::testbed
