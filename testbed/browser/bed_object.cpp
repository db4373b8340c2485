#include "browser/bed_object.h"

#include <algorithm>

#include "browser/browser.h"

namespace zab::testbed {

const Interface kSupports{"nsISupports", nsISupports::kIID, {}};

BedObject::BedObject(Browser& browser, std::string name, const Interface& primary)
    : browser_(browser), name_(std::move(name)) {
    answersTo(primary);
}

void BedObject::answersTo(const Interface& interface, const nsIID& iid) {
    auto& handle = handles_.emplace_back(Handle{{browser_.runtime().table, nullptr}, this, &interface, iid, 0});
    handle.raw.context = &handle;
}

BedObject::Handle* BedObject::handleFor(const nsIID& iid) {
    const auto found = std::ranges::find(handles_, iid, &Handle::iid);
    return found == handles_.end() ? nullptr : &*found;
}

nsISupports* BedObject::asSupports() { return reinterpret_cast<nsISupports*>(&handles_.front().raw); }

std::int32_t BedObject::references() const {
    std::int32_t sum = 0;
    for (const auto& handle : handles_) sum += handle.references;
    return sum;
}

std::string Call::text(std::uint32_t n) const {
    const char* data = nullptr;
    const auto length = browser.runtime().entries.NS_CStringGetData(pointer<nsACString>(n), &data, nullptr);
    return {data, length};
}

std::u16string Call::wide(std::uint32_t n) const {
    const char16_t* data = nullptr;
    const auto length = browser.runtime().entries.NS_StringGetData(pointer<nsAString>(n), &data, nullptr);
    return {data, length};
}

BedObject* Call::objectAt(std::uint32_t n) const {
    auto* raw = pointer<StandInObject>(n);
    if (raw == nullptr || raw->table != browser.runtime().table) {
        browser.violates(self.name() + "." + std::to_string(slot) + " gets what is no object of the browser");
        return nullptr;
    }
    auto* object = static_cast<BedObject::Handle*>(raw->context)->owner;
    if (object->dead()) browser.violates(self.name() + " is handed a dead " + object->name());
    return object;
}

nsresult Call::set(std::uint32_t n, std::string_view text) const {
    return browser.runtime().entries.NS_CStringSetData(pointer<nsACString>(n), text.data(),
                                                       static_cast<std::uint32_t>(text.size()));
}

nsresult Call::set(std::uint32_t n, std::u16string_view text) const {
    return browser.runtime().entries.NS_StringSetData(pointer<nsAString>(n), text.data(),
                                                      static_cast<std::uint32_t>(text.size()));
}

nsresult Call::setBoolean(std::uint32_t n, bool value) const {
    return browser.options().version < 10 ? set<std::uint32_t>(n, value) : set<std::uint8_t>(n, value);
}

nsresult Call::give(std::uint32_t n, BedObject* object, const nsIID& iid) const {
    void** out = pointer<void*>(n);
    *out = nullptr;
    return object == nullptr ? NS_OK : browser.queried(*object, &iid, out);
}

}  // namespace zab::testbed
