// What every adapter is beside its operations: a counted object that answers the module's own interface, and
// the call of a browser object's operation by its slot.
#pragma once

#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include "binding/interface_ptr.h"

namespace zab {

/// `Self` is final and destroys itself when its last reference goes: there is no virtual destructor, because
/// the two sides lay one out differently. The count starts at 0; main thread only.
template <class Self, class Module>
class Adapter : protected Module {
  public:
    nsresult QueryInterface(const nsIID* iid, void** result) override {
        if (result == nullptr) return NS_ERROR_NULL_POINTER;
        *result = nullptr;
        if (iid == nullptr || (*iid != Module::kIID && *iid != nsISupports::kIID)) return NS_ERROR_NO_INTERFACE;
        AddRef();
        *result = static_cast<Module*>(this);
        return NS_OK;
    }
    uint32_t AddRef() override { return ++references_; }
    uint32_t Release() override {
        const uint32_t left = --references_;
        if (left == 0) delete static_cast<Self*>(this);
        return left;
    }

  protected:
    ~Adapter() = default;

  private:
    uint32_t references_ = 0;
};

/// A new adapter, seen through the module's interface; nothing without memory.
template <class Self, class Module, class... Arguments>
InterfacePtr<Module> adapted(Arguments&&... arguments) noexcept {
    Self* const created = new (std::nothrow) Self(std::forward<Arguments>(arguments)...);
    if (created == nullptr) return {};
    created->AddRef();
    const InterfacePtr<Self> held(created);
    void* raw = nullptr;
    if (failed(held->QueryInterface(&Module::kIID, &raw))) return {};
    return InterfacePtr<Module>(static_cast<Module*>(raw));
}

/// Calls the operation in a slot of the object's table. On 64-bit Windows an operation is a function whose
/// first argument is the object. The caller answers for slot and arguments.
template <class... Arguments>
nsresult callSlot(nsISupports* object, std::size_t slot, Arguments... arguments) {
    using Operation = nsresult (*)(nsISupports*, Arguments...);
    const unsigned char* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(object), sizeof(table));
    Operation operation = nullptr;
    std::memcpy(&operation, table + slot * sizeof(operation), sizeof(operation));
    return operation(object, arguments...);
}

}  // namespace zab
