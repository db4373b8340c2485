// What can be seen of the module from outside its code: the memory and the handles of the process that it
// shares.
#pragma once

#include <cstdint>
#include <set>
#include <string_view>
#include <thread>

namespace zab::testbed {

/// How often a long text is kept: the blocks of more than 16 KB, in use, that begin with `start`. Smaller ones
/// may be pieces of a larger block that a heap cuts up by itself.
std::size_t longTextsThatBeginWith(std::string_view start);

/// The committed memory of this process alone, in bytes: what its heaps use and what they hold ready.
std::uint64_t privateBytes();
std::uint64_t heapBytesInUse();

/// The handles of this process's mutexes that have no name. A mutex without a name can be had in no other way,
/// and a handle is as good as the one that its maker keeps.
std::set<void*> unnamedMutexes();

/// Holds a mutex on a thread of its own.
class HeldMutex {
  public:
    enum class End { givenBack, abandoned };

    explicit HeldMutex(void* mutex, End end = End::givenBack);
    ~HeldMutex() { lets(); }
    HeldMutex(const HeldMutex&) = delete;
    HeldMutex& operator=(const HeldMutex&) = delete;

    /// The thread gives the mutex back, or forgets to, and ends.
    void lets();

  private:
    void* mayEnd_;
    std::thread holder_;
};

}  // namespace zab::testbed
