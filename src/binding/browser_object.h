// What every object that the module hands to the browser shares: a reference count and the answer to queries.
//
// The browser calls these objects through tables laid out by another compiler: the bases must be pure
// interfaces in the documented order, and there is no virtual destructor, because the two compilers disagree
// about its slots. An object ends itself with its last reference.
#pragma once

#include <new>
#include <type_traits>

#include "binding/interface_ptr.h"

namespace zab {

/// `Self` is the final class. The count starts at 0 and is not atomic: the browser's main thread alone counts.
template <class Self, class... Interfaces>
class BrowserObject : public Interfaces... {
  public:
    BrowserObject() = default;
    BrowserObject(const BrowserObject&) = delete;
    BrowserObject& operator=(const BrowserObject&) = delete;

    /// Answers every direct base, and nsISupports always with the first.
    nsresult QueryInterface(const nsIID* iid, void** result) override {
        if (iid == nullptr || result == nullptr) return NS_ERROR_NULL_POINTER;
        *result = nullptr;
        if (*iid == nsISupports::kIID) *result = identity();
        (answer<Interfaces>(*iid, *result), ...);
        if (*result == nullptr) return NS_ERROR_NO_INTERFACE;
        AddRef();
        return NS_OK;
    }

    uint32_t AddRef() override { return ++references_; }

    uint32_t Release() override {
        if (--references_ != 0) return references_;
        references_ = 1;  // destruction may touch the object once more
        destroy();
        return 0;
    }

    /// The object as the browser knows it.
    [[nodiscard]] nsISupports* identity() noexcept { return static_cast<First*>(this); }

  protected:
    ~BrowserObject() = default;

  private:
    template <class First_, class...>
    struct FirstOf {
        using Type = First_;
    };
    using First = typename FirstOf<Interfaces...>::Type;

    template <class Interface>
    void answer(const nsIID& iid, void*& result) noexcept {
        if (result == nullptr && iid == Interface::kIID) result = static_cast<Interface*>(this);
    }

    /// Through the deleting destructor, where an interface has one among its operations.
    void destroy() noexcept {
        static_assert(std::is_final_v<Self>, "nothing may derive from an object that deletes itself");
        constexpr uint32_t kFreesMemory = 1;
        if constexpr (requires(Self & self) { self.DeleteThis(kFreesMemory); })
            static_cast<Self*>(this)->DeleteThis(kFreesMemory);
        else
            delete static_cast<Self*>(this);
    }

    uint32_t references_ = 0;
};

/// A new object with one reference; nothing when there is no memory.
template <class Object, class... Arguments>
InterfacePtr<Object> makeObject(Arguments&&... arguments) {
    Object* object = new (std::nothrow) Object(std::forward<Arguments>(arguments)...);
    if (object != nullptr) object->AddRef();
    return InterfacePtr<Object>(object);
}

}  // namespace zab
