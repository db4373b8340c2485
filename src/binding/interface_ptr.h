// References to browser objects: an owner that releases itself, queries, and services by contract ID.
#pragma once

#include "binding/interfaces/services.h"
#include "binding/owner.h"

namespace zab {

template <class Interface>
struct InterfaceTraits {
    using Raw = Interface*;
    static Raw none() noexcept { return nullptr; }
    static void close(Raw object) noexcept { object->Release(); }
};

/// Holds one reference, or nothing.
template <class Interface>
class InterfacePtr : public Owner<InterfaceTraits<Interface>> {
  public:
    using Owner<InterfaceTraits<Interface>>::Owner;

    Interface* operator->() const noexcept { return this->get(); }

    /// A second reference to the same object.
    [[nodiscard]] InterfacePtr another() const noexcept;
};

/// A reference of one's own to an object that others hold; null: nothing.
template <class Interface>
[[nodiscard]] InterfacePtr<Interface> referenceTo(Interface* object) noexcept {
    if (object != nullptr) object->AddRef();
    return InterfacePtr<Interface>(object);
}

template <class Interface>
InterfacePtr<Interface> InterfacePtr<Interface>::another() const noexcept {
    return referenceTo(this->get());
}

/// Asks `object` for an interface. A success without an object counts as a failure.
template <class Interface>
InterfacePtr<Interface> query(nsISupports* object, const nsIID& iid = Interface::kIID) noexcept {
    InterfacePtr<Interface> result;
    if (object == nullptr) return result;
    void* raw = nullptr;
    if (failed(object->QueryInterface(&iid, &raw))) return result;
    result.reset(static_cast<Interface*>(raw));
    return result;
}

/// The browser's service manager; nothing when the runtime has none.
InterfacePtr<nsIServiceManager> serviceManager() noexcept;

/// A service by its contract ID; `status`, where wanted, tells why there is none.
void* serviceByContract(const char* contract, const nsIID& iid, nsresult* status) noexcept;

template <class Interface>
InterfacePtr<Interface> service(nsresult* status = nullptr) noexcept {
    return InterfacePtr<Interface>(
        static_cast<Interface*>(serviceByContract(Interface::kContract, Interface::kIID, status)));
}

}  // namespace zab
