// The owner of an open registry key, and the module's only way to the registry.
//
// Reads are typed: a value of another type, or one longer than the caller allows, reads like a missing one, and
// a stored text that lacks its terminator still ends inside its buffer. Nothing here throws but for want of
// memory.
#pragma once

#include <atomic>
#include <cstdint>
#include <forward_list>
#include <optional>
#include <string>

#include "binding/owner.h"
#include "binding/wide_win32.h"
#include "settings/setting_values.h"

namespace zab {

class RegistryKey {
  public:
    static constexpr REGSAM kQuery = KEY_QUERY_VALUE;
    static constexpr REGSAM kQueryAndEnumerate = KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS;

    constexpr RegistryKey() noexcept = default;
    /// An empty owner when there is no such key or no such access. Paths start at HKEY_CURRENT_USER.
    static RegistryKey open(const char* path, REGSAM access) noexcept;
    static RegistryKey open(const char16_t* path, REGSAM access) noexcept;
    static RegistryKey create(const char* path) noexcept;

    explicit operator bool() const noexcept { return static_cast<bool>(key_); }
    [[nodiscard]] HKEY get() const noexcept { return key_.get(); }

    [[nodiscard]] std::optional<std::uint32_t> number(const char* name) const noexcept;
    [[nodiscard]] std::uint32_t number(const NumberValue& value) const noexcept {
        return number(value.name).value_or(value.fallback);
    }
    [[nodiscard]] std::optional<std::string> text(const TextValue& value) const;
    [[nodiscard]] std::optional<std::u16string> text(const WideTextValue& value) const;
    /// True only when the system says that the value does not exist; a failure for another reason is no
    /// absence.
    [[nodiscard]] bool lacks(const char* name) const noexcept;

    /// Whether the key was deleted under its open handle: nothing can be read any more, whatever is made under
    /// its path.
    [[nodiscard]] bool isDeleted() const noexcept;

    bool write(const char* name, const std::string& text) const noexcept;
    bool write(const char* name, std::uint32_t number) const noexcept;

    /// Name of the subkey with this index, up to 2,000 characters; nothing behind the last one.
    [[nodiscard]] std::optional<std::string> subkey(std::uint32_t index) const;

    /// Asks for one signal of `event` when this key or one below changes its name, attributes or values.
    bool signalOnChange(HANDLE event) const noexcept;
    /// Replaces this key by what `file` holds. Needs the restore privilege.
    bool restoreFrom(const char* file) const noexcept;

    /// Loads `file` as a key of this name under HKEY_USERS; takes it away again.
    static bool loadHive(const char* name, const char* file) noexcept;
    static bool deleteHive(const char* name) noexcept;

  private:
    struct Traits {
        using Raw = HKEY;
        static constexpr Raw none() noexcept { return nullptr; }
        static void close(Raw key) noexcept { RegCloseKey(key); }
    };

    Owner<Traits> key_;
};

/// A key that is opened on first use and kept; an open that failed is tried again on the next use, and a key
/// that was deleted (by a new installation, under the running browser) is opened again.
class CachedKey {
  public:
    /// The key, or null when `opened` cannot open it. What was given out stays an open key until close(), so no
    /// reader takes the lock.
    template <class Open>
    const RegistryKey* get(Open opened) {
        if (const RegistryKey* key = living()) return key;
        const Exclusive lock(lock_);
        if (const RegistryKey* key = living()) return key;
        RegistryKey key = opened();
        current_.store(nullptr, std::memory_order_release);
        if (!key) return nullptr;
        keys_.push_front(std::move(key));
        current_.store(&keys_.front(), std::memory_order_release);
        return &keys_.front();
    }

    /// The key when it is open already.
    [[nodiscard]] const RegistryKey* ifOpen() const noexcept {
        return current_.load(std::memory_order_acquire);
    }

    /// The same, but none that was deleted.
    [[nodiscard]] const RegistryKey* living() const noexcept {
        const RegistryKey* key = ifOpen();
        return key != nullptr && !key->isDeleted() ? key : nullptr;
    }

    /// Only while nobody else uses the key.
    void close() noexcept {
        current_.store(nullptr, std::memory_order_relaxed);
        keys_.clear();
    }

  private:
    struct Exclusive {
        explicit Exclusive(SRWLOCK& lock) noexcept : lock_(lock) { AcquireSRWLockExclusive(&lock_); }
        ~Exclusive() { ReleaseSRWLockExclusive(&lock_); }
        Exclusive(const Exclusive&) = delete;
        Exclusive& operator=(const Exclusive&) = delete;
        SRWLOCK& lock_;
    };

    std::atomic<const RegistryKey*> current_{nullptr};
    SRWLOCK lock_ = SRWLOCK_INIT;
    std::forward_list<RegistryKey> keys_;  // newest first; all but that one were deleted
};

}  // namespace zab
