// What a thread needs before it may throw.
//
// The compiler's runtime takes memory with the first exception of a process (the lock of its reserve of
// exceptions), with the first local static (another lock) and with the first exception of each thread (its own
// record). Where there is none at that moment it ends the process, so all of it is taken before it is needed:
// then a lack of memory is an exception like any other, and stays within its call.
#pragma once

namespace zab {

/// For the process and the thread that loads the module, once, while nothing else of the module runs.
void prepareProcessToThrow() noexcept;

/// For a thread that the module starts, before anything else; false: there is no memory for it, and the thread
/// should end.
[[nodiscard]] bool prepareThreadToThrow() noexcept;

}  // namespace zab
