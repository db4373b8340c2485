#include "binding/interfaces/supports.h"
extern "C" {
nsresult ZABMzCC_InitCC(nsISupports*) { return NS_OK; }
nsresult ZABMzCC_Observe(nsISupports*, const char*) { return NS_OK; }
nsresult ZABMzCC_OnTabSelect(const nsAString*) { return NS_OK; }
nsresult ZABMzCC_OnGetSelectedTabID(const nsAString*) { return NS_OK; }
nsresult ZABMzCC_OnUnload(const nsAString*) { return NS_OK; }
nsresult ZABMzCC_OnME(nsISupports*) { return NS_OK; }
nsresult ZABMzCC_GetListenerState() { return 0; }
int32_t ZABMzCC_ShouldLoad(uint32_t, const nsACString*, const nsACString*, nsISupports*, const nsACString*) {
    return 1;
}
int32_t ZABMzCC_ShouldLoad2(uint32_t, const nsACString*, const nsACString*, nsISupports*, const nsACString*,
                            const nsAString*) {
    return 1;
}
int32_t ZABMzCC_ShouldLoad_old1(uint32_t, const nsACString*, nsISupports*) { return 1; }
nsresult ZABMzCC_DownloadLinkWithZAB(const nsAString*, const nsAString*, const nsAString*, const nsAString*) {
    return 0x80004005;
}
nsresult ZABMzCC_DownloadAllWithZAB(const nsAString*, const nsAString*, const nsAString*) { return 0x80004005; }
nsresult ZABMzCC_DownloadLastFLVwithZAB(const nsAString*) { return 0x80004005; }
nsresult ZABMzCC_DownloadLast10FLVwithZAB(const nsAString*) { return 0x80004005; }
}
