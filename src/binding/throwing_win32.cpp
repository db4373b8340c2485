#include "binding/throwing_win32.h"

#include <cstddef>
#include <cstdlib>

namespace {

bool g_nextAllocationFails = false;

}  // namespace

// The linker leads every malloc of the module here, those of the compiler's runtime too (--wrap).
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names.
extern "C" {
void* __real_malloc(std::size_t bytes);

void* __wrap_malloc(std::size_t bytes) {
    if (!g_nextAllocationFails) return __real_malloc(bytes);
    g_nextAllocationFails = false;
    return nullptr;
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace zab {
namespace {

void throwOnce() noexcept {
    try {
        throw 0;
    } catch (int) {
    }
}

}  // namespace

void prepareProcessToThrow() noexcept {
    // Without memory of its own an exception comes from the runtime's reserve, whose lock is made by the first
    // that does.
    g_nextAllocationFails = true;
    throwOnce();
    g_nextAllocationFails = false;  // should that exception have needed none
    [[maybe_unused]] static const void* const firstLocalStatic = std::getenv("");
}

bool prepareThreadToThrow() noexcept {
    constexpr std::size_t kEnough = 4096;
    void* const probe = std::malloc(kEnough);
    if (probe == nullptr) return false;
    std::free(probe);
    throwOnce();
    return true;
}

}  // namespace zab
