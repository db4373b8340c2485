// Libraries of the bed's process: the runtime, the module. Under Windows as they are; natively the same code,
// built as libraries of the machine.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace zab::testbed {

/// The library that is loaded under this name, else the one beside the program (or at a path). It stays loaded.
/// Throws std::runtime_error.
void* loadLibrary(const std::string& name);
bool isLoaded(const std::string& name);

/// The module with its state as it is after loading, whatever earlier browsers did with it. Natively it takes
/// the browser for one of this version; under Windows it looks itself.
void* loadFreshModule(const std::string& name, int browserVersion);

/// Throws std::runtime_error when the library has no such export.
void* exportedBy(void* library, const char* name);

/// Takes exported names out of a library as long as the result is kept, so that a look-up does not find them.
std::shared_ptr<void> hidesExports(void* library, const std::vector<std::string>& names);

}  // namespace zab::testbed
