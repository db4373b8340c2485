// The stand-in runtime as a library of this process: its entry points, and text in its containers.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "binding/runtime.h"
#include "runtime/standin.h"

namespace zab::testbed {

/// The loaded runtime. The library stays in the process, as a browser's does.
class RuntimeLibrary {
  public:
    /// Loads `path` (or takes the one that is loaded under its name). Throws std::runtime_error.
    explicit RuntimeLibrary(const std::string& path);

    XpcomRuntime entries{};
    StandIn_SetHost_t* setHost = nullptr;
    StandIn_Call_t* callModule = nullptr;
    StandIn_CallSlot_t* callSlot = nullptr;
    const void* table = nullptr;
    const StandInBalance* balance = nullptr;

    [[nodiscard]] void* handle() const noexcept { return entries.module; }

  private:
    void* find(const char* name) const;
};

/// Takes exported names out of a loaded library's table for a while, so that a lookup by name does not find
/// them.
class HiddenExports {
  public:
    HiddenExports(void* library, const std::vector<std::string>& names);
    ~HiddenExports();
    HiddenExports(const HiddenExports&) = delete;
    HiddenExports& operator=(const HiddenExports&) = delete;

  private:
    struct Patch {
        char* place;
        char original;
    };
    std::vector<Patch> patches_;
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
