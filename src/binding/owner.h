// One owner for everything that must be given back: handles, keys, strings of COM, references.
//
// A trait names the raw value, its empty state and how it is given back:
//     struct KeyTraits { using Raw = HKEY; static Raw none() noexcept; static void close(Raw) noexcept; };
#pragma once

#include <utility>

namespace zab {

template <class Traits>
class Owner {
  public:
    using Raw = typename Traits::Raw;

    Owner() noexcept = default;
    explicit Owner(Raw raw) noexcept : raw_(raw) {}
    Owner(Owner&& other) noexcept : raw_(other.release()) {}
    Owner& operator=(Owner&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
    ~Owner() { reset(); }

    [[nodiscard]] Raw get() const noexcept { return raw_; }
    explicit operator bool() const noexcept { return raw_ != Traits::none(); }

    /// Gives back what is held, then holds `raw`.
    void reset(Raw raw = Traits::none()) noexcept {
        const Raw old = std::exchange(raw_, raw);
        if (old != Traits::none()) Traits::close(old);
    }

    /// The caller owns the result; nothing is held any more.
    [[nodiscard]] Raw release() noexcept { return std::exchange(raw_, Traits::none()); }

    /// For out-parameters: gives back what is held and hands out the empty place.
    [[nodiscard]] Raw* put() noexcept {
        reset();
        return &raw_;
    }

  private:
    Raw raw_ = Traits::none();
};

}  // namespace zab
