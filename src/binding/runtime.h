// The browser's runtime as the module sees it: 23 entry points found by name, each of which may be missing.
//
// The record is filled once while the module is loaded and never changes afterwards. An entry that the runtime
// does not export stays null; who needs it tests it, and its feature is off. Prototypes are those of the
// published frozen string API.
#pragma once

#include <cstddef>
#include <cstdint>

#include "binding/interfaces/services.h"

namespace zab {

/// A string container: 16 bytes in every browser in range, with room for the older, larger layout.
struct alignas(8) StringContainerStorage {
    std::uint8_t bytes[32];
};

struct XpcomRuntime {
    void* module;  // HMODULE of the runtime library; null: none was found
    nsresult (*NS_GetServiceManager)(nsIServiceManager** out);
    nsresult (*NS_GetComponentManager)(nsISupports** out);
    void (*NS_Free)(void* memory);
    nsresult (*NS_StringContainerInit)(StringContainerStorage* container);
    nsresult (*NS_StringContainerInit2)(StringContainerStorage* container, const char16_t* data,
                                        std::uint32_t length, std::uint32_t flags);
    void (*NS_StringContainerFinish)(StringContainerStorage* container);
    std::uint32_t (*NS_StringGetData)(const nsAString* text, const char16_t** data, std::uint32_t* terminated);
    std::uint32_t (*NS_StringGetMutableData)(nsAString* text, std::uint32_t length, char16_t** data);
    char16_t* (*NS_StringCloneData)(const nsAString* text);
    nsresult (*NS_StringSetData)(nsAString* text, const char16_t* data, std::uint32_t length);
    nsresult (*NS_StringSetDataRange)(nsAString* text, std::uint32_t cutOffset, std::uint32_t cutLength,
                                      const char16_t* data, std::uint32_t length);
    nsresult (*NS_StringCopy)(nsAString* destination, const nsAString* source);
    nsresult (*NS_CStringContainerInit)(StringContainerStorage* container);
    nsresult (*NS_CStringContainerInit2)(StringContainerStorage* container, const char* data,
                                         std::uint32_t length, std::uint32_t flags);
    void (*NS_CStringContainerFinish)(StringContainerStorage* container);
    std::uint32_t (*NS_CStringGetData)(const nsACString* text, const char** data, std::uint32_t* terminated);
    std::uint32_t (*NS_CStringGetMutableData)(nsACString* text, std::uint32_t length, char** data);
    char* (*NS_CStringCloneData)(const nsACString* text);
    nsresult (*NS_CStringSetData)(nsACString* text, const char* data, std::uint32_t length);
    nsresult (*NS_CStringSetDataRange)(nsACString* text, std::uint32_t cutOffset, std::uint32_t cutLength,
                                       const char* data, std::uint32_t length);
    nsresult (*NS_CStringCopy)(nsACString* destination, const nsACString* source);
    nsresult (*NS_CStringToUTF16)(const nsACString* source, std::uint32_t encoding, nsAString* destination);
    nsresult (*NS_UTF16ToCString)(const nsAString* source, std::uint32_t encoding, nsACString* destination);
};

struct RuntimeEntryPoint {
    const char* name;    // exported name
    std::size_t offset;  // of its pointer in XpcomRuntime
};

#define ZAB_ENTRY_POINT(name) \
    { #name, offsetof(::zab::XpcomRuntime, name) }

/// In the order in which they are looked up.
inline constexpr RuntimeEntryPoint kRuntimeEntryPoints[] = {
    ZAB_ENTRY_POINT(NS_GetServiceManager),
    ZAB_ENTRY_POINT(NS_GetComponentManager),
    ZAB_ENTRY_POINT(NS_Free),
    ZAB_ENTRY_POINT(NS_StringContainerInit),
    ZAB_ENTRY_POINT(NS_StringContainerInit2),
    ZAB_ENTRY_POINT(NS_StringContainerFinish),
    ZAB_ENTRY_POINT(NS_StringGetData),
    ZAB_ENTRY_POINT(NS_StringGetMutableData),
    ZAB_ENTRY_POINT(NS_StringCloneData),
    ZAB_ENTRY_POINT(NS_StringSetData),
    ZAB_ENTRY_POINT(NS_StringSetDataRange),
    ZAB_ENTRY_POINT(NS_StringCopy),
    ZAB_ENTRY_POINT(NS_CStringContainerInit),
    ZAB_ENTRY_POINT(NS_CStringContainerInit2),
    ZAB_ENTRY_POINT(NS_CStringContainerFinish),
    ZAB_ENTRY_POINT(NS_CStringGetData),
    ZAB_ENTRY_POINT(NS_CStringGetMutableData),
    ZAB_ENTRY_POINT(NS_CStringCloneData),
    ZAB_ENTRY_POINT(NS_CStringSetData),
    ZAB_ENTRY_POINT(NS_CStringSetDataRange),
    ZAB_ENTRY_POINT(NS_CStringCopy),
    ZAB_ENTRY_POINT(NS_CStringToUTF16),
    ZAB_ENTRY_POINT(NS_UTF16ToCString),
};

#undef ZAB_ENTRY_POINT

constexpr bool everyEntryStandsInOrder() {
    std::size_t expected = sizeof(void*);
    for (const auto& entry : kRuntimeEntryPoints) {
        if (entry.offset != expected) return false;
        expected += sizeof(void*);
    }
    return expected == sizeof(XpcomRuntime);
}
static_assert(everyEntryStandsInOrder(), "every entry point of the record is looked up, once and in its order");

/// The process-wide record. Only the binder (and a test that plays the runtime) writes it.
XpcomRuntime& runtimeRecord() noexcept;
inline const XpcomRuntime& runtime() noexcept { return runtimeRecord(); }

}  // namespace zab
