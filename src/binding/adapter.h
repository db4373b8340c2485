// Adapters: objects of ours that serve the module's layout of an interface on top of a browser object that has
// another.
#pragma once

#include <cstdint>
#include <cstring>
#include <utility>

#include "binding/browser_object.h"
#include "binding/interface_ptr.h"

namespace zab {

/// A new adapter, seen through the module's interface; nothing without memory. An adapter derives from that
/// interface privately: the query is the only way in.
template <class Self, class Module, class... Arguments>
InterfacePtr<Module> adapted(Arguments&&... arguments) noexcept {
    const auto adapter = makeObject<Self>(std::forward<Arguments>(arguments)...);
    void* raw = nullptr;
    if (!adapter || failed(adapter->QueryInterface(&Module::kIID, &raw))) return {};
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
