#include "binding/browser_string.h"

namespace zab {
namespace {

template <class Char, class String, class GetData>
std::basic_string_view<Char> read(const String* text, GetData getData) noexcept {
    if (text == nullptr || getData == nullptr) return {};
    const Char* data = nullptr;
    const std::uint32_t length = getData(text, &data, nullptr);
    return data == nullptr ? std::basic_string_view<Char>{} : std::basic_string_view<Char>{data, length};
}

template <class Char, class String, class SetData>
bool write(String* text, std::basic_string_view<Char> value, SetData setData) noexcept {
    // 0xFFFFFFFF as a length has a meaning of its own; no text of that size is ever written.
    if (text == nullptr || setData == nullptr || value.size() >= kAll) return false;
    static constexpr Char kEmpty[1]{};
    const Char* data = value.data() == nullptr ? kEmpty : value.data();
    return !failed(setData(text, data, static_cast<std::uint32_t>(value.size())));
}

}  // namespace

std::string_view viewOf(const nsACString* text) noexcept {
    return read<char>(text, runtime().NS_CStringGetData);
}
std::u16string_view viewOf(const nsAString* text) noexcept {
    return read<char16_t>(text, runtime().NS_StringGetData);
}

bool assign(nsACString* text, std::string_view value) noexcept {
    return write(text, value, runtime().NS_CStringSetData);
}
bool assign(nsAString* text, std::u16string_view value) noexcept {
    return write(text, value, runtime().NS_StringSetData);
}

// A container that could not be finished again would leak in the browser: both operations or none.

NarrowContainer::NarrowContainer() noexcept {
    const auto& entries = runtime();
    made_ = entries.NS_CStringContainerInit != nullptr && entries.NS_CStringContainerFinish != nullptr &&
            !failed(entries.NS_CStringContainerInit(&storage_));
}

NarrowContainer::~NarrowContainer() {
    if (made_) runtime().NS_CStringContainerFinish(&storage_);
}

nsACString* NarrowContainer::get() noexcept {
    return made_ ? reinterpret_cast<nsACString*>(&storage_) : nullptr;
}

std::string_view NarrowContainer::view() const noexcept {
    return made_ ? viewOf(reinterpret_cast<const nsACString*>(&storage_)) : std::string_view{};
}

WideContainer::WideContainer() noexcept {
    const auto& entries = runtime();
    made_ = entries.NS_StringContainerInit != nullptr && entries.NS_StringContainerFinish != nullptr &&
            !failed(entries.NS_StringContainerInit(&storage_));
}

WideContainer::~WideContainer() {
    if (made_) runtime().NS_StringContainerFinish(&storage_);
}

nsAString* WideContainer::get() noexcept { return made_ ? reinterpret_cast<nsAString*>(&storage_) : nullptr; }

std::u16string_view WideContainer::view() const noexcept {
    return made_ ? viewOf(reinterpret_cast<const nsAString*>(&storage_)) : std::u16string_view{};
}

}  // namespace zab
