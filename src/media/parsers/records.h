// The records of a parse, in order of appearance: made in chunks, owned here, never moved once made.
//
// A record with a `next` member is also linked to its successor. Where memory ends, a record either is in the
// list whole or is not there at all.
#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace zab {

struct NothrowMemory {
    template <class T>
    static std::unique_ptr<T> make() {
        return std::unique_ptr<T>(new (std::nothrow) T);
    }
};

template <class Record, class Memory = NothrowMemory>
class Records {
  public:
    class Iterator {
      public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Record;
        using difference_type = std::ptrdiff_t;
        using pointer = Record*;
        using reference = Record&;

        Iterator() = default;
        Iterator(const Records* records, std::size_t index) noexcept : records_(records), index_(index) {}
        Record& operator*() const noexcept { return (*records_)[index_]; }
        Iterator& operator++() noexcept {
            ++index_;
            return *this;
        }
        Iterator operator++(int) noexcept { return std::exchange(*this, Iterator(records_, index_ + 1)); }
        bool operator==(const Iterator& other) const noexcept { return index_ == other.index_; }

      private:
        const Records* records_ = nullptr;
        std::size_t index_ = 0;
    };

    /// A fresh record at the end; null when there is no memory for it. Throws std::bad_alloc where even the
    /// table of chunks cannot grow. Either way the list is as it was.
    [[nodiscard]] Record* append() {
        const std::size_t place = size_ % kPerChunk;
        if (place == 0) {
            chunks_.emplace_back();
            chunks_.back() = Memory::template make<Chunk>();
            if (chunks_.back() == nullptr) {
                chunks_.pop_back();
                return nullptr;
            }
        }
        Record& record = (*chunks_.back())[place];
        if constexpr (requires { record.next; }) {
            if (size_ != 0) (*this)[size_ - 1].next = &record;
        }
        ++size_;
        return &record;
    }

    void clear() noexcept {
        chunks_.clear();
        size_ = 0;
    }

    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
    /// `index` is below size().
    Record& operator[](std::size_t index) const noexcept {
        return (*chunks_[index / kPerChunk])[index % kPerChunk];
    }
    [[nodiscard]] Iterator begin() const noexcept { return {this, 0}; }
    [[nodiscard]] Iterator end() const noexcept { return {this, size_}; }

  private:
    static constexpr std::size_t kPerChunk = 64;
    using Chunk = std::array<Record, kPerChunk>;

    std::vector<std::unique_ptr<Chunk>> chunks_;
    std::size_t size_ = 0;
};

}  // namespace zab
