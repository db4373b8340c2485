// The module's fourteen exports, as an extension declares them.
#pragma once

#include <cstdint>

#include "binding/interfaces/supports.h"

namespace zab::testbed {

struct ModuleExports {
    /// Throws std::runtime_error when one of them is missing.
    static ModuleExports of(void* library);

    nsresult (*InitCC)(nsISupports* host);
    nsresult (*Observe)(nsISupports* subject, const char* topic);
    nsresult (*OnTabSelect)(const nsAString* documentId);
    nsresult (*OnGetSelectedTabID)(const nsAString* documentId);
    nsresult (*OnUnload)(const nsAString* documentId);
    nsresult (*OnME)(nsISupports* event);
    nsresult (*GetListenerState)();
    std::int32_t (*ShouldLoad)(std::uint32_t type, const nsACString* url, const nsACString* origin,
                               nsISupports* context, const nsACString* mimeGuess);
    std::int32_t (*ShouldLoad2)(std::uint32_t type, const nsACString* url, const nsACString* origin,
                                nsISupports* context, const nsACString* mimeGuess, const nsAString* documentId);
    std::int32_t (*ShouldLoad_old1)(std::uint32_t type, const nsACString* url, nsISupports* context);
    nsresult (*DownloadLinkWithZAB)(const nsAString* url, const nsAString* referrer, const nsAString* cookies,
                                    const nsAString* description);
    nsresult (*DownloadAllWithZAB)(const nsAString* markup, const nsAString* pageUrl, const nsAString* cookies);
    nsresult (*DownloadLastFLVwithZAB)(const nsAString* documentId);
    nsresult (*DownloadLast10FLVwithZAB)(const nsAString* documentId);
};

}  // namespace zab::testbed
