#include "settings/registry_key_win32.h"

#include <algorithm>

#include "binding/text.h"

namespace zab {
namespace {

constexpr DWORD kFirstBufferBytes = 2048;  // most values fit: one call
constexpr DWORD kLongestSubkeyName = 2000;
constexpr DWORD kAnyChange = REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_ATTRIBUTES | REG_NOTIFY_CHANGE_LAST_SET;

/// Reads a text value of at most `limit` bytes, terminator included, whether or not one is stored.
template <class C, class Query>
std::optional<std::basic_string<C>> readText(DWORD limit, Query query) {
    std::basic_string<C> text(std::min(limit, kFirstBufferBytes) / sizeof(C), C(0));
    DWORD type = 0;
    auto size = static_cast<DWORD>(text.size() * sizeof(C));
    LSTATUS status = query(&type, text.data(), &size);
    if (status == ERROR_MORE_DATA && size <= limit && size > text.size() * sizeof(C)) {
        text.resize(size / sizeof(C));
        size = static_cast<DWORD>(text.size() * sizeof(C));
        status = query(&type, text.data(), &size);
    }
    if (status != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return std::nullopt;
    text.resize(std::min<std::size_t>(text.size(), size / sizeof(C)));
    text.resize(upToNul<C>(text).size());
    if ((text.size() + 1) * sizeof(C) > limit) return std::nullopt;
    return text;
}

}  // namespace

RegistryKey RegistryKey::open(const char* path, REGSAM access) noexcept {
    RegistryKey result;
    RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, access, result.key_.put());
    return result;
}

RegistryKey RegistryKey::open(const char16_t* path, REGSAM access) noexcept {
    RegistryKey result;
    RegOpenKeyExW(HKEY_CURRENT_USER, wide(path), 0, access, result.key_.put());
    return result;
}

RegistryKey RegistryKey::create(const char* path) noexcept {
    RegistryKey result;
    RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                    result.key_.put(), nullptr);
    return result;
}

std::optional<std::uint32_t> RegistryKey::number(const char* name) const noexcept {
    DWORD type = 0, number = 0, size = sizeof number;
    const auto status = RegQueryValueExA(get(), name, nullptr, &type, reinterpret_cast<BYTE*>(&number), &size);
    if (status != ERROR_SUCCESS || type != REG_DWORD || size != sizeof number) return std::nullopt;
    return number;
}

std::optional<std::string> RegistryKey::text(const TextValue& value) const {
    return readText<char>(value.sizeBytes, [&](DWORD* type, char* data, DWORD* size) {
        return RegQueryValueExA(get(), value.name, nullptr, type, reinterpret_cast<BYTE*>(data), size);
    });
}

std::optional<std::u16string> RegistryKey::text(const WideTextValue& value) const {
    return readText<char16_t>(value.sizeBytes, [&](DWORD* type, char16_t* data, DWORD* size) {
        return RegQueryValueExW(get(), wide(value.name), nullptr, type, reinterpret_cast<BYTE*>(data), size);
    });
}

bool RegistryKey::lacks(const char* name) const noexcept {
    return RegQueryValueExA(get(), name, nullptr, nullptr, nullptr, nullptr) == ERROR_FILE_NOT_FOUND;
}

bool RegistryKey::isDeleted() const noexcept {
    return RegQueryInfoKeyA(get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr) == ERROR_KEY_DELETED;
}

bool RegistryKey::write(const char* name, const std::string& text) const noexcept {
    return RegSetValueExA(get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          static_cast<DWORD>(text.size() + 1)) == ERROR_SUCCESS;
}

bool RegistryKey::write(const char* name, std::uint32_t number) const noexcept {
    return RegSetValueExA(get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number) ==
           ERROR_SUCCESS;
}

std::optional<std::string> RegistryKey::subkey(std::uint32_t index) const {
    std::string name(kLongestSubkeyName, '\0');
    auto length = static_cast<DWORD>(name.size());
    const auto status = RegEnumKeyExA(get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
    if (status != ERROR_SUCCESS) return std::nullopt;
    name.resize(std::min<std::size_t>(length, name.size()));
    return name;
}

bool RegistryKey::signalOnChange(HANDLE event) const noexcept {
    return RegNotifyChangeKeyValue(get(), TRUE, kAnyChange, event, TRUE) == ERROR_SUCCESS;
}

bool RegistryKey::restoreFrom(const char* file) const noexcept {
    return RegRestoreKeyA(get(), file, 0) == ERROR_SUCCESS;
}

bool RegistryKey::loadHive(const char* name, const char* file) noexcept {
    return RegLoadKeyA(HKEY_USERS, name, file) == ERROR_SUCCESS;
}

bool RegistryKey::deleteHive(const char* name) noexcept {
    return RegDeleteKeyA(HKEY_USERS, name) == ERROR_SUCCESS;
}

}  // namespace zab
