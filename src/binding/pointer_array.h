// Small lists in insertion order that hold each item once: documents, windows, requests of one browser.
//
// They stay short, so they are searched from the front and grow by a fixed step. What an item points to belongs
// to the part that keeps the list; nothing here locks. Out of memory is fatal to the step that needed the room:
// OutOfMemory is thrown, the list stays as it was.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "binding/interfaces/supports.h"

namespace zab {

class OutOfMemory : public std::bad_alloc {
  public:
    static constexpr std::uint32_t kStatus = 0xC0000017;  // STATUS_NO_MEMORY of Windows
    [[nodiscard]] const char* what() const noexcept override {
        return "status 0xC0000017: no memory for a list";
    }
};

/// `Element` is a pointer or a record with ==; every slot of the buffer holds a constructed element.
template <class Element, std::int32_t StartingCapacity, std::int32_t GrowthStep = 10>
class GrowingArray {
    static_assert(StartingCapacity >= 0 && GrowthStep > 0);

  public:
    GrowingArray() : capacity_(StartingCapacity), items_(bufferOf(StartingCapacity)) {}
    virtual ~GrowingArray() = default;
    GrowingArray(const GrowingArray&) = delete;
    GrowingArray& operator=(const GrowingArray&) = delete;

    [[nodiscard]] std::int32_t count() const noexcept { return count_; }
    [[nodiscard]] std::int32_t capacity() const noexcept { return capacity_; }
    Element& operator[](std::int32_t index) noexcept { return items_[index]; }
    const Element& operator[](std::int32_t index) const noexcept { return items_[index]; }
    Element* begin() noexcept { return items_.get(); }
    Element* end() noexcept { return items_.get() + count_; }
    const Element* begin() const noexcept { return items_.get(); }
    const Element* end() const noexcept { return items_.get() + count_; }

    /// Appends an item that is not yet there; true when it was not.
    bool Add(Element item) {
        if (Contains(item)) return false;
        Append(std::move(item));
        return true;
    }

    /// For an item that the caller knows not to be there, without searching for it.
    void Append(Element item) {
        if (count_ == capacity_) grow();
        items_[count_] = std::move(item);
        ++count_;
    }

    [[nodiscard]] bool Contains(const Element& item) const { return indexOf(item) >= 0; }

    /// The later items move up by one slot; true when the item was there.
    bool Remove(const Element& item) {
        const std::int32_t index = indexOf(item);
        if (index < 0) return false;
        RemoveAt(index);
        return true;
    }

    void RemoveAt(std::int32_t index) {
        std::move(begin() + index + 1, end(), begin() + index);
        --count_;
        items_[count_] = Element{};  // the freed slot keeps nothing alive
    }

    [[nodiscard]] std::int32_t indexOf(const Element& item) const {
        for (std::int32_t i = 0; i < count_; ++i)
            if (items_[i] == item) return i;
        return -1;
    }

  private:
    using Buffer = std::unique_ptr<Element[]>;

    static Buffer bufferOf(std::int32_t capacity) {
        if (capacity == 0) return nullptr;
        Buffer buffer(new (std::nothrow) Element[static_cast<std::size_t>(capacity)]{});
        if (!buffer) throw OutOfMemory{};
        return buffer;
    }

    void grow() {
        if (capacity_ > std::numeric_limits<std::int32_t>::max() - GrowthStep) throw OutOfMemory{};
        Buffer larger = bufferOf(capacity_ + GrowthStep);
        std::move(begin(), end(), larger.get());
        items_ = std::move(larger);
        capacity_ += GrowthStep;
    }

    std::int32_t count_ = 0;
    std::int32_t capacity_;
    Buffer items_;
};

}  // namespace zab
