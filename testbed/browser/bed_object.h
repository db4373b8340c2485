// Objects of the test bed as the module meets them: counted handles whose operations are rows of
// tables.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "runtime/standin.h"

namespace zab::testbed {

class Browser;
class BedObject;

/// One call of an operation; arguments count from 0 behind the object.
class Call {
  public:
    Call(Browser& owner, BedObject& object, std::uint32_t number, const std::uint64_t* arguments)
        : browser(owner), self(object), slot(number), arguments_(arguments) {}

    Browser& browser;
    BedObject& self;
    const std::uint32_t slot;

    template <class T>
    T& as() const;
    template <class T>
    T* pointer(std::uint32_t n) const {
        return reinterpret_cast<T*>(arguments_[n]);
    }
    /// Small numbers: only the low half of the register counts.
    [[nodiscard]] std::uint32_t number(std::uint32_t n) const {
        return static_cast<std::uint32_t>(arguments_[n]);
    }
    [[nodiscard]] std::uint64_t whole(std::uint32_t n) const { return arguments_[n]; }
    [[nodiscard]] std::string text(std::uint32_t n) const;
    [[nodiscard]] std::u16string wide(std::uint32_t n) const;
    /// The browser object behind an argument; null when it is of another class. A violation when it is no
    /// object of the browser.
    template <class T>
    T* object(std::uint32_t n) const {
        return dynamic_cast<T*>(objectAt(n));
    }

    // Results; each answers with success.

    nsresult set(std::uint32_t n, std::string_view text) const;
    nsresult set(std::uint32_t n, std::u16string_view text) const;
    template <class T>
    requires std::is_arithmetic_v<T> nsresult set(std::uint32_t n, T value)
    const {
        *pointer<T>(n) = value;
        return NS_OK;
    }
    /// A boolean in the width of the browser's version.
    nsresult setBoolean(std::uint32_t n, bool value) const;
    /// The interface that the operation is published with, with one reference for the caller; null is given as
    /// null.
    nsresult give(std::uint32_t n, BedObject* object, const nsIID& iid = nsISupports::kIID) const;

  private:
    [[nodiscard]] BedObject* objectAt(std::uint32_t n) const;

    const std::uint64_t* arguments_;
};

inline constexpr std::uint32_t kEverySlot = 0;  // that has no row of its own
struct Operation {
    std::uint32_t slot;
    nsresult (*run)(const Call& call);
};

/// A published interface: its identifier, the first of several, and the operations that the module may call.
struct Interface {
    const char* name;
    nsIID iid;
    std::span<const Operation> operations;
};

extern const Interface kSupports, kServiceManager;

/// A service by its contract ID; it answers to one interface.
struct Service {
    const char* contract;
    Interface interface;
};
std::span<const Service> services();

class BedObject {
  public:
    /// `primary` is the interface behind its nsISupports pointer.
    BedObject(Browser& browser, std::string name, const Interface& primary = kSupports);
    virtual ~BedObject() = default;
    BedObject(const BedObject&) = delete;
    BedObject& operator=(const BedObject&) = delete;

    struct Handle {
        StandInObject raw;  // first: its address is what the module holds
        BedObject* owner;
        const Interface* interface;
        nsIID iid;                // under which it is asked for
        std::int32_t references;  // that the module holds
    };

    /// Adds an interface that a query is answered with.
    void answersTo(const Interface& interface, const nsIID& iid);
    void answersTo(const Interface& interface) { answersTo(interface, interface.iid); }
    /// The handle for an identifier; null when the object does not answer to it.
    [[nodiscard]] Handle* handleFor(const nsIID& iid);
    /// The object as an argument, without a reference.
    [[nodiscard]] nsISupports* asSupports();

    [[nodiscard]] std::int32_t references() const;
    [[nodiscard]] const std::string& name() const { return name_; }
    /// The browser gives its own reference up: once the module has none either, every call is a fault of it.
    void letGo() { held_ = false; }
    [[nodiscard]] bool dead() const { return !held_ && references() == 0; }

  protected:
    Browser& browser_;

  private:
    std::string name_;
    std::deque<Handle> handles_;
    bool held_ = true;
};

template <class T>
T& Call::as() const {
    return static_cast<T&>(self);
}

}  // namespace zab::testbed
