// The stand-in runtime as a library of this process: its entry points, and text in its containers.
#pragma once

#include <string>
#include <string_view>

#include "binding/runtime.h"
#include "runtime/standin.h"

namespace zab::testbed {

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
