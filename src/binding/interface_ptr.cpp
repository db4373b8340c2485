#include "binding/interface_ptr.h"

#include "binding/runtime.h"

namespace zab {

InterfacePtr<nsIServiceManager> serviceManager() noexcept {
    InterfacePtr<nsIServiceManager> manager;
    if (runtime().NS_GetServiceManager == nullptr) return manager;
    nsIServiceManager* given = nullptr;
    if (failed(runtime().NS_GetServiceManager(&given))) return manager;
    manager.reset(given);
    return query<nsIServiceManager>(manager.get());
}

void* serviceByContract(const char* contract, const nsIID& iid, nsresult* status) noexcept {
    nsresult ignored = NS_OK;
    nsresult& result = status == nullptr ? ignored : *status;
    const auto manager = serviceManager();
    if (!manager) {
        result = kNoServiceManager;
        return nullptr;
    }
    void* found = nullptr;
    result = manager->GetServiceByContractID(contract, &iid, &found);
    if (!failed(result) && found == nullptr) result = NS_ERROR_NOT_AVAILABLE;
    return failed(result) ? nullptr : found;
}

}  // namespace zab
