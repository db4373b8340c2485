// State that lives as long as the process. When the module is unloaded the browser's objects may be gone
// already, so a destructor that gives references back then would call into nothing.
#pragma once

#include <new>
#include <utility>

namespace zab {

template <class T>
class NeverDestroyed {
  public:
    template <class... Arguments>
    explicit NeverDestroyed(Arguments&&... arguments) {
        new (storage_) T(std::forward<Arguments>(arguments)...);
    }
    NeverDestroyed(const NeverDestroyed&) = delete;
    NeverDestroyed& operator=(const NeverDestroyed&) = delete;

    T& get() noexcept { return *std::launder(reinterpret_cast<T*>(storage_)); }

  private:
    alignas(T) unsigned char storage_[sizeof(T)];
};

}  // namespace zab
