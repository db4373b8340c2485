// The module's fourteen exports, as an extension declares them.
#pragma once

#include <cstdint>

#include "binding/interfaces/supports.h"
#include "browser/library.h"

namespace zab::testbed {

class ModuleExports {
  private:
    struct Export {
        void* address;
        template <class Function>
        operator Function*() const {
            return reinterpret_cast<Function*>(address);
        }
    };
    void* library_;
    Export find(const char* name) const { return {library_ == nullptr ? nullptr : exportedBy(library_, name)}; }

  public:
    /// All null without a library. Throws std::runtime_error when one of them is missing.
    explicit ModuleExports(void* library = nullptr) : library_(library) {}

    nsresult (*InitCC)(nsISupports* host) = find("ZABMzCC_InitCC");
    nsresult (*Observe)(nsISupports* subject, const char* topic) = find("ZABMzCC_Observe");
    nsresult (*OnTabSelect)(const nsAString* documentId) = find("ZABMzCC_OnTabSelect");
    nsresult (*OnGetSelectedTabID)(const nsAString* documentId) = find("ZABMzCC_OnGetSelectedTabID");
    nsresult (*OnUnload)(const nsAString* documentId) = find("ZABMzCC_OnUnload");
    nsresult (*OnME)(nsISupports* event) = find("ZABMzCC_OnME");
    nsresult (*GetListenerState)() = find("ZABMzCC_GetListenerState");
    std::int32_t (*ShouldLoad)(std::uint32_t type, const nsACString* url, const nsACString* origin,
                               nsISupports* context, const nsACString* mimeGuess) = find("ZABMzCC_ShouldLoad");
    std::int32_t (*ShouldLoad2)(std::uint32_t type, const nsACString* url, const nsACString* origin,
                                nsISupports* context, const nsACString* mimeGuess,
                                const nsAString* documentId) = find("ZABMzCC_ShouldLoad2");
    std::int32_t (*ShouldLoad_old1)(std::uint32_t type, const nsACString* url,
                                    nsISupports* context) = find("ZABMzCC_ShouldLoad_old1");
    nsresult (*DownloadLinkWithZAB)(const nsAString* url, const nsAString* referrer, const nsAString* cookies,
                                    const nsAString* description) = find("ZABMzCC_DownloadLinkWithZAB");
    nsresult (*DownloadAllWithZAB)(const nsAString* markup, const nsAString* pageUrl,
                                   const nsAString* cookies) = find("ZABMzCC_DownloadAllWithZAB");
    nsresult (*DownloadLastFLVwithZAB)(const nsAString* documentId) = find("ZABMzCC_DownloadLastFLVwithZAB");
    nsresult (*DownloadLast10FLVwithZAB)(const nsAString* documentId) =
        find("ZABMzCC_DownloadLast10FLVwithZAB");
};

}  // namespace zab::testbed
