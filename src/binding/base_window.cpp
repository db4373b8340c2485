#include "binding/base_window.h"

#include <utility>

namespace zab {
namespace {

/// The second way to an identifier: the object's own interface requestor.
InterfacePtr<nsISupports> throughRequestor(nsISupports* object, const nsIID& iid) noexcept {
    InterfacePtr<nsISupports> result;
    const auto requestor = query<nsIInterfaceRequestor>(object);
    if (!requestor) return result;
    void* raw = nullptr;
    if (failed(requestor->GetInterface(&iid, &raw))) return result;
    result.reset(static_cast<nsISupports*>(raw));
    return result;
}

InterfacePtr<nsISupports> directly(nsISupports* object, const nsIID& iid) noexcept {
    return query<nsISupports>(object, iid);
}

struct Candidate {
    const nsIID& iid;
    InterfacePtr<nsISupports> (*find)(nsISupports* object, const nsIID& iid) noexcept;
    InterfacePtr<nsIBaseWindow> (*adapt)(InterfacePtr<nsISupports>&& window,
                                         std::int32_t& browserMajor) noexcept;
};

template <class Self>
constexpr auto kAdaptTo = &adapted<Self, nsIBaseWindow, InterfacePtr<nsISupports>, std::int32_t&>;

/// Tried in this order, after the module's own layout; the first that answers serves.
constexpr Candidate kCandidates[] = {
    {nsIBaseWindow::kIID, throughRequestor, kAdaptTo<nsBaseWindow2>},
    {nsIBaseWindow::kIIDB, directly, kAdaptTo<nsBaseWindow10>},
    {nsIBaseWindow::kIIDC, directly, kAdaptTo<nsBaseWindow19>},
    {nsIBaseWindow::kIIDE, directly, kAdaptTo<nsBaseWindow47>},
    {nsIBaseWindow::kIIDD, directly, kAdaptTo<nsBaseWindow45_6_Esr>},
};

}  // namespace

InterfacePtr<nsISupports> docShellOf(nsISupports* domWindow) noexcept {
    return throughRequestor(domWindow, kDocCharsetIID);
}

InterfacePtr<nsIBaseWindow> GetBaseWindow(nsISupports* browserObject, std::int32_t browserMajor) noexcept {
    if (auto own = query<nsIBaseWindow>(browserObject)) return own;
    for (const auto& candidate : kCandidates) {
        auto window = candidate.find(browserObject, candidate.iid);
        if (!window) continue;
        if (auto adapter = candidate.adapt(std::move(window), browserMajor)) return adapter;
    }
    return {};
}

}  // namespace zab
